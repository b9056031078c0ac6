# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Functions for Debian trees in build/, sourced by tools/test-in-debian and by the scripts that prove
# the packages.

# in_own_namespace COMMAND ARGUMENT...: restarts the script with the given command in separate mount
# and process namespaces. All mounts and processes end with the script, so no cleanup is needed.
in_own_namespace() {
    [ -z "${ORK2_NAMESPACE:-}" ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "$0: root is required for debootstrap, mount and chroot; use sudo" >&2
        exit 1
    fi
    local tool
    for tool in debootstrap unshare; do
        command -v "$tool" >/dev/null || {
            echo "$0: $tool is missing; the packages are debootstrap and util-linux" >&2
            exit 1
        }
    done
    ORK2_NAMESPACE=yes exec unshare --mount --pid --fork --kill-child --mount-proc "$@"
}

# Prints lines "URL LABEL" of the Debian archives used by this machine's apt.
archives() {
    apt-get indextargets --format '$(REPO_URI) $(LABEL)' 'Created-By: Packages' \
        | awk '$2 ~ /^Debian(-Security)?$/' | sort -u
}

# base_tree RELEASE: creates a minimal system in build/debian-RELEASE/base, unless it exists.
base_tree() {
    local release=$1 folder=build/debian-$1 mirror
    [ ! -d "$folder/base" ] || return 0
    mirror=${DEBIAN_MIRROR:-$(archives | awk '$2 == "Debian" { print $1; exit }')}
    if [ -z "$mirror" ]; then
        echo "apt has no Debian archive on this machine: set DEBIAN_MIRROR" >&2
        return 1
    fi
    mkdir -p "$folder/archives/partial"
    rm -rf "$folder/base.new"
    echo "Creating a minimal $release in $folder/base"
    debootstrap --variant=minbase "$release" "$folder/base.new" "$mirror" >"$folder/bootstrap.log" 2>&1 || {
        tail -n 5 "$folder/bootstrap.log" >&2
        return 1
    }
    # Use the archives, proxies and certificates of this machine.
    {
        echo "deb $mirror $release main"
        echo "deb $mirror $release-updates main"
        archives | awk -v release="$release" '$2 == "Debian-Security" {
            print "deb", $1, release "-security", "main" }'
    } >"$folder/base.new/etc/apt/sources.list"
    {
        apt-config dump Acquire | grep -E '^Acquire::(https?|ftp|Check-)' || true
        echo 'Acquire::Languages "none";'
    } >"$folder/base.new/etc/apt/apt.conf.d/90host"
    mv "$folder/base.new" "$folder/base"
}

# mount_tree RELEASE TREE: mounts the required file systems; downloaded packages are kept.
mount_tree() {
    local tree=$2
    mount -t proc proc "$tree/proc"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620,gid=5 devpts "$tree/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$tree/dev/shm"
    mount --bind "build/debian-$1/archives" "$tree/var/cache/apt/archives"
    cp -L /etc/resolv.conf "$tree/etc/resolv.conf"
}

# enter TREE USER COMMAND...: replaces the process by the command, with a clean environment.
enter() {
    local tree=$1 user=$2 home
    home=$(chroot "$tree" getent passwd "$user" | cut -d: -f6)
    shift 2
    exec chroot "$tree" setpriv --reuid "$user" --regid "$user" --init-groups \
        env -i HOME="$home" USER="$user" LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        ${DISPLAY:+DISPLAY="$DISPLAY"} "$@"
}

# inside TREE USER COMMAND...: the same in a subshell.
inside() { (enter "$@"); }

fail() {
    echo "$(basename "$0"): FAILED: $1" >&2
    exit 1
}
passed() { echo "ok: $1"; }

# this_release: prints the name of the release of this machine.
this_release() { (. /etc/os-release && echo "${VERSION_CODENAME:-}"); }

# newest_package NAME: prints the path of the newest package of this name in build/release.
newest_package() {
    find build/release -maxdepth 1 -name "$1_*.deb" -printf '%T@ %p\n' 2>/dev/null | sort -n \
        | tail -n 1 | cut -d' ' -f2-
}

# proof_tree RELEASE NAME: creates a new minimal tree; sets $proof, the folder build/debian-RELEASE/NAME
# for the logs, and $tree.
proof_tree() {
    base_tree "$1"
    proof=$PWD/build/debian-$1/$2
    tree=$proof/tree
    rm -rf "$proof"
    mkdir -p "$proof"
    cp -a --reflink=auto "build/debian-$1/base" "$tree"
    mount_tree "$1" "$tree"
}

# apt ARGUMENT...: runs apt-get in $tree; its output is written to a log in $proof.
apt() { inside "$tree" root apt-get -y -q "$@" >>"$proof/apt.log" 2>&1 || fail "apt-get $*; see $proof/apt.log"; }

# Lists paths, types, owners and modes in $tree, except for users' files and files that change by
# themselves.
list_files() {
    chroot "$tree" find / -xdev \
        \( -path /home -o -path /root -o -path /tmp -o -path /run -o -path /proc -o -path /dev \
        -o -path /var/cache -o -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg \) -prune \
        -o -printf '%y %M %u:%g %p\n' | LC_ALL=C sort -k 4
}

# unpack_simulator TERMINAL-DEB: unpacks the simulated instrument to /opt/ork2-simulator in $tree,
# without installing the package.
unpack_simulator() {
    dpkg-deb --fsys-tarfile "$1" \
        | tar -x -C "$tree/opt" --strip-components 3 ./opt/ork2-terminal/ork2-simulator
}

# start_instrument SIMULATOR: starts this program of $tree; its port is /run/instrument, with the owner
# and the mode of serial ports.
start_instrument() {
    inside "$tree" root "$1" --link /run/instrument >"$proof/simulator.log" 2>&1 &
    for _ in $(seq 50); do
        grep -q '^ready ' "$proof/simulator.log" && break
        sleep 0.1
    done
    [ -L "$tree/run/instrument" ] || fail "the simulator does not start; see $proof/simulator.log"
    port=$(readlink "$tree/run/instrument")
    chroot "$tree" chgrp dialout "$port"
    chroot "$tree" chmod 660 "$port"
}
