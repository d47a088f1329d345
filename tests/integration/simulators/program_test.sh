#!/usr/bin/env bash
# The simulated BMC as a program: what it prints and writes, how it ends, what it refuses.
# Usage: program_test.sh PROGRAM SCENARIO_FOLDER
set -u
program=$1
scenario=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

expect() {
    local what=$1
    shift
    "$@" || { echo "FAILED: $what" >&2; failures=$((failures + 1)); }
}

wait_for_line() {
    local tries=0
    until [ -s "$1" ] || [ "$tries" -ge 600 ]; do sleep 0.05; tries=$((tries + 1)); done
}

"$program" --scenario "$scenario" --port-file "$work/port" --ca-file "$work/ca.pem" \
    --counts-on-exit >"$work/out" 2>"$work/err" &
pid=$!
wait_for_line "$work/out"
port=$(cat "$work/port")
expect "one line says where" grep -Eqx \
    "url=https://127.0.0.1:$port fingerprint=[0-9a-f]{64} ca-file=$work/ca.pem" "$work/out"
expect "the CA file holds a certificate" grep -q "BEGIN CERTIFICATE" "$work/ca.pem"
expect "it listens" bash -c "exec 3<>/dev/tcp/127.0.0.1/$port"
kill -TERM "$pid"
wait "$pid"
expect "SIGTERM ends it well" test $? -eq 0
expect "counts come last" grep -q "^connections=1 handshakes=0 requests=0 " "$work/out"
expect "nothing on standard error" test ! -s "$work/err"

"$program" --scenario "$scenario" --end-with-input </dev/null >"$work/out"
expect "the end of its input ends it" test $? -eq 0

"$program" --scenario "$work/nowhere" >"$work/out" 2>&1 </dev/null
expect "a missing scenario is an error" test $? -ne 0

"$program" --scenario "$work" --end-with-input >"$work/out" 2>"$work/err" </dev/null
expect "a folder without a service is an error" test $? -ne 0
expect "the error says why" grep -q "no redfish/v1/index.json" "$work/err"

unset BMC_SIMULATOR_TEST_PASSWORD
"$program" --scenario "$scenario" --password-env BMC_SIMULATOR_TEST_PASSWORD \
    --end-with-input >"$work/out" 2>"$work/err" </dev/null
expect "an unset password variable is an error" test $? -ne 0
expect "the error names the password" grep -q "password could not be read" "$work/err"

exit $((failures > 0))
