#!/usr/bin/env bash
# Every check of the sources that needs no build: the lint, the lint's own test, the format, and the
# scripts' own syntax.
#
# Usage: scripts/check.sh        report
#        scripts/check.sh --fix  reformat the C++ sources first
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
. scripts/common.sh

failed=0

check() {
    local name=$1
    shift
    if "$@"; then
        say "ok: $name"
    else
        say "FAILED: $name"
        failed=1
    fi
}

cxx_sources() { git ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp' '*.cc'; }

format_is_right() { cxx_sources | xargs -0 -r clang-format --dry-run -Werror; }

scripts_parse() {
    local file status=0
    while IFS= read -r -d '' file; do
        bash -n "$file" || status=1
    done < <(git ls-files -z --cached --others --exclude-standard -- '*.sh' .ci/run)
    return "$status"
}

for tool in git python3 clang-format; do
    command -v "$tool" >/dev/null 2>&1 || die "$tool is missing; scripts/test.sh installs it"
done
# A clone made by another user (a container's root, say) is still this tree.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0="$PWD"
# No byte code beside the sources.
export PYTHONDONTWRITEBYTECODE=1

if [ "${1:-}" = "--fix" ]; then
    cxx_sources | xargs -0 -r clang-format -i
fi
check "lint self-test" python3 scripts/lint_self_test.py
check "source lint" python3 scripts/lint_sources.py
check "format" format_is_right
check "scripts parse" scripts_parse
exit "$failed"
