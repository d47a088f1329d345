"""One source file as the rules see it: its text, and its text without comments and literals."""
import re

CXX_SUFFIXES = (".h", ".cpp", ".cc", ".hpp")
BINARY_SUFFIXES = (".png", ".bin", ".der", ".zip", ".gz")

_TOKEN = re.compile(
    r'//[^\n]*'
    r'|/\*.*?\*/'
    r'|R"(?P<tag>[^()\\\s]{0,16})\(.*?\)(?P=tag)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'",
    re.DOTALL)
_EXCUSE = re.compile(r"lint-ok\((?P<rule>[a-z-]+)\)(?::\s*(?P<reason>\S.*))?")
_INCLUDE = re.compile(r'^\s*#\s*include\s*(?P<mark>[<"])(?P<name>[^>"]+)[>"]')


def _blank(match):
    """The same number of lines and columns, so that positions stay true."""
    text = match.group(0)
    kept = '""' if text[0] in '"R' else ""
    body = re.sub(r"[^\n]", " ", text)
    return kept + body[len(kept):] if kept and "\n" not in text[:2] else body


class Source:
    def __init__(self, root, name, text):
        self.root = root
        self.name = name
        self.text = text
        self.lines = text.split("\n")
        self.is_cxx = name.endswith(CXX_SUFFIXES)
        self.is_header = name.endswith((".h", ".hpp"))
        self.code = _TOKEN.sub(_blank, text) if self.is_cxx else text
        self.code_lines = self.code.split("\n")

    @staticmethod
    def load(root, name):
        """None for files that are gone or not text."""
        path = root / name
        if name.endswith(BINARY_SUFFIXES) or not path.is_file():
            return None
        data = path.read_bytes()
        if b"\0" in data[:4096]:
            return None
        return Source(root, name, data.decode("utf-8", errors="replace"))

    def includes(self):
        """(line number, marker, name) of every include directive that is not commented out."""
        for number, line in enumerate(self.lines, 1):
            match = _INCLUDE.match(line)
            if match and self.code_lines[number - 1].strip():
                yield number, match.group("mark"), match.group("name")

    def finding(self, line, rule, text):
        return (self.name, line, rule, text)

    def is_excused(self, finding):
        _, line, rule, _ = finding
        for candidate in self.lines[max(line - 2, 0):line]:
            match = _EXCUSE.search(candidate)
            if match and match.group("rule") == rule and match.group("reason"):
                return True
        return False

    def excuses_without_reason(self):
        if self.name.startswith("scripts/"):
            return
        for number, line in enumerate(self.lines, 1):
            match = _EXCUSE.search(line)
            if match and not match.group("reason"):
                yield self.finding(number, "excuse", "an excuse needs its reason after a colon")
