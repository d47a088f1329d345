#!/usr/bin/env bash
# Compares a local scan with "lshw -json", which lists about the same of a machine: wall time and
# peak memory of both, on this machine and on a server that QEMU emulates. A machine without SMBIOS
# (containers, small virtual machines) ends a local scan early, which its exit status shows; the
# emulated server has all that a scan reads.
#
# Usage: bench/local_scan.sh BIN [RUNS]     BIN: folder of the built programs; RUNS: 5 by default
# Asserts nothing. What cannot be measured is said.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/common.sh

bin=$(cd "$1" && pwd)
runs=${2:-5}
guest_files=build/guest-files
emulator=qemu-system-x86_64
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# compare TARSEL LSHW: both as measure_command prints them.
compare() {
    printf '  tarsel scan --local: %s\n  lshw -json:          %s\n' "$1" "$2"
    printf '%s %s\n' "$1" "$2" | awk -F'[= ]' '{
        printf "  tarsel / lshw:       time %.2f, memory %.2f\n", $2 / $8, $4 / $10
    }'
}

measure_here() {
    printf '\nLocal scan on this machine, median of %s\n' "$runs"
    compare "$("$bin/measure_command" "$runs" "$bin/tarsel" scan --local -q --output "$work/here")" \
        "$("$bin/measure_command" "$runs" lshw -json)"
}

# Laid over the root of the emulated server: what it runs, and the names that both programs read.
write_extra_files() {
    mkdir -p "$work/extra/opt" "$work/extra/usr/share/misc"
    cp -L /usr/share/misc/pci.ids "$work/extra/usr/share/misc/pci.ids"
    cat >"$work/extra/opt/scans" <<END
part tarsel measure_command $runs tarsel scan --local -q --output /tmp/local
part lshw measure_command $runs lshw -json
END
}

image() {
    truncate -s "$2" "$work/$1"
    printf '%s' "$work/$1"
}

boot() {
    local arguments=(-accel tcg -cpu qemu64 -machine q35,nvdimm=on -m 512M,slots=2,maxmem=1G
        -nodefaults -no-user-config -no-reboot -display none -serial stdio -monitor none -net none
        -kernel "$guest_files/vmlinuz" -initrd "$work/initrd"
        -append "console=ttyS0 quiet loglevel=0 panic=-1 rdinit=/init"
        -smbios "type=0,vendor=Example,version=EX1.02,date=01/02/2024"
        -smbios "type=1,manufacturer=Example,product=Example Rack Server,serial=SER12345"
        -device e1000e -device megasas-gen2,id=raid -device scsi-hd,bus=raid.0,drive=disk
        -device ipmi-bmc-sim,id=bmc -device isa-ipmi-kcs,bmc=bmc
        -object "memory-backend-file,id=memory,share=on,size=128M,mem-path=$(image memory 128M)"
        -device nvdimm,id=module,memdev=memory
        -drive "file=$(image disk 4M),if=none,format=raw,id=disk")
    local drive
    for drive in first second; do
        arguments+=(-drive "file=$(image "$drive" 1M),if=none,format=raw,id=$drive"
            -device "nvme,serial=$drive,drive=$drive")
    done
    timeout 180 "$emulator" "${arguments[@]}" </dev/null | tr -d '\r' >"$work/console" || true
}

# The line that a part of the console holds.
told() { sed -n "/^@@begin $1\$/,/^@@end $1 /p" "$work/console" | grep '^median_ms='; }

why_no_guest() {
    local tool
    for tool in "$emulator" cpio strip; do
        command -v "$tool" >/dev/null 2>&1 || { echo "$tool is missing"; return; }
    done
    [ -e /usr/share/misc/pci.ids ] || { echo "the package pci.ids is missing"; return; }
    scripts/guest_files.sh "$guest_files" >&2 || echo "the kernel for it could not be fetched"
}

measure_guest() {
    local reason
    printf '\nLocal scan on an emulated server, median of %s\n' "$runs"
    reason=$(why_no_guest)
    [ -z "$reason" ] || { printf '  not measured: %s\n' "$reason"; return; }
    write_extra_files
    tests/guest/pack.sh "$guest_files" "$work/initrd" "$work/extra" \
        "$bin/tarsel" "$bin/measure_command" "$(command -v lshw)"
    boot
    if ! told tarsel >/dev/null || ! told lshw >/dev/null; then
        printf '  not measured: the emulated server did not come so far\n'
        tail -n 5 "$work/console" >&2
        return
    fi
    compare "$(told tarsel)" "$(told lshw)"
}

measure_here
measure_guest
