#!/usr/bin/env bash
# Runs a Windows program under Wine for CTest: run-wine.sh PROGRAM.exe [ARGUMENT...]
#
# One Wine prefix a machine. The server is started first and by hand: one that the first program
# started would keep that program's output open, and whoever reads it would wait for the server.
set -uo pipefail

export WINEPREFIX=${TARSEL_WINE_PREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/tarsel-wine}
# Arguments and names of files are UTF-8, whatever the caller's language.
export LC_ALL=C.UTF-8
export WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
# Programs that inherit no home folder would each make a prefix of their own.
export HOME=${HOME:-/root}
wine=/usr/lib/wine/wine64
server=/usr/lib/wine/wineserver64
idle_seconds=60

[ -x "$wine" ] || {
    echo "run-wine.sh: $wine is missing (package wine64)" >&2
    exit 127
}

prepare() {
    mkdir -p "$WINEPREFIX"
    exec 9>"$WINEPREFIX/.prepare.lock"
    flock 9
    # A server that runs already ignores this one.
    "$server" "-p$idle_seconds" </dev/null >/dev/null 2>&1 9>&-
    if [ ! -e "$WINEPREFIX/.prepared" ]; then
        "$wine" cmd /c exit </dev/null >/dev/null 2>&1 9>&-
        "$wine" reg add 'HKCU\Software\Wine' /v Version /d win10 /f </dev/null >/dev/null 2>&1 9>&-
        touch "$WINEPREFIX/.prepared"
    fi
    # The services of a fresh server must not inherit the output of a test either.
    if [ "$(cat "$WINEPREFIX/.warm" 2>/dev/null)" != "$(server_identity)" ]; then
        "$wine" cmd /c exit </dev/null >/dev/null 2>&1 9>&-
        server_identity >"$WINEPREFIX/.warm"
    fi
    exec 9>&-
}

# The process number of this prefix's server: its lock file is held by it while it runs.
server_identity() {
    pgrep -f "wineserver64 -p$idle_seconds" | tr '\n' ' '
}

prepare
exec "$wine" "$@"
