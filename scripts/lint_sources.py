#!/usr/bin/env python3
"""Checks of the sources that the compiler does not make: who includes what, sizes, banned words.

Usage: lint_sources.py [--root DIR] [FILE...]
Without FILE every tracked file below the root is checked. Prints one line a finding,
"path:line: [rule] what to do", and ends with status 1 when there was one. A line can be excused by
a comment "lint-ok(rule): reason" on it or on the line above; the reason is required.

The rules live in scripts/lint/, their failing samples in scripts/lint_samples/.
"""
import argparse
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from lint import includes, style, words  # noqa: E402
from lint.source import Source  # noqa: E402

RULES = [
    includes.check_layering,
    includes.check_system_headers,
    includes.check_own_header_first,
    style.check_file_length,
    style.check_function_length,
    style.check_nesting,
    style.check_unchecked_access,
    style.check_header_shape,
    style.check_todo,
    words.check_forbidden_words,
]


def tracked_files(root):
    listed = subprocess.run(
        ["git", "-C", str(root), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, capture_output=True).stdout.decode()
    return sorted(name for name in listed.split("\0") if name)


def lint(root, names):
    """All findings in the named files, as (path, line, rule, text), in file order."""
    findings = []
    for name in names:
        source = Source.load(root, name)
        if source is None:
            continue
        found = [f for rule in RULES for f in rule(source) if not source.is_excused(f)]
        found.extend(source.excuses_without_reason())
        findings.extend(sorted(found, key=lambda finding: finding[1]))
    return findings


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--root", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("files", nargs="*")
    arguments = parser.parse_args()
    names = arguments.files or tracked_files(arguments.root)
    findings = lint(arguments.root, names)
    for path, line, rule, text in findings:
        print(f"{path}:{line}: [{rule}] {text}")
    print(f"{len(names)} files checked, {len(findings)} findings", file=sys.stderr)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
