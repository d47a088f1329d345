"""odd-members: one of each oddity that inventories of real machines have shown, in one service."""

from scenario_tree import V1, ScenarioTree, link, links, status

INVENTORY = f"{V1}/UpdateService/FirmwareInventory"
TYPE = "SoftwareInventory.v1_3_0.SoftwareInventory"


def good(item_id, name, version, **fields):
    return {
        "@odata.id": f"{INVENTORY}/{item_id}",
        "@odata.type": "#" + TYPE,
        "Id": item_id,
        "Name": name,
        "SoftwareId": f"EXID-{name.replace(' ', '')}",
        "Version": version,
        "Updateable": True,
        "Status": status(),
        **fields,
    }


def without(body, *keys):
    return {key: value for key, value in body.items() if key not in keys}


def bodies():
    """Folder name and body of each member."""
    plain = [
        good("BMC", "BMC", "1.00"),
        good("Installed-0-5.10", "Example Controller", "5.10"),
        good("Previous-0-5.00", "Example Controller", "5.00"),
        good("Available-0-5.20", "Example Controller", "5.20"),
        good("Current-1-7.01", "Example Adapter", "7.01"),
        good("NullVersion", "Null Version", None),
        good("EmptyVersion", "Empty Version", ""),
        good("Installed-0-   __NIC.Slot.1-1", "Blanks In Id", "21.80.9"),
        good("NumberVersion", "Number Version", 42, Updateable="true", SoftwareId=1017),
        good("ObjectVersion", "Object Version", {"Major": 1}),
        good("PaddedVersion", "  Padded Version ", " 2.0.1 \n"),
        good("SlashAtEnd", "Slash At End", "3.0"),
        good("AbsoluteLink", "Absolute Link", "4.0"),
        good("WrongCase", "Wrong Case", "5.0"),
        good("TextRelated", "Text Related Item", "6.0", RelatedItem=f"{V1}/Chassis/1"),
        good(
            "BrokenRelated",
            "Broken Related Item",
            "6.1",
            RelatedItem=links([f"{V1}/Chassis/Nowhere", f"{V1}/Chassis/1#/Fans/0"]),
        ),
        good("SameName-1", "Software Inventory", "7.0", SoftwareId=""),
        good("SameName-2", "Software Inventory", "7.0", SoftwareId=None),
        good("Absent", "Absent Component", "N/A", Status={"State": "Absent"}),
        good("Fan#1", "Encoded Id", "8.0"),
    ]
    found = [(body["Id"], body) for body in plain]
    found.append(("NoId", without(good("NoId", "No Id", "9.0"), "Id")))
    found.append(("NoName", without(good("NoName", "No Name", "9.1"), "Name")))
    found.append(
        ("NoVersion", without(good("NoVersion", "No Version", "9.2"), "Version", "SoftwareId"))
    )
    return found


def member_links(names):
    paths = {name: f"{INVENTORY}/{name}" for name in names}
    paths["SlashAtEnd"] += "/"
    paths["AbsoluteLink"] = "https://other-host.example:8443" + paths["AbsoluteLink"]
    paths["WrongCase"] = paths["WrongCase"].replace("FirmwareInventory", "firmwareinventory")
    paths["Fan#1"] = f"{INVENTORY}/Fan%231"
    return list(paths.values())


def add_inventory(tree):
    members = bodies()
    for name, body in members:
        tree.raw(f"{INVENTORY}/{name.replace('#', '%23')}", body)
    tree.error(f"{INVENTORY}/Missing", "Base.1.12.ResourceMissingAtURI", "Nothing here.")
    tree.error(f"{INVENTORY}/Broken", "Base.1.12.InternalError", "Something went wrong.")
    tree.error(f"{INVENTORY}/Licensed", "Base.1.12.InsufficientPrivilege", "A licence is needed.")
    tree.raw(f"{INVENTORY}/Null", None)
    tree.raw(f"{INVENTORY}/List", ["not", "an", "object"])
    names = [name for name, _ in members] + ["Missing", "Broken", "Licensed", "Null", "List"]
    entries = links(member_links(names))
    entries += [link(f"{INVENTORY}/BMC"), link(f"{INVENTORY}/BMC/"), {}, None, "text", link(None)]
    tree.raw(
        INVENTORY,
        {
            "@odata.id": INVENTORY,
            "@odata.type": "#SoftwareInventoryCollection.SoftwareInventoryCollection",
            "Name": "Firmware Inventory",
            "Members@odata.count": 7,
            "Members": entries,
        },
    )


def add_systems(tree):
    board, host = f"{V1}/Systems/GpuBoard", f"{V1}/Systems/Host"
    gpu_manager, bmc = f"{V1}/Managers/GpuManager", f"{V1}/Managers/BMC"
    tree.collection(f"{V1}/Systems", "ComputerSystem", [board, host])
    tree.resource(
        board,
        "ComputerSystem.v1_16_0.ComputerSystem",
        "GPU Baseboard",
        SystemType="Composed",
        Manufacturer="Example",
        Model="EX-GPU-BOARD",
        SerialNumber="EXGB0001",
        Links={"ManagedBy": links([gpu_manager])},
    )
    tree.resource(
        host,
        "ComputerSystem.v1_16_0.ComputerSystem",
        "Host",
        SystemType="Physical",
        Manufacturer="Example",
        Model="Example OD500",
        SKU="EX-OD-500-A",
        SerialNumber="EXOD0001",
        PartNumber=None,
        BiosVersion="EXOD10A-1.00",
        Bios=link(f"{host}/Bios"),
        Links={"ManagedBy": links([bmc]), "Chassis": links([f"{V1}/Chassis/1"])},
    )
    tree.resource(f"{host}/Bios", "Bios.v1_1_0.Bios", "BIOS")
    tree.collection(f"{V1}/Managers", "Manager", [gpu_manager, bmc])
    tree.resource(
        gpu_manager,
        "Manager.v1_14_0.Manager",
        "GPU Manager",
        ManagerType="Service",
        Model="EX-GPU-MANAGER",
        FirmwareVersion="2.0",
        Links={"ManagerForServers": links([board])},
    )
    tree.resource(
        bmc,
        "Manager.v1_14_0.Manager",
        "BMC",
        ManagerType="BMC",
        Model="Example BMC 9",
        FirmwareVersion="EXOB10A-1.00",
        Links={"ManagerForServers": links([host])},
    )
    tree.collection(f"{V1}/Chassis", "Chassis", [f"{V1}/Chassis/1"])
    tree.resource(f"{V1}/Chassis/1", "Chassis.v1_14_0.Chassis", "Chassis", ChassisType="RackMount")


def make():
    tree = ScenarioTree(
        "odd-members", "One of each oddity that inventories have shown, in one service."
    )
    tree.root(
        "Example", "Example Odd BMC", True, ["Systems", "Chassis", "Managers", "UpdateService"]
    )
    add_systems(tree)
    tree.update_service()
    add_inventory(tree)
