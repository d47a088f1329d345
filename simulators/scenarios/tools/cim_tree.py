"""Writes the CIM instances of one invented scenario as cim/<class>.xml.

Deterministic: the same calls give the same bytes, so that a regenerated scenario shows only what
was meant to change.
"""

import pathlib
import shutil
from xml.sax.saxutils import escape, quoteattr

SCENARIOS = pathlib.Path(__file__).resolve().parent.parent


class Ref:
    """The name of an instance: what references refer to."""

    def __init__(self, class_name, **keys):
        self.class_name = class_name
        self.keys = keys

    def xml(self):
        bindings = "".join(
            f"<KEYBINDING NAME={quoteattr(key)}>{key_value(value)}</KEYBINDING>"
            for key, value in self.keys.items()
        )
        return f"<INSTANCENAME CLASSNAME={quoteattr(self.class_name)}>{bindings}</INSTANCENAME>"


def key_value(value):
    if isinstance(value, Ref):
        return f"<VALUE.REFERENCE>{value.xml()}</VALUE.REFERENCE>"
    kind = "numeric" if isinstance(value, int) else "string"
    return f'<KEYVALUE VALUETYPE="{kind}">{escape(str(value))}</KEYVALUE>'


def type_of(value):
    if isinstance(value, bool):
        return "boolean"
    return "uint16" if isinstance(value, int) else "string"


def text_of(value):
    if isinstance(value, bool):
        return "TRUE" if value else "FALSE"
    return escape(str(value))


def property_xml(name, value):
    attribute = quoteattr(name)
    if value is None:
        return f'<PROPERTY NAME={attribute} TYPE="string" PROPAGATED="true"/>'
    if isinstance(value, Ref):
        return (
            f"<PROPERTY.REFERENCE NAME={attribute} REFERENCECLASS={quoteattr(value.class_name)}>"
            f"<VALUE.REFERENCE>{value.xml()}</VALUE.REFERENCE></PROPERTY.REFERENCE>"
        )
    if isinstance(value, list):
        values = "".join(f"<VALUE>{text_of(item)}</VALUE>" for item in value)
        kind = type_of(value[0]) if value else "string"
        return (
            f'<PROPERTY.ARRAY NAME={attribute} TYPE="{kind}"><VALUE.ARRAY>{values}</VALUE.ARRAY>'
            "</PROPERTY.ARRAY>"
        )
    kind = type_of(value)
    return f'<PROPERTY NAME={attribute} TYPE="{kind}"><VALUE>{text_of(value)}</VALUE></PROPERTY>'


class CimTree:
    """One scenario folder whose cim/ is emptied when opened. `source` says what it stands for."""

    def __init__(self, name, source, name_space="root/cimv2"):
        self.folder = SCENARIOS / name
        self.name_space = name_space
        self.classes = {}
        shutil.rmtree(self.folder / "cim", ignore_errors=True)
        (self.folder / "cim").mkdir(parents=True, exist_ok=True)
        text = (
            source + "\nEvery name, number and version here is invented; no machine was recorded.\n"
        )
        text += "Made by simulators/scenarios/tools/make_scenarios.py; change it there.\n"
        (self.folder / "SOURCE").write_text(text, encoding="utf-8")

    def known(self, base_class):
        """A class that the service knows, with or without instances."""
        self.classes.setdefault(base_class, [])

    def add(self, base_class, name, **properties):
        """An instance below `base_class`, named by `name`; returns the name."""
        self.known(base_class)
        lines = [f"      {property_xml(key, value)}" for key, value in properties.items()]
        self.classes[base_class].append(
            "  <VALUE.NAMEDINSTANCE>\n    "
            + name.xml()
            + f"\n    <INSTANCE CLASSNAME={quoteattr(name.class_name)}>\n"
            + "\n".join(lines)
            + "\n    </INSTANCE>\n  </VALUE.NAMEDINSTANCE>\n"
        )
        return name

    def link(self, base_class, own_class, **ends):
        """An association: an instance whose properties and keys are references."""
        references = {key: value for key, value in ends.items() if isinstance(value, Ref)}
        return self.add(base_class, Ref(own_class, **references), **ends)

    def system(self, own_class, name, dedicated, element_name, **properties):
        keys = {"CreationClassName": own_class, "Name": name}
        return self.add(
            "CIM_ComputerSystem",
            Ref(own_class, **keys),
            **keys,
            ElementName=element_name,
            Dedicated=dedicated,
            **properties,
        )

    def package(self, base_class, own_class, tag, **properties):
        """A chassis or card; a chassis is a package, too, so that both classes list it."""
        keys = {"CreationClassName": own_class, "Tag": tag}
        name = Ref(own_class, **keys)
        for listed in dict.fromkeys((base_class, "CIM_PhysicalPackage")):
            self.add(listed, name, **keys, **properties)
        return name

    def software(self, software_id, name, version, system=None, instance_id=None, **properties):
        """A CIM_SoftwareIdentity, installed on `system` where one is given."""
        instance_id = instance_id or "EX:INSTALLED:" + software_id
        identity = self.add(
            "CIM_SoftwareIdentity",
            Ref("EX_SoftwareIdentity", InstanceID=instance_id),
            **{
                "InstanceID": instance_id,
                "ElementName": name,
                "Name": name,
                "Description": name + " firmware",
                "Manufacturer": "Example",
                "VersionString": version,
                "Classifications": [10],
                "IdentityInfoType": ["EXAMPLE:SoftwareID"],
                "IdentityInfoValue": [software_id],
                "TargetOperatingSystems": [1],
                "ReleaseDate": "20250131000000.000000+000",
                **properties,
            },
        )
        if system is not None:
            self.link(
                "CIM_InstalledSoftwareIdentity",
                "EX_InstalledSoftwareIdentity",
                System=system,
                InstalledSoftware=identity,
            )
        return identity

    def file(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")

    def write(self):
        for base_class, instances in self.classes.items():
            head = f'<INSTANCES NAMESPACE={quoteattr(self.name_space)} CLASS="{base_class}">\n'
            text = '<?xml version="1.0" encoding="utf-8"?>\n' + head
            text += "".join(instances) + "</INSTANCES>\n"
            (self.folder / "cim" / f"{base_class}.xml").write_text(text, encoding="utf-8")
