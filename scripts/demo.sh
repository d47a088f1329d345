#!/usr/bin/env bash
# From a clone to a scan on the screen: installs what is needed, builds, starts the simulated BMC of
# a rack server, scans it over TLS with a login, and shows where the scan file is.
#
# Usage: scripts/demo.sh
# Runs on a fresh Debian 12, as root or with sudo, without questions.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/common.sh
. scripts/packages.sh

scenario=simulators/scenarios/rack-server
output=build/demo/scan
simulator_pid=
private=

clean_up() {
    if [ -n "$simulator_pid" ]; then
        kill "$simulator_pid" 2>/dev/null || true
        wait "$simulator_pid" 2>/dev/null || true
    fi
    [ -z "$private" ] || rm -rf "$private"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

build() {
    local launcher
    mapfile -t launcher < <(compiler_launcher)
    cmake --preset demo "${launcher[@]}" >&2
    cmake --build --preset demo --target tarsel bmc_simulator --parallel "$(parallel_jobs)" >&2
}

# Starts the simulated BMC with a password of this run; sets `port` and `fingerprint`.
start_simulator() {
    local line
    head -c 18 /dev/urandom | base64 >"$private/password"
    mkfifo "$private/ready"
    build/demo/bin/bmc_simulator --scenario "$scenario" --user demo \
        --password-file "$private/password" >"$private/ready" &
    simulator_pid=$!
    IFS= read -r -t 30 line <"$private/ready" || die "the simulated BMC did not start"
    port=$(sed -n 's/.*url=https:\/\/[^ ]*:\([0-9]*\).*/\1/p' <<<"$line")
    fingerprint=$(sed -n 's/.*fingerprint=\([0-9a-f]*\).*/\1/p' <<<"$line")
    [ -n "$port" ] && [ -n "$fingerprint" ] || die "the simulated BMC said: $line"
}

install_packages "${TARSEL_BUILD_PACKAGES[@]}"
say "building"
build

umask 077
private=$(mktemp -d)
start_simulator
command=(build/demo/bin/tarsel scan --bmc "demo@127.0.0.1:$port" --pin "$fingerprint"
    --password-file "$private/password" --output "$output")
say "scanning the simulated BMC: ${command[*]}"
"${command[@]}"
say "the scan file is $PWD/$output/Tarsel-update-scan.xml"
