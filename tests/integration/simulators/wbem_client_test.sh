#!/usr/bin/env bash
# A CIM client of other hands against the simulated CIM service.
# Usage: wbem_client_test.sh PROGRAM SCENARIO_FOLDER
set -u
program=$1
scenario=$2
work=$(mktemp -d)
pid=
trap '[ -z "$pid" ] || kill "$pid"; rm -rf "$work"' EXIT
failures=0

if ! command -v wbemcli >/dev/null 2>&1; then
    echo "SKIPPED: wbemcli is not installed (Debian package sblim-wbemcli)"
    exit 77
fi

expect() {
    local what=$1
    shift
    "$@" || { echo "FAILED: $what" >&2; failures=$((failures + 1)); }
}

"$program" --scenario "$scenario" --port-file "$work/port" --ca-file "$work/ca.pem" >"$work/out" &
pid=$!
tries=0
until [ -s "$work/out" ] || [ "$tries" -ge 600 ]; do sleep 0.05; tries=$((tries + 1)); done
target=127.0.0.1:$(cat "$work/port")/root/cimv2

ask() {
    local operation=$1 login=$2 object=$3
    wbemcli -nl -cacert "$work/ca.pem" "$operation" "https://$login@$target:$object" \
        >"$work/answer" 2>"$work/error"
}

ask ei demo:demo-pass-1 CIM_SoftwareIdentity
expect "enumeration succeeds" test $? -eq 0
expect "a version is read" grep -q '^-VersionString="8.4.1"' "$work/answer"
expect "an array is read" grep -q '^-Classifications=10' "$work/answer"
ask ein demo:demo-pass-1 CIM_Slot
expect "names are enumerated" test "$(grep -c 'EX_Bay' "$work/answer")" -eq 2
ask gi demo:demo-pass-1 'EX_Bay.CreationClassName=EX_Bay,Tag=bay-2'
expect "one instance is got" grep -q '^-Number=2' "$work/answer"
wbemcli -nl -cacert "$work/ca.pem" ai -ac CIM_PackageInSlot \
    "https://demo:demo-pass-1@$target:EX_Bay.CreationClassName=EX_Bay,Tag=bay-2" >"$work/answer"
expect "an association is followed" grep -q 'switch-card-2' "$work/answer"
ask ei demo:demo-pass-1 CIM_Fan
expect "an unknown class is told" grep -q '(5) CIM_ERR_INVALID_CLASS' "$work/error"
ask ei demo:wrong CIM_Slot
expect "a wrong password is told" grep -q 'Invalid username/password' "$work/error"
exit "$failures"
