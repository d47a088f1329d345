#!/usr/bin/env bash
# Runs the acceptance tests with the Windows command under Wine in place of the command of this
# system: the same simulated machines over TLS, the same expected tables and scan files.
#
# Usage: acceptance.sh LINUX_BUILD WINDOWS_BUILD [GTEST_OPTION...]
# LINUX_BUILD has tarsel_acceptance_test, WINDOWS_BUILD tarsel.exe.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
linux_build=$(cd "$1" && pwd)
windows_build=$(cd "$2" && pwd)
source=$(cd "$here/../.." && pwd)
shift 2
. "$source/scripts/common.sh"

for program in "$linux_build/bin/tarsel_acceptance_test" "$windows_build/bin/tarsel.exe"; do
    [ -e "$program" ] || die "$program was not built"
done

# Tests that cannot hold for the Windows command under Wine, a reason for each group.
left_out=(
    # Recorded Linux machines: their trees are links, and names with colons.
    'OwnMachineScanTest.*'
    # There is no ipmitool for Windows here; the stand-ins for it are scripts.
    'ScanIpmiTest.Module*' 'ScanIpmiTest.Cipher*' 'ScanIpmiTest.WrongPassword*'
    'ScanIpmiTest.DeadHost*' 'ScanIpmiTest.Secret*' 'ScanIpmiTest.Ended*'
    # Wine passes SIGINT on as Ctrl-C, no other signal, and a second one as nothing.
    'Signals/ScanSignalTest.*/1' 'Signals/ScanSignalTest.*/2' 'ScanInterruptionTest.SecondSignal*'
    'HangingRemoteRunTest.IsEndedByASignal'
    # Wine paints a terminal letter by letter, as a console: its text cannot be searched.
    'ScanTerminalTest.*' 'ScanWaitTest.*' 'ScanRemoteTest.PasswordIsAskedFor*'
    # Modes of files.
    'ScanFilesTest.LogIsForItsOwnerOnly'
    # Remembered below LOCALAPPDATA, which Wine sets itself; state_folder_windows_test looks there.
    'ScanFilesTest.Duration*'
    # The locale of the environment would be Wine's, not the command's.
    'ScanOutputTest.LocaleChangesNothing'
    # The environment that Linux shows of a process is the one that Wine was started with.
    'ScanSecretsTest.RunningProcess*'
)

private=$(mktemp -d)
trap 'rm -rf "$private"' EXIT
# Tests give the command a home folder of their own; the Wine prefix stays that of the machine. Wine
# reads the tests' UTF-8 as such only where the locale says so.
cat >"$private/tarsel" <<COMMAND
#!/bin/sh
export TARSEL_WINE_PREFIX='${TARSEL_WINE_PREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/tarsel-wine}'
: "\${LC_ALL:=C.UTF-8}"
export LC_ALL
exec '$source/cmake/windows/run-wine.sh' '$windows_build/bin/tarsel.exe' "\$@"
COMMAND
chmod 755 "$private/tarsel"

filter=$(printf ':%s' ${left_out[@]+"${left_out[@]}"})
TARSEL_COMMAND_UNDER_TEST=$private/tarsel "$linux_build/bin/tarsel_acceptance_test" \
    --gtest_filter="-${filter#:}" "$@"
