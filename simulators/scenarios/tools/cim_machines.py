"""Machines that speak CIM-XML: chassis modules, a hypervisor host, older BMCs."""

from cim_tree import CimTree, Ref

MANAGER = "EX_ChassisManager"


def add_enclosure(tree, serial):
    manager = tree.system(MANAGER, "mm-1", [29], "Management Module Bay 1")
    chassis = tree.package(
        "CIM_Chassis",
        "EX_BladeChassis",
        "chassis-1",
        ElementName="Blade Chassis",
        Manufacturer="Example",
        Model="EXBC-8000",
        SerialNumber=serial,
        ChassisPackageType=29,
    )
    tree.link(
        "CIM_ComputerSystemPackage", "EX_SystemPackage", Antecedent=chassis, Dependent=manager
    )
    return manager


def add_module_firmware(tree, manager):
    tree.software("TOLV", "Management Module", "2.14", manager)
    tree.software("TOLV-BACKUP", "Management Module Backup", "2.10", manager)
    tree.software(
        "EX-CPLD",
        "Chassis CPLD",
        None,
        manager,
        MajorVersion=1,
        MinorVersion=7,
        RevisionNumber=3,
        BuildNumber=0,
        Description="Chassis\tlogic\r\ndevice",
    )
    tree.software(
        "TOLV", "Management Module", "2.20", instance_id="EX:AVAILABLE:TOLV", Status="Available"
    )


def add_in_slot(tree, system, number, tag, **properties):
    card = tree.package("CIM_PhysicalPackage", "EX_BayCard", tag, **properties)
    tree.link("CIM_ComputerSystemPackage", "EX_SystemPackage", Antecedent=card, Dependent=system)
    slot = tree.add(
        "CIM_Slot",
        slot_name(number),
        CreationClassName="EX_Bay",
        Tag=f"bay-{number}",
        Number=number,
        ElementName=f"I/O bay {number}",
    )
    tree.link("CIM_PackageInSlot", "EX_PackageInSlot", Antecedent=slot, Dependent=card)
    return card


def slot_name(number):
    return Ref("EX_Bay", CreationClassName="EX_Bay", Tag=f"bay-{number}")


def add_blade(tree):
    blade = tree.system("EX_BladeSystem", "blade-5", [0], "Blade 5")
    add_in_slot(tree, blade, 15, "blade-card-5", Model="EXBL-20", SerialNumber="EXBL0005")
    tree.software("UEFI", "Blade 5 UEFI", "9.01", blade, instance_id="EX:INSTALLED:BLADE5:UEFI")


def add_switch(tree, bay, serial, versions):
    switch = tree.system("EX_SwitchSystem", f"switch-{bay}", [5], f"I/O Module in bay {bay}")
    card = add_in_slot(
        tree,
        switch,
        bay,
        f"switch-card-{bay}",
        Manufacturer="Example",
        Model="EXSW-48",
        SerialNumber=serial,
    )
    for kind, version in versions:
        identity = tree.software(
            "SWITCHES",
            f"Switch {kind}",
            version,
            switch,
            instance_id=f"EX:INSTALLED:SWITCH{bay}:{kind.upper()}",
        )
        tree.link(
            "CIM_ElementSoftwareIdentity",
            "EX_ElementSoftwareIdentity",
            Antecedent=identity,
            Dependent=card,
            ElementSoftwareStatus=[2],
        )


def make_chassis_module():
    tree = CimTree("chassis-module", "A blade chassis: its management module has three components.")
    manager = add_enclosure(tree, "EXBC00001")
    add_module_firmware(tree, manager)
    add_blade(tree)
    tree.write()


def make_chassis_switch():
    tree = CimTree(
        "chassis-switch",
        "A blade chassis with a switch of two components in I/O bay 2 and one of one in bay 12.",
    )
    manager = add_enclosure(tree, "EXBC00002")
    add_module_firmware(tree, manager)
    add_switch(tree, 2, "EXSW00002", [("Boot", "1.02"), ("OS", "8.4.1")])
    add_switch(tree, 12, "EXSW00012", [("OS", "8.3.0")])
    tree.write()


def make_esxi_host():
    tree = CimTree("esxi-host", "A VMware ESXi host with its CIM service running.")
    host = tree.system("EX_HostSystem", "host-1", [0], "host-1.example")
    tree.package(
        "CIM_Chassis",
        "EX_HostChassis",
        "chassis-1",
        Manufacturer="Example",
        Model="EXRS-2000",
        SerialNumber="EXRS00042",
        ChassisPackageType=23,
    )
    controller = tree.system(
        "EX_ManagementController", "bmc-1", [28], "Tavro management controller"
    )
    guest = {"CSName": "host-1", "Name": "guest-7", "CreationClassName": "EX_GuestSystem"}
    add_operating_system(tree, guest, Caption="Example Linux 5", Version="5.1")
    own = {"CSName": "host-1", "Name": "VMware ESXi", "CreationClassName": "EX_HypervisorSystem"}
    add_operating_system(tree, own, Caption="VMware ESXi", Version="8.0.2")
    tree.software("UEFI", "System UEFI", "3.40", host, Classifications=[6])
    tree.software("BMC", "Management Controller", "5.21", controller)
    tree.software("EX-NIC-25G", "Network Adapter", "22.31.6", host, AssociatedAdapterSlot="3")
    tree.file("sdk.xml", service_content("8.0.2"))
    tree.write()


def add_operating_system(tree, keys, **properties):
    tree.add("CIM_OperatingSystem", Ref(keys["CreationClassName"], **keys), **keys, **properties)


def service_content(version):
    return (
        '<?xml version="1.0" encoding="UTF-8"?>\n<soapenv:Envelope xmlns:soapenv='
        '"http://schemas.xmlsoap.org/soap/envelope/"><soapenv:Body>'
        '<RetrieveServiceContentResponse xmlns="urn:vim25"><returnval><about>'
        f"<name>VMware ESXi</name><fullName>VMware ESXi {version} build-12345678</fullName>"
        f"<version>{version}</version><apiVersion>{version}</apiVersion></about></returnval>"
        "</RetrieveServiceContentResponse></soapenv:Body></soapenv:Envelope>\n"
    )


def add_bmc_machine(tree, controller_name, **properties):
    host = tree.system(
        "EX_HostSystem",
        "host-1",
        [0],
        "Example server",
        IdentifyingDescriptions=["CIM:Model:SerialNumber"],
        OtherIdentifyingInfo=["EXRS-1000:EXRS00007"],
    )
    controller = tree.system(
        "EX_ManagementController", "bmc-1", [28], controller_name, **properties
    )
    tree.software("BMC", "BMC", "4.10", controller)
    tree.software("BMC-BACKUP", "BMC Backup", "4.02", controller)
    tree.software("UEFI", "System UEFI", "2.33", host, Classifications=[6])
    tree.software("EX-RAID-8", "RAID Adapter", "52.1.0", host, AssociatedAdapterSlot="2")
    tree.software("EX-NIC-10G", "Network Adapter", "", host, AssociatedAdapterSlot="4")


def make_cim_only_bmc():
    tree = CimTree(
        "cim-only-bmc", "An older BMC that speaks CIM-XML only.", name_space="root/interop"
    )
    add_bmc_machine(tree, "Ossa management controller")
    tree.write()


def make_tavro_v3_without_redfish():
    tree = CimTree(
        "tavro-v3-no-redfish", "A third-generation Tavro BMC whose Redfish service is off."
    )
    add_bmc_machine(
        tree,
        "Tavro V3 management controller",
        Model="Tavro V3",
        FirmwareVersion="TV3 4.10",
        ReleaseName="Example Spring",
    )
    tree.write()


def make():
    make_chassis_module()
    make_chassis_switch()
    make_esxi_host()
    make_cim_only_bmc()
    make_tavro_v3_without_redfish()
