# shellcheck shell=bash
# A new Debian 12 in a folder of its own, to be sourced after scripts/lib.sh. Sets "system", its path.
# All mounts are made in a mount namespace of the command that needs them and end with it; nothing of
# the host but a folder for downloaded packages is ever mounted.

system=
archives=

as_root() {
    if [[ $(id -u) -eq 0 ]]; then "$@"; else sudo "$@"; fi
}

# make_system FOLDER: installs the smallest Debian 12 into a new folder below FOLDER.
make_system() {
    archives=$1/archives
    mkdir -p "$archives/partial"
    system=$(mktemp -d "$1/system.XXXXXX")
    # debootstrap mounts /proc and /sys in the new system: in a namespace as well.
    as_root unshare --mount --pid --fork --kill-child debootstrap --variant=minbase \
        --cache-dir="$archives" bookworm "$system" ${ASU_DEBIAN_MIRROR:+"$ASU_DEBIAN_MIRROR"} \
        >"$1/debootstrap.txt" 2>&1 || die "install Debian" "see $1/debootstrap.txt"
    # Services are not started in there.
    printf '#!/bin/sh\nexit 101\n' | as_root tee "$system/usr/sbin/policy-rc.d" >/dev/null
    as_root chmod 755 "$system/usr/sbin/policy-rc.d" "$system"
    # Nobody needs this system to survive a power failure.
    echo force-unsafe-io | as_root tee "$system/etc/dpkg/dpkg.cfg.d/unsafe-io" >/dev/null
    echo 'Binary::apt-get::APT::Keep-Downloaded-Packages "true";' |
        as_root tee "$system/etc/apt/apt.conf.d/keep-packages" >/dev/null
}

# in_system COMMAND…: runs a command there as root, without a network and with processes of its own.
in_system() { enter_system "--net" "$@"; }
# in_system_online COMMAND…: the same with the host's network.
in_system_online() { enter_system "" "$@"; }

enter_system() {
    local network=$1
    shift
    # shellcheck disable=SC2016 # expanded by the inner shell
    as_root unshare --mount --pid --fork --kill-child ${network:+"$network"} sh -ec '
        system=$1 archives=$2
        shift 2
        mount -t proc proc "$system/proc"
        mount --bind "$archives" "$system/var/cache/apt/archives"
        exec chroot "$system" "$@"' sh "$system" "$archives" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@" </dev/null
}

# Removes the system, unless something is mounted in it against all expectation.
remove_system() {
    [[ -n $system && -d $system ]] || return 0
    if findmnt -rno TARGET | grep -qF "$system/"; then
        say "not removed, something is mounted in it: $system" >&2
        return 1
    fi
    as_root rm -rf --one-file-system "$system"
    system=
}
