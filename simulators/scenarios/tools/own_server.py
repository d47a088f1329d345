"""A server as its own operating system shows it: sysroot/, and cim/ for what its BMC says."""

import uuid

import smbios_table
from cim_tree import CimTree
from own_server_texts import ARCCONF, OS_RELEASE, PCI_IDS
from sysroot_tree import SysrootTree, ata_page, inquiry, names_page, pci_vpd, serial_page

NAME = "own-server"
RELEASE = "6.1.0-example"
NVDIMM_BUS = "/sys/devices/LNXSYSTM:00/LNXSYBUS:00/ACPI0012:00/ndbus0"


def add_smbios(tree):
    structures = [
        smbios_table.bios(0x0000, "Example Firmware", "EXUE24B-3.21", "02/03/2024"),
        smbios_table.system(
            0x0001,
            "Example Maker",
            "Example Own 400",
            "01",
            "EXOWN0001",
            uuid.UUID("00000000-0000-4000-8000-000000000001"),
            "EXOWN400",
            "Example Own",
        ),
        smbios_table.baseboard(0x0002, "Example Maker", "EXBRD-1", "A1", "EXBRD0001"),
        # Several servers may share it: nothing may take it for the server's own.
        smbios_table.chassis(0x0003, "Example Maker", "01", "EXCHASSIS-SHARED"),
        smbios_table.slot(0x0009, "PCIe Slot 1", 1, "0000:3b:00.0"),
        smbios_table.slot(0x000A, "PCIe Slot 2", 2, "0000:5e:00.0"),
        smbios_table.slot(0x000B, "PCIe Slot 3", 3, "0000:af:00.0"),
        smbios_table.slot(0x000C, "PCIe Slot 4", 4, "0000:b0:00.0", in_use=False),
        # The kernel names this handle where it shows the module.
        smbios_table.persistent_memory(
            0x1100, "DIMM 12", "Example Memory", "EXPMEM-128", "EXPMEM0001", "01.02.00.5417"
        ),
        smbios_table.redfish_host_interface(0x002A, "127.0.0.2", "127.0.0.1", 443),
    ]
    raw = smbios_table.table(structures)
    tree.bytes("/sys/firmware/dmi/tables/DMI", raw)
    tree.bytes("/sys/firmware/dmi/tables/smbios_entry_point", smbios_table.entry_point(raw))
    tree.attributes(
        "/sys/devices/virtual/dmi/id",
        bios_vendor="Example Firmware",
        bios_version="EXUE24B-3.21",
        bios_date="02/03/2024",
        bios_release="1.2",
        sys_vendor="Example Maker",
        product_name="Example Own 400",
        product_version="01",
        product_serial="EXOWN0001",
        product_sku="EXOWN400",
        product_family="Example Own",
        product_uuid="00000000-0000-4000-8000-000000000001",
        board_vendor="Example Maker",
        board_name="EXBRD-1",
        board_version="A1",
        board_serial="EXBRD0001",
        chassis_vendor="Example Maker",
        chassis_type="23",
        chassis_version="01",
        chassis_serial="EXCHASSIS-SHARED",
    )
    tree.link("/sys/class/dmi/id", "/sys/devices/virtual/dmi/id")


def add_system(tree):
    tree.bytes("/etc/os-release", OS_RELEASE.encode("utf-8"))
    tree.attributes(
        "/proc/sys/kernel", ostype="Linux", osrelease=RELEASE, arch="x86_64", hostname="own-server"
    )
    tree.attribute("/proc/version", f"Linux version {RELEASE} (example@example) #1 SMP")
    modules = ["exnic 200704 0 - Live", "exraid 98304 2 - Live", "nvme 57344 2 - Live"]
    modules.append("ahci 49152 1 - Live")
    tree.attribute(
        "/proc/modules", "\n".join(line + " 0x0000000000000000" for line in modules)
    )
    tree.bytes("/usr/share/misc/pci.ids", PCI_IDS.encode("utf-8"))
    tree.program("/usr/sbin/arcconf", ARCCONF)


class PciBus:
    """The devices of the tree, with their drivers and slots."""

    def __init__(self, tree):
        self.tree = tree

    def add(self, path, ids, class_code, subsystem="0000:0000", driver=None):
        """`path`: the addresses from the root port down; returns the device's folder."""
        domain_and_bus = path.split("/")[0].rsplit(":", 1)[0]
        folder = f"/sys/devices/pci{domain_and_bus}/{path}"
        address = path.rsplit("/", 1)[-1]
        vendor, device = ids.split(":")
        subsystem_vendor, subsystem_device = subsystem.split(":")
        self.tree.attributes(
            folder,
            vendor=f"0x{vendor}",
            device=f"0x{device}",
            **{"class": f"0x{class_code}"},
            subsystem_vendor=f"0x{subsystem_vendor}",
            subsystem_device=f"0x{subsystem_device}",
            revision="0x01",
            modalias="pci:v0000{}d0000{}sv0000{}sd0000{}bc{}sc{}i{}".format(
                *(part.upper() for part in (vendor, device, subsystem_vendor, subsystem_device)),
                class_code[:2],
                class_code[2:4],
                class_code[4:],
            ),
        )
        self.tree.link(f"/sys/bus/pci/devices/{address}", folder)
        self.tree.link(f"{folder}/subsystem", "/sys/bus/pci")
        if driver:
            self.tree.link(f"{folder}/driver", f"/sys/bus/pci/drivers/{driver}")
            self.tree.link(f"/sys/bus/pci/drivers/{driver}/{address}", folder)
        return folder

    def slot(self, number, place):
        self.tree.attribute(f"/sys/bus/pci/slots/{number}/address", place)

    def driver(self, name, version=None, module=None):
        module = module or name
        self.tree.attribute(f"/sys/module/{module}/initstate", "live")
        self.tree.attribute(f"/sys/module/{module}/srcversion", "0123456789ABCDEF0123456")
        if version:
            self.tree.attribute(f"/sys/module/{module}/version", version)
        self.tree.link(f"/sys/bus/pci/drivers/{name}/module", f"/sys/module/{module}")
        self.tree.link(f"/sys/module/{module}/drivers/pci:{name}", f"/sys/bus/pci/drivers/{name}")


def add_network_adapter(pci):
    port = "0000:3a:00.0"
    pci.add(port, "fe03:0002", "060400", driver="pcieport")
    for function in (0, 1):
        folder = pci.add(
            f"{port}/0000:3b:00.{function}", "fe01:0001", "020000", "fe01:0a01", "exnic"
        )
        pci.tree.bytes(
            f"{folder}/vpd",
            pci_vpd("Example NIC 25G 2-Port Adapter", PN="EXNIC-25G", SN="EXNIC0001", V0="22.31.6"),
        )
        if function == 0:
            physical = folder
    virtual = pci.add(f"{port}/0000:3b:02.0", "fe01:0002", "020000", "fe01:0a01", "exnic")
    pci.tree.link(f"{virtual}/physfn", physical)
    pci.slot(1, "0000:3b:00")


def add_nvme(pci, number, path, slot, firmware):
    folder = pci.add(path, "fe02:0001", "010802", "fe02:0100", "nvme")
    controller = f"{folder}/nvme/nvme{number}"
    address = path.rsplit("/", 1)[-1]
    pci.tree.attributes(
        controller,
        model="EXFLASH 960".ljust(40),
        firmware_rev=firmware.ljust(8),
        serial=f"EXNVME000{number + 1}".ljust(20),
        transport="pcie",
        state="live",
        address=address,
        dev=f"242:{number}",
    )
    pci.tree.link(f"{controller}/device", folder)
    pci.tree.link(f"/sys/class/nvme/nvme{number}", controller)
    pci.slot(slot, address.split(".")[0])


def add_scsi_disk(tree, parent, address, block, pages, **attributes):
    host = address.split(":")[0]
    target = f"{parent}/host{host}/target{address.rsplit(':', 1)[0]}"
    folder = f"{target}/{address}"
    tree.attributes(folder, type="0", **attributes)
    for name, content in pages.items():
        tree.bytes(f"{folder}/{name}", content)
    tree.link(f"{folder}/scsi_device/{address}/device", folder)
    tree.link(f"/sys/class/scsi_device/{address}", f"{folder}/scsi_device/{address}")
    tree.attribute(f"{folder}/block/{block}/dev", f"8:{(ord(block[-1]) - ord('a')) * 16}")
    tree.link(f"{folder}/block/{block}/device", folder)
    tree.link(f"/sys/block/{block}", f"{folder}/block/{block}")


def add_sata_disk(pci):
    parent = pci.add("0000:00:17.0", "fe03:0003", "010601", "fe03:0100", "ahci")
    pages = {
        "inquiry": inquiry("ATA", "EXSATA 4000", "4.07"),
        "vpd_pg80": serial_page("EXSATA0001".rjust(20)),
        "vpd_pg83": names_page("5000e000000000a1"),
        "vpd_pg89": ata_page("EXSATA 4000 Long Name", "EX4.07A", "EXSATA0001"),
    }
    add_scsi_disk(
        pci.tree, f"{parent}/ata1", "0:0:0:0", "sda", pages, vendor="ATA     ",
        model="EXSATA 4000     ", rev="4.07",
    )


def add_raid(pci):
    port = "0000:5d:00.0"
    pci.add(port, "fe03:0002", "060400", driver="pcieport")
    parent = pci.add(f"{port}/0000:5e:00.0", "9005:0e01", "010400", "9005:0e10", "exraid")
    pci.slot(2, "0000:5e:00")
    # The controller hands this disk through: the tool and the system both show it.
    add_scsi_disk(
        pci.tree, parent, "1:0:0:0", "sdb",
        {
            "inquiry": inquiry("EXAMPLE", "EXSAS-1200", "SR05"),
            "vpd_pg80": serial_page("EXSAS00010000"),
            "vpd_pg83": names_page("5000e000000000b1"),
        },
        vendor="EXAMPLE ", model="EXSAS-1200      ", rev="SR05", raid_level="N/A",
    )
    add_scsi_disk(
        pci.tree, parent, "1:1:0:0", "sdc",
        {
            "inquiry": inquiry("EXAMPLE", "LOGICAL VOLUME", "4.21"),
            "vpd_pg80": serial_page("EXVOL0001"),
            "vpd_pg83": names_page("600508b0000000000000000000000001"),
        },
        vendor="EXAMPLE ", model="LOGICAL VOLUME  ", rev="4.21", raid_level="RAID 1",
    )


def add_persistent_memory(tree):
    module = f"{NVDIMM_BUS}/nmem0"
    tree.attributes(
        f"{module}/nfit",
        vendor="0xfe04",
        device="0x0001",
        rev_id="0x0001",
        serial="0xe0000001",
        handle="0x1",
        phys_id="0x1100",
        formats="1",
        format="0x0301",
    )
    tree.attribute(f"{module}/devtype", "nvdimm")
    tree.attribute(f"{module}/modalias", "nd:t1")
    tree.link(f"{module}/subsystem", "/sys/bus/nd")
    tree.link("/sys/bus/nd/devices/nmem0", module)
    tree.attribute(f"{NVDIMM_BUS}/provider", "ACPI.NFIT")
    tree.link("/sys/bus/nd/devices/ndbus0", NVDIMM_BUS)


def add_devices(tree):
    pci = PciBus(tree)
    pci.add("0000:00:00.0", "fe03:0001", "060000", "fe03:0100")
    add_sata_disk(pci)
    add_network_adapter(pci)
    add_raid(pci)
    pci.add("0000:85:00.0", "fe03:0002", "060400", driver="pcieport")
    add_nvme(pci, 0, "0000:85:00.0/0000:86:00.0", 11, "EX2.10")
    pci.add("0000:85:01.0", "fe03:0002", "060400", driver="pcieport")
    add_nvme(pci, 1, "0000:85:01.0/0000:87:00.0", 12, "EX2.11")
    # Nobody serves it.
    pci.add("0000:ae:00.0", "fe03:0002", "060400", driver="pcieport")
    pci.add("0000:ae:00.0/0000:af:00.0", "fe03:0004", "120000", "fe03:0a04")
    pci.slot(3, "0000:af:00")
    pci.driver("exnic", "3.10.2")
    pci.driver("exraid", "2.1.14")
    pci.driver("nvme", "1.0")
    pci.driver("ahci", "3.0")
    add_persistent_memory(tree)


def add_bmc():
    tree = CimTree(
        NAME,
        "A server seen from its own operating system (sysroot/), and its BMC, which speaks CIM-XML "
        "only.",
    )
    host = tree.system(
        "EX_HostSystem",
        "host-1",
        [0],
        "Example server",
        IdentifyingDescriptions=["CIM:Model:SerialNumber"],
        OtherIdentifyingInfo=["Example Own 400:EXOWN0001"],
    )
    controller = tree.system("EX_ManagementController", "bmc-1", [28], "Tavro controller")
    tree.software("BMC", "BMC", "4.10", controller)
    tree.software("UEFI", "System UEFI", "EXUE24B-3.21", host, Classifications=[6])
    # The system shows this drive, too.
    tree.software(
        "EXFLASH-960", "NVMe Drive", "EX2.10", host, AssociatedAdapterSlot="11",
        SerialNumber="EXNVME0001",
    )
    tree.write()


def make():
    add_bmc()
    tree = SysrootTree(NAME)
    add_smbios(tree)
    add_system(tree)
    add_devices(tree)
