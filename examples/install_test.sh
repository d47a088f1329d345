#!/usr/bin/env bash
# Installs the built tree into an empty prefix, builds the example against it as a stranger would,
# and lets it scan the simulated BMC. Any failing step fails the test.
#
# Usage: install_test.sh BUILD_FOLDER SOURCE_FOLDER CXX_FLAGS
set -euo pipefail
build=$1
source=$2
flags=$3
. "$source/scripts/common.sh"
. "$source/scripts/simulator.sh"

private=$(mktemp -d)
trap 'stop_simulator; rm -rf "$private"' EXIT
umask 077

cmake --install "$build" --prefix "$private/prefix" >/dev/null
for file in bin/tarsel include/tarsel/service/update_scan_service/service_update_scan.h; do
    [ -e "$private/prefix/$file" ] || die "$file was not installed"
done
lists=$(find "$private/prefix" -name '*_systems_list.txt' | wc -l)
[ "$lists" -eq 6 ] || die "$lists system lists were installed, not 6"
"$private/prefix/bin/tarsel" --version

cmake -S "$source/examples/scan_to_xml" -B "$private/build" -G Ninja \
    -DCMAKE_PREFIX_PATH="$private/prefix" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$private/build"

echo demo-pass-1 >"$private/password"
start_simulator "$build/bin" "$source/simulators/scenarios/rack-server" "$private"
BMC_PASSWORD=demo-pass-1 "$private/build/scan_to_xml" 127.0.0.1 "$simulator_port" demo \
    "$simulator_fingerprint" "$private/scan.xml"
grep -q '<SOFTWAREID>' "$private/scan.xml" || die "the scan file holds no unit"
