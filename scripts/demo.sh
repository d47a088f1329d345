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
. scripts/simulator.sh

scenario=simulators/scenarios/rack-server
output=build/demo/scan
private=

clean_up() {
    stop_simulator
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

install_packages "${TARSEL_BUILD_PACKAGES[@]}"
say "building"
build

umask 077
private=$(mktemp -d)
head -c 18 /dev/urandom | base64 >"$private/password"
start_simulator build/demo/bin "$scenario" "$private"
command=(build/demo/bin/tarsel scan --bmc "demo@127.0.0.1:$simulator_port" --pin "$simulator_fingerprint"
    --password-file "$private/password" --output "$output")
say "scanning the simulated BMC: ${command[*]}"
"${command[@]}"
say "the scan file is $PWD/$output/Tarsel-update-scan.xml"
