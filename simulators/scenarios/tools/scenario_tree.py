"""Writes the resources of one invented scenario as redfish/v1/**/index.json.

Deterministic: the same calls give the same bytes, so that a regenerated scenario shows only what
was meant to change.
"""

import json
import pathlib
import shutil

V1 = "/redfish/v1"
SCENARIOS = pathlib.Path(__file__).resolve().parent.parent


def link(path):
    return {"@odata.id": path}


def links(paths):
    return [link(path) for path in paths]


def status(state="Enabled", health="OK"):
    return {"State": state, "Health": health}


def part_location(kind, ordinal, label):
    return {
        "PartLocation": {
            "LocationType": kind,
            "LocationOrdinalValue": ordinal,
            "ServiceLabel": label,
        }
    }


class ScenarioTree:
    """One scenario folder, emptied when opened. `source` says that the data are invented."""

    def __init__(self, name, source):
        self.folder = SCENARIOS / name
        shutil.rmtree(self.folder / "redfish", ignore_errors=True)
        self.folder.mkdir(parents=True, exist_ok=True)
        text = (
            source + "\nEvery name, number and version here is invented; no machine was recorded.\n"
        )
        text += "Made by simulators/scenarios/tools/make_scenarios.py; change it there.\n"
        (self.folder / "SOURCE").write_text(text, encoding="utf-8")

    def raw(self, path, body):
        """A body of any shape, as it stands."""
        folder = self.folder / path.strip("/")
        folder.mkdir(parents=True, exist_ok=True)
        text = json.dumps(body, indent=2, ensure_ascii=False) + "\n"
        (folder / "index.json").write_text(text, encoding="utf-8")

    def resource(self, path, odata_type, name, **fields):
        """A resource whose Id is the last segment of its path; returns the path."""
        body = {
            "@odata.id": path,
            "@odata.type": "#" + odata_type,
            "Id": path.rsplit("/", 1)[-1],
            "Name": name,
        }
        body.update(fields)
        self.raw(path, body)
        return path

    def collection(self, path, kind, members):
        """A collection of links; `members` are paths. Returns the path."""
        self.raw(
            path,
            {
                "@odata.id": path,
                "@odata.type": f"#{kind}Collection.{kind}Collection",
                "Name": kind + " Collection",
                "Members@odata.count": len(members),
                "Members": links(members),
            },
        )
        return path

    def error(self, path, message_id, message):
        """A member that answers with an error document."""
        info = {
            "@odata.type": "#Message.v1_1_1.Message",
            "MessageId": message_id,
            "Message": message,
            "Severity": "Critical",
            "Resolution": "None.",
        }
        self.raw(
            path,
            {"error": {"code": message_id, "message": message, "@Message.ExtendedInfo": [info]}},
        )

    def root(self, vendor, product, expand, services, **fields):
        """The service root and its session service. `services` are names of top collections."""
        body = {"RedfishVersion": "1.15.0", "Vendor": vendor, "Product": product}
        body["ProtocolFeaturesSupported"] = {
            "ExpandQuery": {
                "ExpandAll": expand,
                "Levels": expand,
                "Links": expand,
                "MaxLevels": 2 if expand else 0,
                "NoLinks": expand,
            },
            "FilterQuery": False,
            "SelectQuery": False,
        }
        for service in services:
            body[service] = link(f"{V1}/{service}")
        body["SessionService"] = link(f"{V1}/SessionService")
        body["Links"] = {"Sessions": link(f"{V1}/SessionService/Sessions")}
        body.update(fields)
        self.raw(
            V1,
            {
                "@odata.id": V1,
                "@odata.type": "#ServiceRoot.v1_14_0.ServiceRoot",
                "Id": "RootService",
                "Name": "Root Service",
                **body,
            },
        )
        self.resource(
            f"{V1}/SessionService",
            "SessionService.v1_1_8.SessionService",
            "Session Service",
            ServiceEnabled=True,
            SessionTimeout=1800,
            Sessions=link(f"{V1}/SessionService/Sessions"),
        )

    def update_service(self, **fields):
        fields.setdefault("FirmwareInventory", link(f"{V1}/UpdateService/FirmwareInventory"))
        self.resource(
            f"{V1}/UpdateService",
            "UpdateService.v1_11_0.UpdateService",
            "Update Service",
            ServiceEnabled=True,
            **fields,
        )

    def firmware(self, entries):
        """FirmwareInventory from dictionaries with Id and Name and whatever else."""
        base = f"{V1}/UpdateService/FirmwareInventory"
        for entry in entries:
            fields = {key: value for key, value in entry.items() if key not in ("Id", "Name")}
            self.resource(
                f"{base}/{entry['Id']}",
                "SoftwareInventory.v1_8_0.SoftwareInventory",
                entry["Name"],
                **fields,
            )
        self.collection(base, "SoftwareInventory", [f"{base}/{entry['Id']}" for entry in entries])
