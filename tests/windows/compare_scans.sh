#!/usr/bin/env bash
# Scans each simulated machine with the command of this system and, under Wine, with that of Windows:
# both must end alike, print the same tables and write the same scan file, byte for byte.
#
# Usage: compare_scans.sh LINUX_BUILD WINDOWS_BUILD
# LINUX_BUILD has tarsel and bmc_simulator, WINDOWS_BUILD tarsel.exe. The simulator's certificate is
# verified by its fingerprint. Fails with the differences, and when there was nothing to compare.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
linux_build=$(cd "$1" && pwd)
windows_build=$(cd "$2" && pwd)
source=$(cd "$here/../.." && pwd)
. "$source/scripts/common.sh"
. "$source/scripts/simulator.sh"

run_wine=$source/cmake/windows/run-wine.sh
private=$(mktemp -d)
trap 'stop_simulator; rm -rf "$private"' EXIT
umask 077
# A blank, quotes and a letter beyond ASCII: what passes between the systems must survive.
printf 'Fake-Pass "1" \303\244/&\n' >"$private/password"

for program in "$linux_build/bin/tarsel" "$linux_build/bin/bmc_simulator" \
    "$windows_build/bin/tarsel.exe"; do
    [ -e "$program" ] || die "$program was not built"
done

# The ways to scan a scenario, one a line; unknown ones are servers with a BMC.
ways_of() {
    local target="demo@127.0.0.1:$simulator_port" port=$simulator_port
    case $1 in
        chassis-module) echo "--tolv $target" ;;
        chassis-switch) printf '%s\n' "--tolv $target --switch 2" "--tolv $target --switch 12" ;;
        esxi-host) echo "--esxi $target" ;;
        enclosure-module) printf '%s\n' "--bmc $target" "--vesk $target --ipmi-port 9" ;;
        *)
            if [ -d "$source/simulators/scenarios/$1/redfish" ]; then
                echo "--bmc $target"
            else
                echo "--bmc $target --cim-port $port"
            fi
            ;;
    esac
}

# scan NAME OUTPUT COMMAND...: tables, exit code and scan file into the folder OUTPUT.
scan() {
    local output=$1 way=$2 words status=0
    shift 2
    read -ra words <<<"$way"
    mkdir -p "$output/files"
    "$@" scan "${words[@]}" --pin "$simulator_fingerprint" --password-file "$private/password" \
        --output "$output/files" >"$output/tables.txt" 2>"$output/errors.txt" </dev/null || status=$?
    echo "$status" >"$output/exit_code.txt"
}

differences=0
# compare_file LINUX WINDOWS FILE TITLE
compare_file() {
    if ! cmp -s "$1/$3" "$2/$3"; then
        say "$4: $3 differs"
        diff "$1/$3" "$2/$3" | head -n 40 || true
        differences=$((differences + 1))
    fi
}

compare_way() {
    local folder=$private/$1.$compared way=$2 title file
    title="$1 ($(sed 's/demo@[^ ]*/TARGET/; s/--cim-port [0-9]*/--cim-port PORT/' <<<"$way"))"
    scan "$folder/linux" "$way" "$linux_build/bin/tarsel"
    scan "$folder/windows" "$way" "$run_wine" "$windows_build/bin/tarsel.exe"
    for file in exit_code.txt tables.txt files/Tarsel-update-scan.xml; do
        if [ ! -s "$folder/linux/$file" ]; then
            say "$title: the scan here left no $file"
            cat "$folder/linux/errors.txt"
            differences=$((differences + 1))
            continue
        fi
        compare_file "$folder/linux" "$folder/windows" "$file" "$title"
    done
    cmp -s "$folder/linux/exit_code.txt" "$folder/windows/exit_code.txt" ||
        cat "$folder/windows/errors.txt"
    say "$title: exit code $(cat "$folder/linux/exit_code.txt"), $(
        grep -c '<PACKAGE>' "$folder/linux/files/Tarsel-update-scan.xml") units"
}

compared=0
scenarios=0
for folder in "$source"/simulators/scenarios/*/SOURCE; do
    name=$(basename "$(dirname "$folder")")
    start_simulator "$linux_build/bin" "$(dirname "$folder")" "$private"
    while IFS= read -r way; do
        compared=$((compared + 1))
        compare_way "$name" "$way"
    done < <(ways_of "$name")
    stop_simulator
    scenarios=$((scenarios + 1))
done
[ "$compared" -gt 0 ] || die "no scenario was found"
say "$scenarios scenarios compared in $compared ways, $differences differences"
[ "$differences" -eq 0 ]
