#!/usr/bin/env bash
# Fetches what the machine test boots but this machine need not have installed: a Linux kernel, the
# modules for the test's devices in the order of loading, and a static busybox. All of it comes from
# Debian packages that are unpacked, never installed. What is there already is kept.
#
# Usage: scripts/guest_files.sh [FOLDER]     default: build/guest-files
# Leaves vmlinuz, modules/NN-NAME.ko, busybox and, when all is there, the list "wanted" in FOLDER.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
. scripts/common.sh
. scripts/packages.sh

# What drives the test's devices; their dependencies are found.
guest_modules=(nvme ipmi_si ipmi_devintf e1000e megaraid_sas sd_mod nfit nd_pmem)

kernel_package() {
    apt-cache depends linux-image-amd64 2>/dev/null | awk '/Depends: linux-image-/ {print $2; exit}'
}

# Lists that are too old name files that are gone; they are read again once.
download() {
    (cd "$work" && apt-get download -q "$1" >&2) && return 0
    (refresh_package_lists) && (cd "$work" && apt-get download -q "$1" >&2)
}

# The files of the wanted modules and of all they need, each after what it needs.
module_files() {
    local version=$1 module
    for module in "${guest_modules[@]}"; do
        modprobe -d "$work/kernel" -S "$version" --show-depends "$module" || return 1
    done | awk '$1 == "insmod" && !seen[$2]++ {print $2}'
}

copy_kernel() {
    local version file number=10
    version=$(ls "$work/kernel/lib/modules") && [ -n "$version" ] || return 1
    depmod -b "$work/kernel" "$version" || return 1
    mkdir -p "$work/files/modules"
    cp "$work/kernel/boot/vmlinuz-$version" "$work/files/vmlinuz" || return 1
    while IFS= read -r file; do
        cp "$file" "$work/files/modules/$number-${file##*/}" || return 1
        number=$((number + 1))
    done < <(module_files "$version")
    [ "$number" -gt 10 ]
}

fetch() {
    local name
    [ "$(dpkg --print-architecture)" = amd64 ] || die "the machine test is for x86-64 only"
    [ -n "$(kernel_package)" ] || (refresh_package_lists) || return 1
    name=$(kernel_package)
    [ -n "$name" ] || die "no package linux-image-amd64 is known here"
    download "$name" && download busybox-static || return 1
    dpkg-deb -x "$work/$name"_*.deb "$work/kernel" || return 1
    dpkg-deb -x "$work"/busybox-static_*.deb "$work/busybox" || return 1
    copy_kernel || return 1
    cp "$(find "$work/busybox" -name busybox -type f -perm -u+x | head -n 1)" "$work/files/busybox"
}

folder=${1:-build/guest-files}
export PATH="$PATH:/usr/sbin:/sbin"
if [ "$(cat "$folder/wanted" 2>/dev/null)" = "${guest_modules[*]}" ]; then
    say "the guest's files are in $folder"
    exit 0
fi
for tool in apt-get dpkg-deb depmod modprobe; do
    command -v "$tool" >/dev/null 2>&1 || die "$tool is missing; scripts/test.sh installs it"
done
mkdir -p "$folder" || exit 1
work=$(mktemp -d "$folder/fetching.XXXXXX") || exit 1
work=$(cd "$work" && pwd)
trap 'rm -rf "$work"' EXIT
say "fetching the guest's kernel and busybox into $folder"
fetch || die "the guest's files could not be fetched"
rm -rf "$folder/modules"
mv "$work/files/"* "$folder/" && echo "${guest_modules[*]}" >"$folder/wanted"
