#!/usr/bin/env bash
# Packs what the test's machine runs into one initial file system.
#
# Usage: tests/guest/pack.sh GUEST_FILES TARGET EXTRA PROGRAM...
# GUEST_FILES is what scripts/guest_files.sh left, EXTRA a folder that is laid over the root. Each
# PROGRAM lies inside where it lies outside, with the libraries it needs, and on the path.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
files=$1 target=$2 extra=$3
shift 3
root=$target.root
rm -rf "$root"
mkdir -p "$root"/{bin,dev,opt/modules,proc,root,sys,tmp,usr/bin}
cp -r "$here/root/." "$extra/." "$root"
cp "$files/busybox" "$root/bin/busybox"
cp "$files"/modules/*.ko "$root/opt/modules"

# Symbols are most of a build tree's bytes and nobody debugs in there.
copy_program_file() {
    mkdir -p "$root${1%/*}"
    strip -o "$root$1" "$1"
    chmod +x "$root$1"
}

for program in "$@"; do
    copy_program_file "$program"
    inside=$root/usr/bin/${program##*/}
    [ -e "$inside" ] || ln -s "$program" "$inside"
done
# The second field after an arrow, and the loader, which has none.
ldd "$@" | awk '$2 == "=>" {print $3} $1 ~ /^\// && $2 ~ /^\(/ {print $1}' | sort -u |
    while IFS= read -r library; do
        if [ ! -e "$root$library" ]; then copy_program_file "$library"; fi
    done
find "$root" -name 'libupdate_scan_service.so*' | while IFS= read -r library; do
    cp "$(dirname "${library#"$root"}")"/*_systems_list.txt "$(dirname "$library")"
done
(cd "$root" && find . | cpio -o -H newc --quiet) >"$target"
rm -rf "$root"
