"""enclosure-module: the management module of a dense enclosure."""

from scenario_tree import V1, ScenarioTree, link, links, part_location, status


def module_entry(item_id, name, version, related, **fields):
    return {
        "Id": item_id,
        "Name": name,
        "Description": name,
        "Manufacturer": "Example",
        "SoftwareId": item_id,
        "Version": version,
        "Updateable": True,
        "Status": status(),
        "RelatedItem": links(related),
        **fields,
    }


def add_enclosure_power(tree, chassis):
    names = ("Bay 1", "Bay 2", "Bay 3")
    base = f"{chassis}/PowerSubsystem/PowerSupplies"
    supplies = []
    for number, name in enumerate(names, start=1):
        supplies.append(
            tree.resource(
                f"{base}/{number}",
                "PowerSupply.v1_5_0.PowerSupply",
                f"Power Supply {name}",
                Manufacturer="Example",
                Model="EX-PSU-2400",
                PartNumber="EX-PN-PSU24",
                SerialNumber=f"EXEPS{number:04}",
                FirmwareVersion=f"7.0{number}",
                Location=part_location("Bay", number, name),
                Status=status(),
            )
        )
    tree.collection(base, "PowerSupply", supplies)
    tree.resource(
        f"{chassis}/PowerSubsystem",
        "PowerSubsystem.v1_1_0.PowerSubsystem",
        "Power Subsystem",
        PowerSupplies=link(base),
    )
    tree.resource(
        f"{chassis}/Power",
        "Power.v1_7_0.Power",
        "Power",
        PowerSupplies=[
            {
                "@odata.id": f"{chassis}/Power#/PowerSupplies/{number - 1}",
                "MemberId": str(number - 1),
                "Name": f"Power Supply {name}",
                "Model": "EX-PSU-2400",
                "PartNumber": "EX-PN-PSU24",
                "SerialNumber": f"EXEPS{number:04}",
                "FirmwareVersion": f"7.0{number}",
                "Status": status(),
            }
            for number, name in enumerate(names, start=1)
        ],
    )


def make():
    tree = ScenarioTree(
        "enclosure-module", "The management module of a dense enclosure; it has no systems."
    )
    tree.root("Example", "Vesk Enclosure Manager", True, ["Chassis", "Managers", "UpdateService"])
    manager, chassis = f"{V1}/Managers/Module1", f"{V1}/Chassis/Enclosure"
    tree.collection(f"{V1}/Managers", "Manager", [manager])
    tree.resource(
        manager,
        "Manager.v1_16_0.Manager",
        "Enclosure Management Module",
        ManagerType="EnclosureManager",
        Manufacturer="Example",
        Model="Vesk Module 2",
        FirmwareVersion="EXVM12B-2.40",
        SerialNumber="EXVM0001",
        Status=status(),
        Links={"ManagerForChassis": links([chassis])},
    )
    tree.collection(f"{V1}/Chassis", "Chassis", [chassis])
    tree.resource(
        chassis,
        "Chassis.v1_23_0.Chassis",
        "Dense Enclosure",
        ChassisType="Enclosure",
        Manufacturer="Example",
        Model="Example DE400",
        SKU="EX-DE-400-A",
        PartNumber="EX-PN-DE400",
        SerialNumber="EXDE0001",
        Status=status(),
        PowerSubsystem=link(f"{chassis}/PowerSubsystem"),
        Power=link(f"{chassis}/Power"),
        Links={"ManagedBy": links([manager])},
    )
    add_enclosure_power(tree, chassis)
    tree.update_service()
    tree.firmware(
        [
            module_entry(
                "Module-Firmware", "Enclosure Management Module", "EXVM12B-2.40", [manager]
            ),
            module_entry("Module-CPLD", "Enclosure Management Module CPLD", "1.05", [manager]),
            module_entry(
                "PSU1", "Power Supply Bay 1", "7.01", [f"{chassis}/PowerSubsystem/PowerSupplies/1"]
            ),
            module_entry(
                "PSU2", "Power Supply Bay 2", "7.02", [f"{chassis}/PowerSubsystem/PowerSupplies/2"]
            ),
            module_entry(
                "PSU3", "Power Supply Bay 3", "7.03", [f"{chassis}/PowerSubsystem/PowerSupplies/3"]
            ),
        ]
    )
