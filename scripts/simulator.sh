# Starts and stops the built simulated BMC; sourced after common.sh.

simulator_pid=

# start_simulator BIN_FOLDER SCENARIO PRIVATE_FOLDER: user "demo", password in
# PRIVATE_FOLDER/password. Sets simulator_pid, simulator_port and simulator_fingerprint.
start_simulator() {
    local line ready="$3/ready"
    rm -f "$ready"
    mkfifo "$ready"
    "$1/bmc_simulator" --scenario "$2" --user demo --password-file "$3/password" >"$ready" &
    simulator_pid=$!
    IFS= read -r -t 30 line <"$ready" || die "the simulated BMC did not start"
    simulator_port=$(sed -n 's/.*url=https:\/\/[^ ]*:\([0-9]*\).*/\1/p' <<<"$line")
    simulator_fingerprint=$(sed -n 's/.*fingerprint=\([0-9a-f]*\).*/\1/p' <<<"$line")
    [ -n "$simulator_port" ] && [ -n "$simulator_fingerprint" ] ||
        die "the simulated BMC said: $line"
}

stop_simulator() {
    [ -n "$simulator_pid" ] || return 0
    kill "$simulator_pid" 2>/dev/null || true
    wait "$simulator_pid" 2>/dev/null || true
    simulator_pid=
}
