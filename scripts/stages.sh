# Stages of a test run; sourced after common.sh, from the root of the tree.

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

# configure PRESET CMAKE_OPTION...
configure() {
    local launcher
    mapfile -t launcher < <(compiler_launcher)
    cmake --preset "$1" "${launcher[@]}" "${@:2}"
}

build() { cmake --build --preset "$1" --parallel "$(parallel_jobs)"; }

# One line for the tests that failed once, whatever they did then.
second_tries() {
    local names
    names=$(sed -nE 's/^ *[0-9]+\/[0-9]+ Test +#[0-9]+: ([^ ]+) .*\*\*\*(Failed|Timeout|Exception).*/\1/p;
        s/^ +Test +#[0-9]+: ([^ ]+) .*\*\*\*(Failed|Timeout|Exception).*/\1/p' "$1" | sort -u)
    [ -z "$names" ] || echo "failed at the first try: $(echo "$names" | tr '\n' ' ')"
}

# run_tests PRESET: keeps CTest's closing lines for the end of the run, with the reason of each skip.
run_tests() {
    local log="build/$1/ctest.log" results="build/$1/ctest.xml" status
    # Many tests wait for a peer that stays silent: more of them at once keep the cores busy. Tests
    # with real processes may meet a machine that is too busy: each has a second try, told below.
    ctest --preset "$1" --parallel "$(( $(nproc) * 4 ))" --repeat until-pass:2 \
        --output-junit "$PWD/$results" 2>&1 | tee "$log"
    status=$?
    closing_lines+=("$(second_tries "$log")")
    grep -qE '^100% tests passed, 0 tests failed out of [1-9]' "$log" || status=1
    closing_lines+=("$1: $(grep -E 'tests passed' "$log")" "$(python3 scripts/skipped_tests.py "$results")")
    return "$status"
}

tell_stages() {
    local line
    say "all stages passed, $SECONDS s in all"
    for line in "${summaries[@]}"; do say "  $line"; done
    for line in "${closing_lines[@]}"; do [ -z "$line" ] || printf '%s\n' "$line"; done
}
