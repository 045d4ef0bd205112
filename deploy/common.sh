# What deploy/try and deploy/try-store share: a temporary folder, programs that are started again, an end that leaves
# nothing. Sourced by them; $root, $build, $port and $keeps are set.
say() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; }

# begin PACKAGES ARGUMENT...: reads the arguments, builds, installs packages, and starts the script anew as an ordinary user
# if root runs it: nginx would take another user for its workers, and everything here belongs to one.
begin() {
    local packages=$1 isInside=''
    shift
    build='' keeps=''
    while [ $# -gt 0 ]; do
        case $1 in
        --build) build=$(readlink -f "$2"); shift ;;
        --port) port=$2; shift ;;
        --keep) keeps=1 ;;
        --inside) isInside=1 ;;
        *) sed -n 's/^# usage: /usage: /p' "$0" >&2; exit 2 ;;
        esac
        shift
    done
    if [ -z "$isInside" ]; then
        . "$root/packaging/packages.sh"
        local -n names=$packages
        install_missing "${names[@]}"
        if [ -z "$build" ]; then
            build=$root/build/release
            cmake --preset release -S "$root" >/dev/null
            ninja -C "$build" velmora-server velmora-demomusic velmora-media velmora-media-formats velmora-listener \
                velmora-streams >/dev/null
        fi
        local options=(--inside --build "$build" --port "$port" ${keeps:+--keep}) user=()
        [ "$(id -u)" -ne 0 ] || user=(setpriv --reuid nobody --regid nogroup --clear-groups)
        exec "${user[@]}" "$0" "${options[@]}"
    fi
    dir=$(mktemp -d)
    export HOME=$dir ASAN_OPTIONS=detect_leaks=0
    trap end EXIT
    trap 'exit 1' INT TERM
}

keepers=()
end() {
    local pid
    for pid in "${keepers[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    if [ -n "$keeps" ]; then say "everything is in $dir"; else rm -rf "$dir"; fi
}

# keep NAME COMMAND...: runs it in a process group of its own, and again after its death: after one second, or after the
# seconds in the file NAME.pause.
keep() {
    local name=$1
    shift
    (
        trap 'kill -TERM -- "-$child" 2>/dev/null; wait "$child" 2>/dev/null; exit 0' TERM
        while :; do
            setsid "$@" >>"$dir/$name.log" 2>&1 &
            child=$!
            echo "$child" >"$dir/$name.pid"
            wait "$child" || true
            sleep "$(cat "$dir/$name.pause" 2>/dev/null || echo 1)" &
            wait $! || true
        done
    ) 2>>"$dir/$name.log" & # the shell says there what was killed
    keepers+=($!)
}
until_answer() { # what, URL
    local i
    for i in $(seq 300); do
        curl -sf -o /dev/null "$2" && return 0
        sleep 0.2
    done
    say "$1 does not answer; its log:"
    tail -n 5 "$dir/${1%% *}.log" >&2
    exit 1
}

# Until the service at $address has so many tracks of its demo catalogue.
until_tracks() {
    local i tracks
    for i in $(seq 300); do
        tracks=$(curl -s "$address/health" | sed -n 's/.*"tracks":\([0-9]*\).*/\1/p')
        [ "${tracks:-0}" -ge "$1" ] && break
        sleep 0.2
    done
    say "$tracks tracks, at $address"
}
