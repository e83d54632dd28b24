# Archives of Debian 12 systems, made from where this machine's apt has Debian's packages from. Sourced after
# build.sh; needs mmdebstrap.

# The files that tell this machine's apt where Debian 12 is.
debian_sources() {
    apt-get indextargets --format '$(CODENAME) $(SOURCESENTRY)' 'Origin: Debian' |
        sed -nE 's/^bookworm(-updates|-security)? (.*):[0-9]+$/\2/p' | sort -u
}

# debian_system NAME [OPTION...]: leaves in SYSTEM the archive of a minimal system, with what mmdebstrap's
# options add; makes it where there is none, or an old one.
debian_system() {
    local name=$1 sources settings key
    shift
    mapfile -t sources < <(debian_sources)
    if ((!${#sources[@]})); then # nothing is known of them before
        apt-get update >/dev/null
        mapfile -t sources < <(debian_sources)
    fi
    ((${#sources[@]})) || { echo "this machine's apt does not know of Debian 12" >&2; return 1; }
    settings=$(apt-config dump | grep '^Acquire') # proxies among them
    key=$({ cat "${sources[@]}"; printf '%s\n' "$settings" "$@"; } | sha256sum)
    SYSTEM=${XDG_CACHE_HOME:-$HOME/.cache}/snmpmain/debian-12-$name-${key:0:12}.tar
    if [[ -z $(find "$SYSTEM" -mtime -7 2>/dev/null) ]]; then
        say "making a minimal Debian 12 ($name), once a week"
        mkdir -p "$(dirname "$SYSTEM")"
        mmdebstrap --quiet --variant=minbase --aptopt=<(printf '%s\n' "$settings") "$@" \
            bookworm "$SYSTEM.part.tar" "${sources[@]}"
        mv "$SYSTEM.part.tar" "$SYSTEM"
    fi
}
