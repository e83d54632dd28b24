# Building, for the scripts. Sourced by bash scripts with `set -euo pipefail` from the repository's
# root.

say() {
    printf '== %s\n' "$*"
}

# Passes on what a compiler has to say and shows progress: in place on a terminal, else a line for
# every tenth.
show_progress() {
    local terminal=0
    [[ -t 1 ]] && terminal=1
    awk -v terminal=$terminal '
        match($0, /^\[[0-9]+\/[0-9]+\]/) {
            split(substr($0, 2, RLENGTH - 2), step, "/")
            tenth = int(10 * step[1] / step[2])
            if (terminal) printf "\r   %d of %d ", step[1], step[2]
            else if (tenth != last) printf "   %d of %d\n", step[1], step[2]
            last = tenth
            fflush()
            next
        }
        /^ninja: (no work|Entering)/ { next }
        { print; fflush() }
        END { if (terminal && last != "") printf "\r              \r" }'
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
