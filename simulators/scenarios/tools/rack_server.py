"""rack-server: a two-socket server with a full inventory, slots, drives and power supplies."""

from scenario_tree import V1, ScenarioTree, link, links, part_location, status

CHASSIS = f"{V1}/Chassis/1"
SYSTEM = f"{V1}/Systems/1"
MANAGER = f"{V1}/Managers/1"
STORAGE = f"{SYSTEM}/Storage/RAID1"

# id, name, maker, model, slot, PCI device id, firmware
ADAPTERS = [
    ("Nic1", "Example Quad Port 1GbE OCP Adapter", "EX-NET4", 9, "0x1001", "21.5.9"),
    ("Nic2", "Example Dual Port 25GbE Adapter", "EX-NET2", 1, "0x1002", "22.31.13.70"),
    ("Nic3", "Example Dual Port 25GbE Adapter", "EX-NET2", 2, "0x1002", "22.31.13.70"),
    ("Nic4", "Example Dual Port 100GbE Adapter", "EX-NET100", 4, "0x1003", "28.36.10.12"),
]
DRIVE_COUNT = 12
SUPPLY_COUNT = 2


def entry(item_id, name, software_id, version, related, **fields):
    return {
        "Id": item_id,
        "Name": name,
        "Description": f"{name} firmware",
        "Manufacturer": "Example",
        "SoftwareId": software_id,
        "Version": version,
        "ReleaseDate": "2025-03-01T00:00:00Z",
        "Updateable": True,
        "Status": status(),
        "RelatedItem": links(related),
        **fields,
    }


def board_entries():
    return [
        entry("BMC-Primary", "BMC (Primary)", "BMC", "EXBM40A-5.10", [MANAGER]),
        entry("BMC-Backup", "BMC (Backup)", "BMC-Backup", "EXBM38C-5.00", [MANAGER]),
        entry("UEFI-Primary", "UEFI", "UEFI", "EXUE24B-3.21", [f"{SYSTEM}/Bios"]),
        entry("UEFI-Backup", "UEFI (Backup)", "UEFI-Backup", "EXUE22A-3.10", [f"{SYSTEM}/Bios"]),
        entry("Setup-Tool", "Setup Tool", "EX-SETUP", "EXST10C-4.01", [SYSTEM]),
        entry("CPLD-Main", "System Board CPLD", "CPLD-Main", "0.1.07", [CHASSIS]),
        entry("CPLD-Backplane1", "Drive Backplane 1 CPLD", "CPLD-BP", "0.0.11", [CHASSIS]),
        entry("CPLD-Backplane2", "Drive Backplane 2 CPLD", "CPLD-BP", "0.0.11", [CHASSIS]),
        entry("FPGA-Main", "System Board FPGA", "FPGA", "3.6.0", [CHASSIS]),
        entry(
            "TPM",
            "Trusted Platform Module",
            "TPM2",
            "7.2.3.1",
            [f"{CHASSIS}/TrustedComponents/TPM"],
        ),
        entry("PSoC", "Power Sequencer", "PSOC", "2.02", [CHASSIS]),
        entry("Front-Panel", "Front Panel", "EX-PANEL", "1.3", [CHASSIS]),
        entry("Expander1", "Drive Expander", "EX-EXPANDER", "0.12.1", [CHASSIS]),
        entry("Energy-Pack", "RAID Energy Pack", "EX-ENERGY", "2.5", [STORAGE]),
        entry("Diagnostics", "Diagnostics", "EX-DIAG", "EXDG11B-6.00", [SYSTEM]),
        entry("Fan-Controller", "Fan Controller", "FANC", "1.14", [CHASSIS]),
        entry("Riser1", "Riser 1 Retimer", "RT-EX16", "1.0.8", [f"{CHASSIS}/PCIeDevices/Riser1"]),
        entry("Riser2", "Riser 2 Retimer", "RT-EX16", "1.0.8", [f"{CHASSIS}/PCIeDevices/Riser2"]),
    ]


def adapter_entries():
    entries = []
    for item_id, name, model, slot, _, version in ADAPTERS:
        related = [f"{CHASSIS}/NetworkAdapters/{item_id}", f"{CHASSIS}/PCIeDevices/{item_id}"]
        entries.append(entry(f"Slot{slot}-Firmware", name, f"{model}-FW", version, related))
    name, related = ADAPTERS[3][1], [f"{CHASSIS}/NetworkAdapters/Nic4"]
    entries.append(
        entry("Slot4-OptionRom", f"{name} Option ROM", "EX-NET100-ROM", "14.29.15", related)
    )
    entries.append(
        entry(
            "Slot3-Firmware",
            "Example RAID 9-16i",
            "EX-RAID9",
            "52.26.0-5179",
            [f"{STORAGE}/Controllers/1"],
        )
    )
    entries.append(
        entry(
            "Slot3-Bios",
            "Example RAID 9-16i UEFI Driver",
            "EX-RAID9-UEFI",
            "07.26.02.00",
            [STORAGE],
        )
    )
    entries.append(
        entry(
            "Slot5-Firmware",
            "Example Accelerator A2",
            "EX-GPU-A2",
            "94.07.5B.00.92",
            [f"{CHASSIS}/PCIeDevices/Gpu1"],
        )
    )
    # Real services leave the identifier out now and then; readers fall back to the member's id.
    del entries[-1]["SoftwareId"]
    return entries


def drive_entries():
    return [
        entry(
            f"Drive.{bay}",
            f"Example NVMe SSD 3.84TB Bay {bay}",
            "EXS3840",
            "GDC7302Q",
            [f"{STORAGE}/Drives/{bay}"],
        )
        for bay in range(DRIVE_COUNT)
    ]


def supply_entries():
    return [
        entry(
            f"PSU{number}",
            f"Power Supply {number}",
            "EX-PSU-1100",
            "8.71",
            [f"{CHASSIS}/PowerSubsystem/PowerSupplies/{number}"],
            Updateable=number == 1,
        )
        for number in range(1, SUPPLY_COUNT + 1)
    ]


def add_system(tree):
    tree.collection(f"{V1}/Systems", "ComputerSystem", [SYSTEM])
    tree.resource(
        SYSTEM,
        "ComputerSystem.v1_20_0.ComputerSystem",
        "Example Rack Server",
        SystemType="Physical",
        Manufacturer="Example",
        Model="Example Rack 100",
        SKU="EX-RACK-100-A",
        PartNumber="EX-PN-0001",
        SerialNumber="EXSN0001",
        UUID="00000000-0000-4000-8000-000000000001",
        BiosVersion="EXUE24B-3.21",
        PowerState="On",
        Status=status(),
        Bios=link(f"{SYSTEM}/Bios"),
        Storage=link(f"{SYSTEM}/Storage"),
        Links={"ManagedBy": links([MANAGER]), "Chassis": links([CHASSIS])},
    )
    tree.resource(
        f"{SYSTEM}/Bios",
        "Bios.v1_2_0.Bios",
        "UEFI",
        SoftwareImages=[],
        Links={"ActiveSoftwareImage": link(f"{V1}/UpdateService/FirmwareInventory/UEFI-Primary")},
    )


def add_manager(tree):
    tree.collection(f"{V1}/Managers", "Manager", [MANAGER])
    tree.resource(
        MANAGER,
        "Manager.v1_16_0.Manager",
        "Manager",
        ManagerType="BMC",
        Manufacturer="Example",
        Model="Example BMC 5",
        FirmwareVersion="EXBM40A-5.10",
        Status=status(),
        Links={
            "ManagerForServers": links([SYSTEM]),
            "ManagerForChassis": links([CHASSIS]),
            "ActiveSoftwareImage": link(f"{V1}/UpdateService/FirmwareInventory/BMC-Primary"),
        },
    )


def add_chassis(tree):
    tree.collection(f"{V1}/Chassis", "Chassis", [CHASSIS])
    parts = ("NetworkAdapters", "PCIeDevices", "PCIeSlots", "PowerSubsystem", "TrustedComponents")
    tree.resource(
        CHASSIS,
        "Chassis.v1_23_0.Chassis",
        "Example Rack Chassis",
        ChassisType="RackMount",
        Manufacturer="Example",
        Model="Example Rack 100",
        SerialNumber="EXSN0001",
        PartNumber="EX-PN-0001",
        Status=status(),
        Links={"ComputerSystems": links([SYSTEM]), "ManagedBy": links([MANAGER])},
        **{part: link(f"{CHASSIS}/{part}") for part in parts},
    )
    component = f"{CHASSIS}/TrustedComponents/TPM"
    tree.collection(f"{CHASSIS}/TrustedComponents", "TrustedComponent", [component])
    tree.resource(
        component,
        "TrustedComponent.v1_2_0.TrustedComponent",
        "TPM",
        Manufacturer="Example",
        Model="EX-TPM2",
        FirmwareVersion="7.2.3.1",
        SerialNumber="EXTPM0001",
    )


def pcie_devices():
    """id, name, part number, slot"""
    devices = [(a[0], a[1], f"EX-PN-{a[2]}", a[3]) for a in ADAPTERS]
    devices.append(("Raid1", "Example RAID 9-16i", "EX-PN-RAID9", 3))
    devices.append(("Gpu1", "Example Accelerator A2", "EX-PN-GPU-A2", 5))
    devices.append(("Riser1", "Riser 1 Retimer", "EX-PN-RT1", 0))
    devices.append(("Riser2", "Riser 2 Retimer", "EX-PN-RT2", 0))
    return devices


def add_pcie(tree):
    slots, paths = [], []
    for number, (item_id, name, part, slot) in enumerate(pcie_devices(), start=1):
        path = f"{CHASSIS}/PCIeDevices/{item_id}"
        paths.append(path)
        fields = {}
        if slot:
            label = "OCP 1" if slot == 9 else f"PCI {slot}"
            location = part_location("Slot", slot, label)
            slots.append(
                {
                    "Location": location,
                    "Lanes": 16,
                    "PCIeType": "Gen4",
                    "Status": status(),
                    "Links": {"PCIeDevice": links([path])},
                }
            )
            fields["Slot"] = {"Location": location, "Lanes": 16, "PCIeType": "Gen4"}
        tree.resource(
            path,
            "PCIeDevice.v1_11_0.PCIeDevice",
            name,
            Manufacturer="Example",
            PartNumber=part,
            SerialNumber=f"EXPCI{number:04}",
            DeviceType="SingleFunction",
            **fields,
        )
    for slot in (6, 7, 8):
        slots.append(
            {
                "Location": part_location("Slot", slot, f"PCI {slot}"),
                "Lanes": 8,
                "Status": {"State": "Absent"},
            }
        )
    tree.collection(f"{CHASSIS}/PCIeDevices", "PCIeDevice", paths)
    tree.resource(f"{CHASSIS}/PCIeSlots", "PCIeSlots.v1_5_0.PCIeSlots", "PCIe Slots", Slots=slots)


def add_adapters(tree):
    paths = []
    for number, (item_id, name, model, slot, _, version) in enumerate(ADAPTERS, start=1):
        path = f"{CHASSIS}/NetworkAdapters/{item_id}"
        paths.append(path)
        label = "OCP 1" if slot == 9 else f"PCI {slot}"
        tree.resource(
            path,
            "NetworkAdapter.v1_9_0.NetworkAdapter",
            name,
            Manufacturer="Example",
            Model=model,
            PartNumber=f"EX-PN-{model}",
            SerialNumber=f"EXNIC{number:04}",
            Status=status(),
            Location=part_location("Slot", slot, label),
            Controllers=[
                {
                    "FirmwarePackageVersion": version,
                    "Location": part_location("Slot", slot, label),
                    "Links": {"PCIeDevices": links([f"{CHASSIS}/PCIeDevices/{item_id}"])},
                }
            ],
        )
    tree.collection(f"{CHASSIS}/NetworkAdapters", "NetworkAdapter", paths)


def add_storage(tree):
    drives = [f"{STORAGE}/Drives/{bay}" for bay in range(DRIVE_COUNT)]
    for bay, path in enumerate(drives):
        tree.resource(
            path,
            "Drive.v1_17_0.Drive",
            f"Drive {bay}",
            Manufacturer="Example",
            Model="EXS3840",
            PartNumber="EX-PN-EXS3840",
            SerialNumber=f"EXDRV{bay:04}",
            Revision="GDC7302Q",
            MediaType="SSD",
            Protocol="NVMe",
            CapacityBytes=3840755982336,
            Status=status(),
            PhysicalLocation=part_location("Bay", bay, f"Bay {bay}"),
        )
    controller = f"{STORAGE}/Controllers/1"
    tree.resource(
        controller,
        "StorageController.v1_7_0.StorageController",
        "Example RAID 9-16i",
        Manufacturer="Example",
        Model="EX-RAID9",
        PartNumber="EX-PN-RAID9",
        SerialNumber="EXRAID0001",
        FirmwareVersion="52.26.0-5179",
        Location=part_location("Slot", 3, "PCI 3"),
        Status=status(),
        Links={"PCIeDevice": link(f"{CHASSIS}/PCIeDevices/Raid1")},
    )
    tree.collection(f"{STORAGE}/Controllers", "StorageController", [controller])
    tree.collection(f"{SYSTEM}/Storage", "Storage", [STORAGE])
    tree.resource(
        STORAGE,
        "Storage.v1_15_0.Storage",
        "Example RAID 9-16i",
        Drives=links(drives),
        Status=status(),
        Controllers=link(f"{STORAGE}/Controllers"),
    )


def add_power(tree):
    base = f"{CHASSIS}/PowerSubsystem"
    supplies = [f"{base}/PowerSupplies/{number}" for number in range(1, SUPPLY_COUNT + 1)]
    for number, path in enumerate(supplies, start=1):
        tree.resource(
            path,
            "PowerSupply.v1_5_0.PowerSupply",
            f"Power Supply {number}",
            Manufacturer="Example",
            Model="EX-PSU-1100",
            PartNumber="EX-PN-PSU",
            SerialNumber=f"EXPSU{number:04}",
            FirmwareVersion="8.71",
            Location=part_location("Bay", number, f"PSU {number}"),
            Status=status(),
        )
    tree.collection(f"{base}/PowerSupplies", "PowerSupply", supplies)
    tree.resource(
        base,
        "PowerSubsystem.v1_1_0.PowerSubsystem",
        "Power Subsystem",
        PowerSupplies=link(f"{base}/PowerSupplies"),
    )


def make():
    tree = ScenarioTree("rack-server", "A rack server with a full firmware inventory.")
    tree.root(
        "Example",
        "Example Rack Server BMC",
        True,
        ["Systems", "Chassis", "Managers", "UpdateService"],
    )
    add_system(tree)
    add_manager(tree)
    add_chassis(tree)
    add_pcie(tree)
    add_adapters(tree)
    add_storage(tree)
    add_power(tree)
    tree.update_service()
    tree.firmware(board_entries() + adapter_entries() + drive_entries() + supply_entries())
