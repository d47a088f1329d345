"""Sizes and habits. Function bodies are found by their braces: approximate, but never by luck."""
import bisect
import re

MAX_FILE_LINES = 400
MAX_FUNCTION_LINES = 60
MAX_NESTING = 3

# Tables of data may be longer than other files. Path: reason.
LONG_FILES = {
    "src/common/result/result_code_table.cpp": "one row a registered result code",
    "src/common/result/update_error_table.cpp": "one row an update error",
}

_SIZED_SUFFIXES = (".h", ".hpp", ".cpp", ".cc", ".cmake", ".sh", ".py")
_CONTROL = re.compile(r"\b(if|for|while|switch|catch|do|else|try)\b")
_NOT_FUNCTION = re.compile(r"^\s*(?:[A-Za-z_]+::)?(namespace|class|struct|enum|union|extern)\b")
_UNCHECKED = re.compile(
    r"\bstd::sto(i|l|ul|ll|ull|f|d|ld)\s*\(|\b(std::)?ato(i|l|ll|f)\s*\("
    r"|(\.|->)at\s*\("
    r"|(\.|->)as_(object|array|string|int64|uint64|double|bool)\s*\(")
_TODO = re.compile(r"\b(TODO|FIXME|XXX|HACK)\b(?P<rest>.*)")


def check_file_length(source):
    if not source.name.endswith(_SIZED_SUFFIXES) or source.name in LONG_FILES:
        return
    count = len(source.text.splitlines())
    if count > MAX_FILE_LINES:
        yield source.finding(count, "file-length", f"{count} lines; at most {MAX_FILE_LINES}")


class _Block:
    def __init__(self, kind, line, depth, outer_parens):
        self.kind = kind
        self.line = line
        self.depth = depth
        self.outer_parens = outer_parens


def _kind_of(head, inside_function):
    """What a brace opens, told by the code since the last ';', '{' or '}'."""
    text = head.strip()
    if inside_function:
        first = _CONTROL.match(text)
        return "control" if first else "other"
    if not text or _NOT_FUNCTION.match(text) or text.endswith(("=", "(", ",")):
        return "other"
    return "function" if ")" in text else "other"


def _opens_initializer(code, position):
    """'member_{value}': clang-format puts a blank before every other brace."""
    before = code[position - 1:position]
    return before.isalnum() or before in ("_", ">")


def _blocks(source):
    """Every function and control block as (kind, first line, last line, control depth)."""
    code = "\n".join("" if line.lstrip().startswith("#") else line for line in source.code_lines)
    newlines = [m.start() for m in re.finditer("\n", code)]
    stack, found, head_start, parens, kind = [], [], 0, 0, ""
    for match in re.finditer(r"[{};()]", code):
        sign, position = match.group(0), match.start()
        if sign in "()":
            parens = max(parens + (1 if sign == "(" else -1), 0)
            continue
        if sign == ";":
            if parens == 0:
                head_start = position + 1
            continue
        line = bisect.bisect_left(newlines, position) + 1
        if sign == "{":
            kind = "initializer"
            if not _opens_initializer(code, position):
                inside = any(block.kind == "function" for block in stack)
                kind = _kind_of(code[head_start:position], inside)
            depth = sum(block.kind == "control" for block in stack) + (kind == "control")
            stack.append(_Block(kind, line, depth, parens))
            parens = 0
        elif stack:
            block = stack.pop()
            kind, parens = block.kind, block.outer_parens
            found.append((kind, block.line, line, block.depth))
        if kind != "initializer":
            head_start = position + 1
    return found


def check_function_length(source):
    if not source.is_cxx:
        return
    for kind, first, last, _ in _blocks(source):
        length = last - first + 1
        if kind == "function" and length > MAX_FUNCTION_LINES:
            yield source.finding(first, "function-length",
                                 f"{length} lines; at most {MAX_FUNCTION_LINES}")


def check_nesting(source):
    if not source.is_cxx:
        return
    for kind, first, _, depth in _blocks(source):
        if kind == "control" and depth == MAX_NESTING + 1:
            yield source.finding(first, "nesting", f"{depth} levels; at most {MAX_NESTING}")


def check_unchecked_access(source):
    """Data from outside is asked for, never assumed: find, contains, if_*, from_chars."""
    if not source.is_cxx or not source.name.startswith("src/"):
        return
    for number, line in enumerate(source.code_lines, 1):
        match = _UNCHECKED.search(line)
        if match:
            yield source.finding(number, "unchecked", f"'{match.group(0).strip()}' may throw; "
                                 "use find, if_* or from_chars")


def check_header_shape(source):
    if not source.is_header:
        return
    if "#pragma once" not in source.code:
        yield source.finding(1, "header-shape", "no #pragma once")
    opening = source.text.replace("#pragma once", "", 1).lstrip()
    if not opening.startswith(("//", "/*")):
        yield source.finding(1, "header-shape", "a header opens with what it is for")
    for number, line in enumerate(source.code_lines, 1):
        if re.search(r"\busing\s+namespace\b", line):
            yield source.finding(number, "header-shape", "no 'using namespace' in a header")


def check_todo(source):
    if source.name.startswith("scripts/lint"):
        return
    for number, line in enumerate(source.lines, 1):
        match = _TODO.search(line) if source.is_cxx or source.name.endswith(".cmake") else None
        if match and not re.match(r"\s*\([^)]{3,}\):\s*\S", match.group("rest")):
            yield source.finding(number, "todo", "write TODO(why it is still open): what to do")
