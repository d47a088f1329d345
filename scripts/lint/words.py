"""Words that must not stand in the project: places of one machine, hosts of package registries, and
references to papers that readers of this repository do not have.

The patterns are written in pieces, so that this file does not contain what it looks for.
"""
import re

_EVERYWHERE = [
    (re.compile(r"\b[Pp]art" r"s? [1-6]\.[1-9]\b"), "reference to a numbered section elsewhere"),
    (re.compile(r"[Ss]pec(?:ification)?" r"\.md|\bthe [Ss]pec(?:ification)?\b(?! by)"
                r"|\bas speci" r"fied\b|\bper sp" r"ec\b"),
     "say what holds, not which paper says so"),
    (re.compile(r"(?<!lib)(?<!make_)(?<!std::)\bshar" r"ed/"), "path of one machine"),
    (re.compile(r"/wor" r"k/|/far" r"m/|\.lib" r"rary\b"), "path of one machine"),
    (re.compile(r"\b(deb|security|ftp)[.]debian[.]org|registry[.]npmjs|\bpypi[.]org"
                r"|index[.]crates[.]io|proxy[.]golang[.]org"), "name of a package registry"),
    (re.compile(r"\bannex\b|\bissue #?\d+\b", re.IGNORECASE), "reference to a planning note"),
]
_IN_COMMENTS = [
    (re.compile(r"(?://|\*|^\s*#).*[\s(,](?:[ABDERWLI]\d{1,3}|C\d{2,3})(?=[\s),.;:]|$)"),
     "looks like the number of a decision; say the decision"),
]
_RECORDED_DATA = re.compile(r"\.\./shar" r"ed/mockups|SHAR" r"ED_MOCKUPS")


def check_forbidden_words(source):
    if source.name.endswith(".json"):
        return
    for number, line in enumerate(source.lines, 1):
        if _RECORDED_DATA.search(line):
            continue
        patterns = list(_EVERYWHERE)
        if source.is_cxx:
            patterns += _IN_COMMENTS
        for pattern, text in patterns:
            if pattern.search(line):
                yield source.finding(number, "words", text)
