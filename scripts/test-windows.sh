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

# What the compiler cache needs to know about headers that are compiled before.
export CCACHE_SLOPPINESS=pch_defines,time_macros

# Of others, once a machine: in a folder outside the clone.
build_libraries() {
    TARSEL_JOBS=$(parallel_jobs) TARSEL_WINDOWS_DEPS=$(cmake/windows/build-deps.sh "$cache") || return 1
    export TARSEL_WINDOWS_DEPS
}

# The simulated machines and the program whose scans are the yardstick; those of the tests' own
# build where it is there.
linux_preset() { [ -e build/dev/CMakeCache.txt ] && echo dev || echo demo; }

build_linux_side() {
    local preset
    preset=$(linux_preset)
    configure "$preset" &&
        cmake --build --preset "$preset" --target tarsel bmc_simulator --parallel "$(parallel_jobs)"
}

main() {
    stage "packages" install_packages "${TARSEL_BUILD_PACKAGES[@]}" "${TARSEL_TEST_PACKAGES[@]}" \
        "${TARSEL_WINDOWS_PACKAGES[@]}"
    stage "windows: libraries" build_libraries
    stage "windows-mingw: configure" configure windows-mingw -DTARSEL_PRECOMPILE_TEST_HEADERS=ON
    stage "windows-mingw: build" build windows-mingw
    [ "${1-}" != --build ] || return 0
    stage "linux: simulator and tool" build_linux_side
    stage "windows-mingw: tests" run_tests windows-mingw
    tell_stages
}

main "$@"
