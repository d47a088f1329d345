#!/usr/bin/env bash
# Installs what is needed, builds and runs every test: source checks, the dev preset, then the
# sanitizer preset. Stops at the first stage that fails and says which one it was.
#
# Usage: scripts/test.sh
# Runs on a fresh Debian 12, as root or with sudo, without questions.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
. scripts/common.sh
. scripts/packages.sh
. scripts/stages.sh

# Without them one test skips and says so; a machine without network can do the rest.
fetch_guest_files() {
    scripts/guest_files.sh || say "no kernel for the machine test: that test will be skipped"
}

main() {
    local preset
    stage "packages" install_packages "${TARSEL_BUILD_PACKAGES[@]}" "${TARSEL_TEST_PACKAGES[@]}"
    stage "source checks" scripts/check.sh
    stage "guest files" fetch_guest_files
    for preset in dev asan-ubsan; do
        stage "$preset: configure" configure "$preset"
        stage "$preset: build" build "$preset"
        stage "$preset: tests" run_tests "$preset"
    done
    tell_stages
}

main
