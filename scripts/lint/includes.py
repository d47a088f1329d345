"""Who may include what: arrows go down only, from command line to service to platform to transport.

Third-party means everything in angle brackets that is neither the C++ standard library nor named
for the layer below.
"""
import functools
import re

from lint.source import Source

# Platform folders that no layer above the platform may look into.
PRIVATE_FAMILIES = {"redfish", "ipmi"}

_STANDARD = re.compile(r"^[a-z0-9_]+$")
_SYSTEM = re.compile(
    r"^(sys|arpa|netinet|net|linux|asm)/|^(unistd|poll|fcntl|termios|netdb|dlfcn|pwd|grp|dirent"
    r"|signal|spawn|pthread|syslog|glob|windows|winsock2|ws2tcpip|io|conio|process|direct|aclapi|sddl"
    r"|setupapi|cfgmgr32|winioctl|ntddscsi|nvme|initguid|devpkey)\.h$")
_SYSTEM_FILE = re.compile(r"_(linux|posix|windows)\.(cpp|h)$")

_SERVICE_THIRD_PARTY = re.compile(r"^boost/(property_tree|regex|filesystem)")
_EXPORTED_THIRD_PARTY = re.compile(r"^boost/property_tree/ptree_fwd\.hpp$")
_COMMAND_LINE_THIRD_PARTY = re.compile(r"^CLI/|^boost/(filesystem|property_tree)")
_SIMULATOR_THIRD_PARTY = re.compile(r"^((boost|openssl|CLI|spdlog)/|pugixml\.hpp$)")

_SERVICE = "service/update_scan_service/"


def layer_of(name):
    """The layer's name for a path from the root of the repository, or None outside the rules."""
    if name.startswith("simulators/"):
        return "simulators"
    if not name.startswith("src/"):
        return None
    inside = name[len("src/"):]
    if inside.startswith("common/"):
        return "common"
    if inside.startswith(_SERVICE + "detail/"):
        return "detail"
    if inside.startswith(_SERVICE):
        return "exported" if inside.endswith(".h") else "service"
    if inside.startswith("platform/"):
        return "platform"
    return {"transport/": "transport", "tarsel/": "tarsel"}.get(inside[:inside.find("/") + 1])


def _is_standard(name):
    return bool(_STANDARD.match(name))


def _family(name):
    parts = name.split("/")
    return parts[1] if len(parts) > 2 and parts[0] == "platform" else ""


def _is_family_face(name):
    """platform/<family>/<family>.h"""
    parts = name.split("/")
    return len(parts) == 3 and parts[0] == "platform" and parts[2] == parts[1] + ".h"


@functools.lru_cache(maxsize=None)
def _is_public_platform_header(root, name):
    """True when layers above the platform may include it: it reaches no third-party header."""
    if _family(name) in PRIVATE_FAMILIES:
        return False
    source = Source.load(root, "src/" + name)
    if source is None:
        return True
    for _, mark, included in source.includes():
        if mark == "<" and not _is_standard(included):
            return False
        if included.startswith("transport/"):
            return False
        if included.startswith("platform/") and not _is_public_platform_header(root, included):
            return False
    return True


def _forbidden_by_third_party(layer, source, included):
    allowed = {
        "common": None,
        "exported": _EXPORTED_THIRD_PARTY,
        "service": _SERVICE_THIRD_PARTY,
        "detail": _SERVICE_THIRD_PARTY,
        "tarsel": _COMMAND_LINE_THIRD_PARTY,
        "simulators": _SIMULATOR_THIRD_PARTY,
    }
    if layer == "platform":
        if _is_family_face(source.name[len("src/"):]):
            return "a family's own header includes no third-party and no system header"
        return ""
    if layer not in allowed:
        return ""
    pattern = allowed[layer]
    if pattern is not None and pattern.search(included):
        return ""
    return f"third-party header <{included}> does not belong into the layer '{layer}'"


def _forbidden_project_header(layer, source, included):
    top = included.split("/")[0]
    if layer == "simulators":
        if top in ("common", "service", "platform", "transport", "tarsel"):
            return "simulators share no source with the product"
        return ""
    reachable = {
        "common": {"common"},
        "transport": {"common", "transport"},
        "platform": {"common", "platform", "transport"},
        "exported": {"common", "platform", "service"},
        "service": {"common", "platform", "service"},
        "detail": {"common", "platform", "service"},
        "tarsel": {"common", "platform", "service", "tarsel"},
    }[layer]
    if "/" in included and top not in reachable:
        return f"the layer '{layer}' may not include {top}/"
    if layer in ("exported", "tarsel") and included.startswith(_SERVICE + "detail/"):
        return f"the layer '{layer}' may not include the service's details"
    if layer == "platform":
        if top == "transport" and _is_family_face(source.name[len("src/"):]):
            return "a family's own header includes no transport"
        return ""
    if top == "platform" and not _is_public_platform_header(source.root, included):
        return "private platform header: include the family's own header instead"
    return ""


def check_layering(source):
    layer = layer_of(source.name)
    if layer is None or not source.is_cxx:
        return
    for line, mark, included in source.includes():
        if mark == "<":
            if _is_standard(included) or _SYSTEM.search(included):
                continue
            reason = _forbidden_by_third_party(layer, source, included)
        else:
            reason = _forbidden_project_header(layer, source, included)
        if reason:
            yield source.finding(line, "layering", reason)


def check_system_headers(source):
    """Operating-system calls live in files named after the system."""
    if not source.is_cxx or not source.name.startswith("src/"):
        return
    if _SYSTEM_FILE.search(source.name):
        return
    for line, _, included in source.includes():
        if _SYSTEM.search(included):
            yield source.finding(
                line, "system-header",
                f"<{included}> belongs into a file named *_linux, *_posix or *_windows")


def check_own_header_first(source):
    """A source file proves that its header compiles alone."""
    if not source.name.endswith(".cpp"):
        return
    stem = re.sub(r"_(linux|posix|windows)$", "", source.name.rsplit("/", 1)[-1][:-len(".cpp")])
    folder = source.name.rsplit("/", 1)[0]
    if not (source.root / folder / (stem + ".h")).is_file():
        return
    first = next(iter(source.includes()), None)
    if first is not None and first[2].rsplit("/", 1)[-1] != stem + ".h":
        yield source.finding(first[0], "own-header-first", f"include {stem}.h first")
