"""amd-ami-bmc, tavro-v3 and thin-inventory: servers with a shape of their own."""

from scenario_tree import V1, ScenarioTree, link, links, part_location, status

INVENTORY = f"{V1}/UpdateService/FirmwareInventory"


def add_server(tree, item_id, system, manager, chassis):
    """One system, manager and chassis of the same id, tied to one another."""
    paths = {kind: f"{V1}/{kind}/{item_id}" for kind in ("Systems", "Managers", "Chassis")}
    tree.collection(f"{V1}/Systems", "ComputerSystem", [paths["Systems"]])
    tree.collection(f"{V1}/Managers", "Manager", [paths["Managers"]])
    tree.collection(f"{V1}/Chassis", "Chassis", [paths["Chassis"]])
    tree.resource(
        paths["Systems"],
        "ComputerSystem.v1_7_0.ComputerSystem",
        "System",
        Bios=link(f"{paths['Systems']}/Bios"),
        PowerState="On",
        Status=status(),
        Links={"ManagedBy": links([paths["Managers"]]), "Chassis": links([paths["Chassis"]])},
        **system,
    )
    tree.resource(f"{paths['Systems']}/Bios", "Bios.v1_1_0.Bios", "BIOS")
    tree.resource(
        paths["Managers"],
        "Manager.v1_7_0.Manager",
        "Manager",
        ManagerType="BMC",
        Status=status(),
        Links={
            "ManagerForServers": links([paths["Systems"]]),
            "ManagerForChassis": links([paths["Chassis"]]),
        },
        **manager,
    )
    tree.resource(
        paths["Chassis"],
        "Chassis.v1_10_0.Chassis",
        "Chassis",
        ChassisType="RackMount",
        Links={
            "ComputerSystems": links([paths["Systems"]]),
            "ManagedBy": links([paths["Managers"]]),
        },
        **chassis,
    )


def make_amd_ami():
    tree = ScenarioTree(
        "amd-ami-bmc", "An AMD server whose BMC runs AMI firmware: thin members, 'Self' ids."
    )
    tree.root(
        "Example AMD Board Maker",
        "AMI Redfish Server",
        True,
        ["Systems", "Chassis", "Managers", "UpdateService"],
        Oem={
            "Ami": {"@odata.type": "#AMIServiceRoot.v1_0_0.AMIServiceRoot", "RtpVersion": "1.8.a"}
        },
    )
    devices = [f"{V1}/Chassis/Self/PCIeDevices/{number}" for number in (1, 2)]
    add_server(
        tree,
        "Self",
        {
            "Manufacturer": "Example",
            "Model": "Example AM200",
            "SKU": "01234567EX",
            "PartNumber": "EX-PN-AM200",
            "SerialNumber": "EXAM0001",
            "BiosVersion": "EXC27",
            "ProcessorSummary": {"Count": 2, "Model": "AMD EPYC Example Processor"},
            "PCIeDevices": links(devices),
            "PCIeDevices@odata.count": 2,
        },
        {"Model": "AMI Example BMC", "FirmwareVersion": "12.84.99"},
        {
            "Manufacturer": "Example",
            "Model": "Example AM200",
            "Power": link(f"{V1}/Chassis/Self/Power"),
        },
    )
    for number, path in enumerate(devices, start=1):
        tree.resource(
            path,
            "PCIeDevice.v1_4_0.PCIeDevice",
            f"PCIe Device {number}",
            Manufacturer="Example",
            Model=f"EX-PCI-{number}",
            FirmwareVersion="Not Available",
            DeviceType="SingleFunction",
        )
    tree.resource(
        f"{V1}/Chassis/Self/Power",
        "Power.v1_5_4.Power",
        "Power",
        PowerSupplies=[
            {"MemberId": "0", "Name": "PSU1", "SerialNumber": "EXPSU0001", "Status": status()}
        ],
    )
    tree.update_service(
        Oem={"AMIUpdateService": {"@odata.type": "#AMIUpdateService.v1_0_0.AMIUpdateService"}}
    )
    thin = [("BMC", "12.84.99"), ("BIOS", "EXC27"), ("MB_CPLD1", "ff"), ("BPB_CPLD1", "05")]
    tree.firmware(
        [
            {
                "Id": name,
                "Name": name,
                "Description": f"{name} Firmware Inventory",
                "Updateable": True,
                "Version": version,
            }
            for name, version in thin
        ]
    )


def tavro_entry(item_id, name, version, related, **fields):
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


def add_switch(tree, chassis):
    """A Broadcom PCIe switch (vendor id 0x1000) with two devices below it."""
    base = f"{chassis}/PCIeDevices"
    switch = f"{base}/Switch1"
    downstream = [f"{base}/Downstream{number}" for number in (1, 2)]
    function = f"{switch}/PCIeFunctions/1"
    tree.resource(
        function,
        "PCIeFunction.v1_5_0.PCIeFunction",
        "Switch Function",
        VendorId="0x1000",
        DeviceId="0xC030",
        ClassCode="0x060400",
        DeviceClass="Bridge",
        Links={"PCIeDevice": link(switch)},
    )
    tree.collection(f"{switch}/PCIeFunctions", "PCIeFunction", [function])
    tree.resource(
        switch,
        "PCIeDevice.v1_11_0.PCIeDevice",
        "Broadcom PCIe Switch",
        Manufacturer="Broadcom",
        Model="EX-PEX-89000",
        PartNumber="EX-PN-PEX",
        SerialNumber="EXPEX0001",
        FirmwareVersion="0.4.12.0",
        DeviceType="MultiFunction",
        PCIeFunctions=link(f"{switch}/PCIeFunctions"),
        Links={"DownstreamPCIeDevices": links(downstream)},
        Oem={"Tavro": {"DownstreamDevices": links(downstream)}},
    )
    for number, path in enumerate(downstream, start=1):
        tree.resource(
            path,
            "PCIeDevice.v1_11_0.PCIeDevice",
            f"Example Accelerator {number}",
            Manufacturer="Example",
            Model="EX-GPU-H",
            SerialNumber=f"EXGPU{number:04}",
            Oem={"Tavro": {"UpstreamSwitch": link(switch)}},
            Slot={"Location": part_location("Slot", number, f"PCI {number}")},
        )
    tree.collection(base, "PCIeDevice", [switch] + downstream)
    return switch, downstream


def make_tavro_v3():
    tree = ScenarioTree(
        "tavro-v3", "A server with a third-generation Tavro BMC and a Broadcom PCIe switch."
    )
    tree.root("Example", "Tavro", True, ["Systems", "Chassis", "Managers", "UpdateService"])
    chassis = f"{V1}/Chassis/1"
    add_server(
        tree,
        "1",
        {
            "Manufacturer": "Example",
            "Model": "Example TV300",
            "SKU": "EX-TV-300-A",
            "PartNumber": "EX-PN-TV300",
            "SerialNumber": "EXTV0001",
            "BiosVersion": "TVE330A 3.30",
        },
        {
            "Manufacturer": "Example",
            "Model": "TAVRO3",
            "FirmwareVersion": "TV3A42E 3.10 2025-03-11",
            "Oem": {
                "Tavro": {
                    "@odata.type": "#TavroManager.v1_0_0.TavroManager",
                    "ReleaseName": "example_25a",
                }
            },
        },
        {
            "Manufacturer": "Example",
            "Model": "Example TV300",
            "SerialNumber": "EXTV0001",
            "PCIeDevices": link(f"{chassis}/PCIeDevices"),
        },
    )
    switch, downstream = add_switch(tree, chassis)
    tree.update_service()
    tree.firmware(
        [
            tavro_entry("BMC-Primary", "BMC (Primary)", "TV3A42E-3.10", [f"{V1}/Managers/1"]),
            tavro_entry("BMC-Backup", "BMC (Backup)", "TV3A40C-3.00", [f"{V1}/Managers/1"]),
            tavro_entry("UEFI", "UEFI", "TVE330A-3.30", [f"{V1}/Systems/1/Bios"]),
            tavro_entry("FPGA", "FPGA", "3.9.0", [chassis]),
            tavro_entry("PCIeSwitch1", "Broadcom PCIe Switch", "0.4.12.0", [switch]),
            tavro_entry("GPU1", "Example Accelerator 1", "96.00.61.00.01", [downstream[0]]),
            tavro_entry("GPU2", "Example Accelerator 2", "96.00.61.00.01", [downstream[1]]),
        ]
    )


def add_thin_parts(tree, system, chassis):
    drives = [f"{system}/Storage/1/Drives/{bay}" for bay in (0, 1)]
    for bay, path in enumerate(drives):
        tree.resource(
            path,
            "Drive.v1_4_0.Drive",
            f"Drive {bay}",
            Manufacturer="Example",
            Model="EXH0600",
            SerialNumber=f"EXHDD{bay:04}",
            PartNumber="EX-PN-HDD",
            Revision="EX01",
            Status=status(),
            Location=[{"Info": f"Bay {bay}", "InfoFormat": "Bay"}],
        )
    tree.collection(f"{system}/Storage", "Storage", [f"{system}/Storage/1"])
    tree.resource(
        f"{system}/Storage/1",
        "Storage.v1_4_0.Storage",
        "Storage",
        Drives=links(drives),
        StorageControllers=[
            {
                "@odata.id": f"{system}/Storage/1#/StorageControllers/0",
                "MemberId": "0",
                "Name": "Example RAID 3",
                "Manufacturer": "Example",
                "Model": "EX-RAID3",
                "SerialNumber": "EXRAID0003",
                "PartNumber": "EX-PN-RAID3",
                "FirmwareVersion": "4.68.00",
                "Status": status(),
            }
        ],
    )
    adapter = f"{chassis}/NetworkAdapters/1"
    tree.collection(f"{chassis}/NetworkAdapters", "NetworkAdapter", [adapter])
    tree.resource(
        adapter,
        "NetworkAdapter.v1_1_0.NetworkAdapter",
        "Example Dual Port 10GbE Adapter",
        Manufacturer="Example",
        Model="EX-NET10",
        PartNumber="EX-PN-NET10",
        SerialNumber="EXNIC0001",
        Controllers=[
            {"FirmwarePackageVersion": "18.8.9", "Location": part_location("Slot", 2, "PCI 2")}
        ],
    )
    tree.resource(
        f"{chassis}/Power",
        "Power.v1_5_0.Power",
        "Power",
        PowerSupplies=[
            {
                "MemberId": str(number),
                "Name": f"PSU {number + 1}",
                "Model": "EX-PSU-750",
                "SerialNumber": f"EXPSU{number:04}",
                "PartNumber": "EX-PN-PSU7",
                "FirmwareVersion": "4.52",
                "Status": status(),
            }
            for number in (0, 1)
        ],
    )


def make_thin():
    tree = ScenarioTree(
        "thin-inventory", "An older BMC without an update service and without $expand."
    )
    tree.root(
        "Example",
        "Example Older BMC",
        False,
        ["Systems", "Chassis", "Managers"],
        RedfishVersion="1.2.0",
    )
    system, chassis = f"{V1}/Systems/1", f"{V1}/Chassis/1"
    add_server(
        tree,
        "1",
        {
            "Manufacturer": "Example",
            "SKU": "EX-OLD-54",
            "SerialNumber": "EXOLD001",
            "BiosVersion": "EXOL18A-2.60",
            "Storage": link(f"{system}/Storage"),
        },
        {"Model": "Example BMC 2", "FirmwareVersion": "EXOB56N-2.20"},
        {
            "Manufacturer": "Example",
            "NetworkAdapters": link(f"{chassis}/NetworkAdapters"),
            "Power": link(f"{chassis}/Power"),
        },
    )
    add_thin_parts(tree, system, chassis)
