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

summaries=()
closing_lines=()

stage() {
    local name=$1 started=$SECONDS
    shift
    say "stage: $name"
    if ! "$@"; then
        say "FAILED in stage: $name (command: $*)"
        exit 1
    fi
    summaries+=("$(printf '%-28s %4d s' "$name" $((SECONDS - started)))")
}

configure() {
    local launcher
    mapfile -t launcher < <(compiler_launcher)
    cmake --preset "$1" "${launcher[@]}"
}

build() { cmake --build --preset "$1" --parallel "$(parallel_jobs)"; }

# One line for the tests that failed once, whatever they did then.
second_tries() {
    local names
    names=$(sed -nE 's/^ *[0-9]+\/[0-9]+ Test +#[0-9]+: ([^ ]+) .*\*\*\*(Failed|Timeout|Exception).*/\1/p;
        s/^ +Test +#[0-9]+: ([^ ]+) .*\*\*\*(Failed|Timeout|Exception).*/\1/p' "$1" | sort -u)
    [ -z "$names" ] || echo "failed at the first try: $(echo "$names" | tr '\n' ' ')"
}

# Keeps CTest's closing lines for the end of the run.
run_tests() {
    local log="build/$1/ctest.log" status
    # Many tests wait for a peer that stays silent: more of them at once keep the cores busy. Tests
    # with real processes may meet a machine that is too busy: each has a second try, told below.
    ctest --preset "$1" --parallel "$(( $(nproc) * 4 ))" --repeat until-pass:2 2>&1 | tee "$log"
    status=$?
    closing_lines+=("$(second_tries "$log")")
    grep -qE '^100% tests passed, 0 tests failed out of [1-9]' "$log" || status=1
    closing_lines+=("$(grep -E 'tests passed' "$log")")
    return "$status"
}

# Without them one test skips and says so; a machine without network can do the rest.
fetch_guest_files() {
    scripts/guest_files.sh || say "no kernel for the machine test: that test will be skipped"
}

main() {
    local line preset
    stage "packages" install_packages "${TARSEL_BUILD_PACKAGES[@]}" "${TARSEL_TEST_PACKAGES[@]}"
    stage "source checks" scripts/check.sh
    stage "guest files" fetch_guest_files
    for preset in dev asan-ubsan; do
        stage "$preset: configure" configure "$preset"
        stage "$preset: build" build "$preset"
        stage "$preset: tests" run_tests "$preset"
    done
    say "all stages passed, $SECONDS s in all"
    for line in "${summaries[@]}"; do say "  $line"; done
    for line in "${closing_lines[@]}"; do [ -z "$line" ] || printf '%s\n' "$line"; done
}

main
