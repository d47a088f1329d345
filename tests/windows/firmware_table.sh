#!/usr/bin/env bash
# Lets the Windows command scan a machine whose firmware table is invented: Wine makes that table of
# files of this machine, which a mount for this run alone covers.
#
# Usage: firmware_table.sh WINDOWS_BUILD
# Skips (77) where mounts of one's own are not allowed.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
windows_build=$(cd "$1" && pwd)
source=$(cd "$here/../.." && pwd)
. "$source/scripts/common.sh"
identity=/sys/class/dmi/id

# cover_identity NAME VALUE...: only in a mount namespace of its own.
cover_identity() {
    mount -t tmpfs none /sys/class
    mkdir -p "$identity"
    while [ $# -gt 0 ]; do
        printf '%s\n' "$2" >"$identity/$1"
        shift 2
    done
}

if [ "${2-}" = inside ]; then
    shift 2
    output=$1
    shift
    cover_identity "$@"
    exec "$source/cmake/windows/run-wine.sh" "$windows_build/bin/tarsel.exe" scan --local \
        --output "$output" </dev/null
fi

if ! unshare -m sh -c 'mount -t tmpfs none /sys/class' 2>/dev/null; then
    echo "skipped: this user may not cover /sys/class by a mount (needs root and namespaces)"
    exit 77
fi
private=$(mktemp -d)
trap 'rm -rf "$private"' EXIT

# Another machine at every run: nothing but the covered files can know it.
serial=EXSN$((RANDOM + 100000))
version="EXB $((RANDOM % 90 + 10)).30"
unshare -m bash "${BASH_SOURCE[0]}" "$windows_build" inside "$private/out" \
    sys_vendor "Example Maker" product_name "Example Rack 300" product_serial "$serial" \
    product_version EX-300 bios_vendor "Example Firmware" bios_version "$version" \
    bios_date 05/06/2024 board_vendor "Example Maker" board_name "EX Board" >"$private/tables.txt"

# expect FILE TEXT
expect() {
    grep -qF -- "$2" "$private/$1" || {
        cat "$private/$1"
        die "$1 lacks $2"
    }
}
expect tables.txt "Example Rack 300"
expect tables.txt "$version"
expect out/Tarsel-update-scan.xml "<MT>Example Rack 300</MT>"
expect out/Tarsel-update-scan.xml "<SN>$serial</SN>"
expect out/Tarsel-update-scan.xml "<VERSION>$version</VERSION>"
say "machine type, serial number and firmware version are those of the invented table"
