#!/usr/bin/env bash
# Runs a script of this folder with the Linux build of the same clone: that of the tests, or that of
# the demo. Skips (77) where neither has what the script needs.
#
# Usage: with_linux_build.sh SCRIPT WINDOWS_BUILD PROGRAM...   (what the script needs of the build)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source=$(cd "$here/../.." && pwd)
script=$1
windows_build=$2
shift 2

has_all() {
    local build=$1 program
    shift
    for program in "$@"; do
        [ -x "$build/bin/$program" ] || return 1
    done
}

for build in "$source/build/dev" "$source/build/demo"; do
    if has_all "$build" "$@"; then
        exec "$here/$script" "$build" "$windows_build"
    fi
done
echo "skipped: no Linux build below $source/build has $*; scripts/test.sh makes one"
exit 77
