#!/usr/bin/env python3
"""Proves that every lint rule fires: lays each sample of lint_samples/ into an empty tree, lints it
and compares the rules that fired with those the sample expects.

A sample is a header ("path:", "expect:" with rule names, perhaps "repeat:" and "also: path | text"),
a line "---" and a body. Placeholders keep banned words and long stretches out of the repository.
"""
import pathlib
import re
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

import lint_sources  # noqa: E402

BANNED = [
    "Part" + " 2.4", "spec" + ".md", "the sp" + "ecification", "as speci" + "fied", "per sp" + "ec",
    "shar" + "ed/notes.txt", "/wor" + "k/main", "deb" + ".debian.org", "registry" + ".npmjs",
    "issue" + " 3", "A" + "12", "../shar" + "ed/mockups", "shar" + "ed",
]


def fill(body):
    body = body.replace("{{todo}}", "TO" + "DO")
    body = re.sub(r"\{\{word:(\d+)\}\}", lambda m: BANNED[int(m.group(1))], body)
    body = re.sub(r"\{\{lines:(\d+)\}\}",
                  lambda m: "".join(f"    value += {n};\n" for n in range(int(m.group(1)))), body)
    return re.sub(
        r"\{\{functions:(\d+)\}\}",
        lambda m: "".join(f"    int F{n}() const {{ return {n}; }}\n" for n in range(int(m.group(1)))),
        body)


def read_sample(path):
    head, _, body = path.read_text().partition("---\n")
    fields = dict(line.split(":", 1) for line in head.splitlines())
    fields = {key: value.strip() for key, value in fields.items()}
    count = int(fields.get("repeat", 1))
    text = "".join(fill(body).replace("{{n}}", str(n)) for n in range(count))
    return fields, text


def rules_fired(fields, text):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        files = {fields["path"]: text}
        if "also" in fields:
            path, _, other = fields["also"].partition(" | ")
            files[path] = other.replace("#", "\n#") + "\n"
        for path, content in files.items():
            (root / path).parent.mkdir(parents=True, exist_ok=True)
            (root / path).write_text(content)
        return {rule for _, _, rule, _ in lint_sources.lint(root, [fields["path"]])}


def main():
    failures, covered = 0, set()
    samples = sorted((HERE / "lint_samples").glob("*.sample"))
    for path in samples:
        fields, text = read_sample(path)
        expected = set(fields["expect"].split())
        fired = rules_fired(fields, text)
        covered |= fired
        if fired != expected:
            failures += 1
            print(f"{path.name}: expected {sorted(expected)}, fired {sorted(fired)}")
    names = {"layering", "system-header", "own-header-first", "file-length", "function-length",
             "nesting", "unchecked", "header-shape", "todo", "words", "excuse"}
    for rule in sorted(names - covered):
        failures += 1
        print(f"no sample makes the rule '{rule}' fire")
    print(f"lint self-test: {len(samples) - failures} passed, {failures} failed", file=sys.stderr)
    return 1 if failures or not samples else 0


if __name__ == "__main__":
    sys.exit(main())
