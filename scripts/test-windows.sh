#!/usr/bin/env bash
# Cross-builds library, command line and tests for Windows, runs every test under Wine, and compares
# scans of the Windows program with those of the Linux one. Stops at the first stage that fails and
# says which one it was.
#
# Usage: scripts/test-windows.sh             everything
#        scripts/test-windows.sh --build     only what has to be compiled for Windows, so that the
#                                            next run finds it
# Runs on a fresh Debian 12, as root or with sudo, without questions.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
. scripts/common.sh
. scripts/packages.sh
. scripts/stages.sh

cache=${XDG_CACHE_HOME:-$HOME/.cache}/tarsel-windows

# Of others, once a machine: in a folder outside the clone.
build_libraries() {
    TARSEL_WINDOWS_DEPS=$(TARSEL_JOBS=$(parallel_jobs) cmake/windows/build-deps.sh "$cache") ||
        return 1
    export TARSEL_WINDOWS_DEPS
}

# What the Windows program is compared with: simulated machines, the Linux program and its tests.
build_linux_side() {
    configure dev && cmake --build --preset dev --parallel "$(parallel_jobs)" \
        --target tarsel bmc_simulator tarsel_acceptance_test
}

# Tests of the Linux program that the acceptance test leaves out, with the reasons that stand there.
tell_left_out() {
    closing_lines+=("acceptance tests left out:"
        "$(sed -n '/^left_out=(/,/^)/{//d;p;}' tests/windows/acceptance.sh)")
}

main() {
    stage "packages" install_packages "${TARSEL_BUILD_PACKAGES[@]}" "${TARSEL_TEST_PACKAGES[@]}" \
        "${TARSEL_WINDOWS_PACKAGES[@]}"
    stage "windows: libraries" build_libraries
    stage "windows-mingw: configure" configure windows-mingw
    stage "windows-mingw: build" build windows-mingw
    [ "${1-}" != --build ] || return 0
    stage "dev: what is compared" build_linux_side
    stage "windows-mingw: tests" run_tests windows-mingw
    tell_left_out
    tell_stages
}

main "$@"
