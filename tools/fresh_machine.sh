#!/usr/bin/env bash
# Proves both commands of the README on a fresh Debian 12: fresh_machine.sh [-w] [-r ROOT] [MIRROR]
#   -w       the working tree as it stands, instead of the last commit
#   -r ROOT  a root that debootstrap made before; it is copied, not used up
# Runs as root and needs debootstrap. Everything happens in a mount and process namespace of its own, which takes
# its mounts and processes along when it ends, whatever happens; the root is removed afterwards. TMPDIR says where.
set -u
self=$(readlink -f "$0")
limit_minutes=25

die() {
    echo "fresh_machine: $*" >&2
    exit 1
}

now_ms() { echo $(("${EPOCHREALTIME/./}" / 1000)); }

# ---- outside: makes the root and copies the checkout into it

outside() {
    local tree=HEAD ready=""
    while getopts wr: option; do
        case $option in
            w) tree="" ;;
            r) ready=$OPTARG ;;
            *) exit 2 ;;
        esac
    done
    shift $((OPTIND - 1))
    [ "$(id -u)" = 0 ] || die "a fresh root can only be made by root"
    cd "$(dirname "$self")/.." || exit 1
    root=$(mktemp -d "${TMPDIR:-/var/tmp}/fresh-machine.XXXXXX") || exit 1
    trap 'rm -rf --one-file-system "$root"' EXIT
    trap 'exit 130' INT TERM

    local began
    began=$(now_ms)
    if [ -n "$ready" ]; then
        cp -a "$ready/." "$root" || die "cannot copy $ready"
    else
        command -v debootstrap >/dev/null || die "debootstrap is missing"
        debootstrap --variant=minbase bookworm "$root" "$@" >"$root.log" 2>&1 || die "see $root.log"
        rm -f "$root.log"
    fi
    chmod 755 "$root"
    mkdir "$root/checkout"
    if [ -n "$tree" ]; then
        git archive "$tree" | tar -x -C "$root/checkout"
    else
        git ls-files -co --exclude-standard -z | tar -c --null -T - --ignore-failed-read | tar -x -C "$root/checkout"
    fi
    echo "a fresh root with the checkout: $(($(now_ms) - began)) ms"
    unshare --mount --pid --ipc --fork --kill-child --propagation private "$self" --inside "$root"
}

# ---- inside: a process tree and mounts of our own

# in_root COMMAND...: as root in the fresh system, with a bare environment, as after a login without a display.
bare=(/usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb CI=true
    bash -c 'cd /checkout && exec "$@"' -)
in_root() { chroot "$root" "${bare[@]}" "$@" </dev/null; }

# Starts ./run, waits for the sentence, lets it play on for some seconds and ends it. Tells the time to the sentence.
run_plays() {
    local name=$1 seconds=$2 began pid log="$root/run.log"
    began=$(now_ms)
    chroot "$root" "${bare[@]}" ./run >"$log" 2>&1 </dev/null &
    pid=$!
    until grep -q "There is no display here" "$log"; do
        kill -0 $pid 2>/dev/null || { cat "$log" && die "$name: ./run ended without playing"; }
        sleep 0.02
    done
    echo "$name: plays after $(($(now_ms) - began)) ms"
    sleep "$seconds"
    [ "$(cat /proc/$pid/comm 2>/dev/null)" = marlune-cli ] || { cat "$log" && die "$name: stopped playing"; }
    sed 's/^/    | /' "$log"
    kill -TERM $pid
    wait $pid
    echo "$name: stopped with status $?"
}

inside() {
    root=$1
    mount -t proc proc /proc || exit 1
    mount -t proc proc "$root/proc" || exit 1
    mount -t sysfs -o ro sysfs "$root/sys" || exit 1
    mount -t tmpfs tmpfs "$root/dev/shm" || exit 1
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts" || exit 1

    local began told failures=0
    told=$(chroot --userspec=nobody:nogroup "$root" "${bare[@]}" ./run </dev/null) && die "a plain user without sudo cannot have installed packages"
    grep -q "Please install them as root" <<<"$told" || die "a plain user is not told what to do: $told"
    echo "a plain user without sudo: refused, and told what to install"

    run_plays "first run" 5
    run_plays "second run" 2
    for turn in first second; do
        began=$(now_ms)
        in_root ./test || failures=$((failures + 1))
        took=$((($(now_ms) - began) / 1000))
        echo "$turn test: $took s"
        [ $took -lt $((limit_minutes * 60)) ] || die "$turn test took more than $limit_minutes minutes"
    done
    run_plays "run after the tests" 2
    [ $failures = 0 ] || die "$failures of the two test runs failed"
    echo "all of it works on a fresh machine"
}

if [ "${1:-}" = --inside ]; then
    inside "$2"
else
    outside "$@"
fi
