# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Read by tools/test-in-debian and tools/prove-package: Debian trees below build/, entered by chroot.

# in_own_namespace COMMAND ARGUMENT...: starts the script once more (as the command says) in mount and
# process namespaces of its own. What it mounts and starts there ends with it, however it ends:
# nothing is left to clean up.
in_own_namespace() {
    [ -z "${ORK2_NAMESPACE:-}" ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "$0: needs root, for debootstrap, mount and chroot; start it with sudo" >&2
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

# Lines "ADDRESS LABEL" of the Debian archives that this machine's own apt uses.
archives() {
    apt-get indextargets --format '$(REPO_URI) $(LABEL)' 'Created-By: Packages' \
        | awk '$2 ~ /^Debian(-Security)?$/' | sort -u
}

# base_tree RELEASE: makes build/debian-RELEASE/base, a minimal system, unless it is there already.
base_tree() {
    local release=$1 folder=build/debian-$1 mirror
    [ ! -d "$folder/base" ] || return 0
    mirror=${DEBIAN_MIRROR:-$(archives | awk '$2 == "Debian" { print $1; exit }')}
    if [ -z "$mirror" ]; then
        echo "This machine's apt knows no Debian archive: name one in DEBIAN_MIRROR" >&2
        return 1
    fi
    mkdir -p "$folder/archives/partial"
    rm -rf "$folder/base.new"
    echo "Making a minimal $release in $folder/base"
    debootstrap --variant=minbase "$release" "$folder/base.new" "$mirror" >"$folder/bootstrap.log" 2>&1 || {
        tail -n 5 "$folder/bootstrap.log" >&2
        return 1
    }
    # The archives and the ways to them (proxies, certificates) are those of this machine.
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

# mount_tree RELEASE TREE: what programs inside need; downloaded packages are kept for the next tree.
mount_tree() {
    local tree=$2
    mount -t proc proc "$tree/proc"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620,gid=5 devpts "$tree/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$tree/dev/shm"
    mount --bind "build/debian-$1/archives" "$tree/var/cache/apt/archives"
    cp -L /etc/resolv.conf "$tree/etc/resolv.conf"
}

# enter TREE USER COMMAND...: becomes that command, as that user, with an environment of its own.
enter() {
    local tree=$1 user=$2 home
    home=$(chroot "$tree" getent passwd "$user" | cut -d: -f6)
    shift 2
    exec chroot "$tree" setpriv --reuid "$user" --regid "$user" --init-groups \
        env -i HOME="$home" USER="$user" LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        ${DISPLAY:+DISPLAY="$DISPLAY"} "$@"
}

# inside TREE USER COMMAND...: the same beside the script.
inside() { (enter "$@"); }
