#!/usr/bin/env bash
# Builds the release preset and prints every measurement in one run: micro benchmarks with ratios,
# whole scans, peak memory of the command, start-up, local scans beside lshw. Asserts nothing.
#
# Usage: bench/run.sh [RUNS]     RUNS: repetitions of each whole scan, 3 by default
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/common.sh
. scripts/packages.sh
. scripts/simulator.sh

runs=${1:-3}
bin=build/release/bin
private=

clean_up() {
    stop_simulator
    [ -z "$private" ] || rm -rf "$private"
}
trap clean_up EXIT

build() {
    local launcher
    mapfile -t launcher < <(compiler_launcher)
    cmake --preset release -DTARSEL_BUILD_TESTS=OFF "${launcher[@]}" >&2
    cmake --build --preset release --parallel "$(parallel_jobs)" >&2
}

measure_memory() {
    local entries
    printf '\nPeak memory of the whole command\n'
    for entries in 20 100 200 300; do
        "$bin/make_large_scenario" "$private/scenario-$entries" "$entries"
        start_simulator "$bin" "$private/scenario-$entries" "$private"
        printf '%4d entries: ' "$entries"
        "$bin/measure_command" 5 "$bin/tarsel" scan --bmc "demo@127.0.0.1:$simulator_port" \
            --pin "$simulator_fingerprint" --password-file "$private/password" --output "$private/output"
        stop_simulator
    done
}

measure_start_up() {
    printf '\nStart-up, median of 30\n'
    printf 'empty program with libcurl: '
    "$bin/measure_command" 30 "$bin/empty_curl"
    printf 'tarsel --help:              '
    "$bin/measure_command" 30 "$bin/tarsel" --help
}

install_packages "${TARSEL_BUILD_PACKAGES[@]}" "${TARSEL_BENCH_PACKAGES[@]}"
build
umask 077
private=$(mktemp -d)
echo demo-pass-1 >"$private/password"

"$bin/report_bench" --benchmark_min_time=0.2 --benchmark_out="$private/report.json" \
    --benchmark_out_format=json >/dev/null
python3 bench/ratios.py "$private/report.json"
"$bin/scan_bench" "$runs"
measure_memory
measure_start_up
bench/local_scan.sh "$bin"
