# Building, for the scripts. Sourced by bash scripts with `set -euo pipefail` from the repository's
# root.

say() {
    printf '== %s\n' "$*"
}

# Passes on what a compiler has to say and shows progress: in place on a terminal, else a line for
# every tenth.
show_progress() {
    local terminal=0 line tenth last=''
    [[ -t 1 ]] && terminal=1
    while IFS= read -r line; do
        if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]]; then
            tenth=$((10 * BASH_REMATCH[1] / BASH_REMATCH[2]))
            if ((terminal)); then
                printf '\r   %d of %d ' "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
            elif [[ $tenth != "$last" ]]; then
                printf '   %d of %d\n' "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
            fi
            last=$tenth
        elif [[ $line == *"in statically linked applications"* || $line == *"libnetsnmp"*": in function"* ]]; then
            : # users' and hosts' names, which the agent never has the SNMP library look up
        elif [[ $line != "ninja: no work"* && $line != "ninja: Entering"* ]]; then
            printf '%s\n' "$line"
        fi
    done
    if ((terminal)) && [[ -n $last ]]; then
        printf '\r              \r'
    fi
}

# build PRESET [TARGET...]: configures and builds everything or some targets, in build/PRESET.
build() {
    local preset=$1
    shift
    say "building ($preset)"
    local output
    output=$(cmake --preset "$preset" 2>&1) || {
        echo "$output"
        return 1
    }
    cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 | show_progress
}

# run_tests PRESET [OPTION...]: quiet about what passes. Options are ctest's.
run_tests() {
    local preset=$1
    shift
    say "testing ($preset)"
    ctest --test-dir "build/$preset" -j"$(nproc)" --output-on-failure "$@" 2>&1 |
        grep -vE '^ *Start +[0-9]+:|^ *[0-9]+/[0-9]+ Test.* Passed |^Internal ctest|^Test project|^$'
}

# The controller's agent, as the tests run it here.
TARGET_AGENT="qemu-ppc-static $PWD/build/powerpc/bin/snmpmain"

# prepare_target: what the preset "powerpc" needs. dpkg-dev brings make and what unpacks source packages;
# net-snmp's configure wants file.
prepare_target() {
    script/bootstrap g++-powerpc-linux-gnu qemu-user-static dpkg-dev file
    SNMPMAIN_TARGET_LIBRARIES=$(script/lib/target-libraries)
    export SNMPMAIN_TARGET_LIBRARIES
}

# For packages, which are made of the tracked files as they are here, with changes that are not committed.
PACKAGES=$PWD/build/packages

project_version() {
    sed -n 's/^project(snmpmain VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt
}

# take_sources: leaves in SOURCES the commit that clean_tree copies. All that is built of it has the time of
# the last commit.
take_sources() {
    git update-index -q --refresh || true # in a copied clone git takes all files for changed
    SOURCES=$(git stash create)
    SOURCES=${SOURCES:-HEAD}
    SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
    export SOURCE_DATE_EPOCH
}

# clean_tree FOLDER
clean_tree() {
    mkdir -p "$1"
    git archive "$SOURCES" | tar -C "$1" -xf -
}

write_checksums() {
    (cd "$PACKAGES" && find . -name '*.deb' -o -name '*.tar.gz' | sed 's|^./||' | sort | xargs sha256sum >SHA256SUMS)
}
