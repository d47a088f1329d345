#include "guest/guest_machine_posix.h"

#include <filesystem>
#include <stdexcept>

#include "support/child_process_posix.h"
#include "support/ipmi_simulator_posix.h"
#include "support/smbios_builder.h"
#include "support/temporary_folder.h"

namespace guest {
namespace {

namespace fs = std::filesystem;
using test_support::AnSmbiosTable;
using test_support::ChildProcess;
using test_support::ChildSetup;
using test_support::HostInterfaceFields;
using test_support::IpmiSimulator;
using test_support::TemporaryFolder;
using Arguments = std::vector<std::string>;

constexpr const char* kEmulator = "/usr/bin/qemu-system-x86_64";
constexpr const char* kDone = "@@done";
constexpr const char* kPath = "/usr/bin:/bin:/usr/sbin:/sbin";
constexpr std::uint64_t kMebibyte = 1024 * 1024;
/// The RAID adapter's device number on PCI bus 0.
constexpr int kAdapterDevice = 5;
/// Each wait of ChildProcess is a minute.
constexpr int kMinutes = 3;

std::string FilesPath(const std::string& name) {
    return std::string(TARSEL_GUEST_FILES) + "/" + name;
}

void Append(Arguments& arguments, const Arguments& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
}

/// An empty disk or memory image; costs no space.
std::string Image(const TemporaryFolder& folder, const std::string& name, std::uint64_t size) {
    const std::string path = folder.Write(name, "");
    fs::resize_file(path, size);
    return path;
}

/// The simulated BMCs' scenarios, where the machine's own script looks for them.
std::string ExtraFiles(const TemporaryFolder& folder) {
    const fs::path extra = folder.Path("extra");
    fs::create_directories(extra / "opt/bmc");
    for (const fs::path& scenario :
         {fs::path(TARSEL_SCENARIOS) / "tavro-v3", fs::path(TARSEL_SCENARIOS) / "amd-ami-bmc",
          fs::path(TARSEL_GUEST_SOURCES) / "bmc/drive-bmc"}) {
        fs::copy(scenario, extra / "opt/bmc" / scenario.filename(), fs::copy_options::recursive);
    }
    return extra;
}

std::string Packed(const TemporaryFolder& folder) {
    ChildSetup setup;
    const std::string target = folder.Path("initrd");
    setup.arguments = {TARSEL_GUEST_SOURCES "/pack.sh",
                       TARSEL_GUEST_FILES,
                       target,
                       ExtraFiles(folder),
                       TARSEL_COMMAND,
                       TARSEL_BMC_SIMULATOR,
                       "/usr/bin/ipmitool"};
    setup.environment = {{"PATH", kPath}};
    ChildProcess pack(setup);
    if (pack.Wait() != 0) throw std::runtime_error("pack.sh: " + pack.Errors());
    return target;
}

Arguments Board(const std::string& initrd) {
    return {kEmulator, "-accel", "tcg", "-cpu", "qemu64", "-machine", "q35,nvdimm=on", "-m",
            "512M,slots=2,maxmem=1G", "-nodefaults", "-no-user-config", "-no-reboot", "-display",
            "none", "-serial", "stdio", "-monitor", "none", "-net", "none",
            // Without it the slots are named after bridges and not by their numbers.
            "-global", "ICH9-LPC.acpi-pci-hotplug-with-bridge-support=off", "-kernel",
            FilesPath("vmlinuz"), "-initrd", initrd, "-append",
            "console=ttyS0 quiet loglevel=0 panic=-1 rdinit=/init"};
}

/// What QEMU cannot be told in words: a structure without the table's end, which QEMU adds.
std::string Structure(const AnSmbiosTable& table) {
    std::string bytes = table.Bytes();
    bytes.resize(bytes.size() - AnSmbiosTable().Bytes().size());
    return bytes;
}

Arguments Smbios(const TemporaryFolder& folder) {
    const std::string slot = folder.Write(
        "slot", Structure(AnSmbiosTable().Slot("PCIe Slot 5", 5, 0, 0, kAdapterDevice << 3)));
    HostInterfaceFields way;
    way.service_address = std::string("\x7F\0\0\x01", 4);
    const std::string bmc = folder.Write("bmc", Structure(AnSmbiosTable().HostInterface(way)));
    return {"-smbios",
            "type=0,vendor=Example,version=EX1.02,date=01/02/2024,release=1.2",
            "-smbios",
            "type=1,manufacturer=Example,product=Example Rack Server,version=01,serial=SER12345,"
            "sku=RS-MODEL-01",
            "-smbios",
            "type=2,manufacturer=Example,product=Example Board,serial=BRD12345",
            "-smbios",
            "type=3,manufacturer=Example,serial=CHS12345",
            "-smbios",
            "file=" + slot,
            "-smbios",
            "file=" + bmc};
}

/// In a root port of its own, whose slot has the number.
Arguments InSlot(int slot, const std::string& device) {
    const std::string number = std::to_string(slot);
    return {"-device", "pcie-root-port,id=port" + number + ",chassis=" + number + ",slot=" + number,
            "-device", device + ",bus=port" + number};
}

Arguments Drive(const std::string& id, const std::string& image) {
    return {"-drive", "file=" + image + ",if=none,format=raw,id=" + id};
}

Arguments Devices(const TemporaryFolder& folder, int ipmi_port) {
    Arguments all = Drive("first", Image(folder, "first", kMebibyte));
    Append(all, InSlot(11, "nvme,serial=NVSER0001,drive=first"));
    Append(all, Drive("second", Image(folder, "second", kMebibyte)));
    Append(all, InSlot(12, "nvme,serial=NVSER0002,drive=second"));
    Append(all, InSlot(13, "e1000e"));
    Append(all, Drive("disk", Image(folder, "disk", 4 * kMebibyte)));
    Append(all,
           {"-device", "megasas-gen2,id=raid,addr=" + std::to_string(kAdapterDevice), "-device",
            "scsi-hd,bus=raid.0,drive=disk,vendor=EXAMPLE,product=DISK01,ver=DF01,"
            "serial=DSER01"});
    Append(all, {"-object",
                 "memory-backend-file,id=memory,share=on,size=128M,mem-path=" +
                     Image(folder, "memory", 128 * kMebibyte),
                 "-device", "nvdimm,id=module,memdev=memory"});
    Append(all, {"-chardev",
                 "socket,id=bmc,host=127.0.0.1,reconnect=10,port=" + std::to_string(ipmi_port),
                 "-device", "ipmi-bmc-extern,id=controller,chardev=bmc", "-device",
                 "isa-ipmi-kcs,bmc=controller"});
    return all;
}

}  // namespace

std::string GuestMachine::Missing() {
#ifdef __SANITIZE_ADDRESS__
    return "programs with sanitizers are too slow for an emulated machine; build without them";
#endif
    if (!fs::exists(kEmulator)) return "QEMU (package qemu-system-x86) is not installed";
    if (!fs::exists("/usr/bin/cpio")) return "cpio is not installed";
    if (!fs::exists(FilesPath("wanted"))) {
        return "no kernel for the guest in " TARSEL_GUEST_FILES
               "; scripts/guest_files.sh fetches it";
    }
    return IpmiSimulator::Missing();
}

GuestMachine::GuestMachine() {
    const TemporaryFolder folder;
    const IpmiSimulator controller(test_support::AModule(),
                                   IpmiSimulator::SystemInterface::kSocket);
    Arguments arguments = Board(Packed(folder));
    Append(arguments, Smbios(folder));
    Append(arguments, Devices(folder, controller.SystemPort()));
    Boot(arguments);
    parts_ = ReadParts(console_);
    facts_ = ReadFacts(Told("facts").text);
}

void GuestMachine::Boot(const Arguments& arguments) {
    ChildSetup setup;
    setup.arguments = arguments;
    setup.environment = {{"PATH", kPath}};
    ChildProcess emulator(setup);
    for (int n = 0; n < kMinutes && !has_told_all_; ++n) {
        has_told_all_ = emulator.WaitForOutput(kDone);
    }
    console_ = emulator.Output() + emulator.Errors();
}

ConsolePart GuestMachine::Told(const std::string& name) const {
    const auto found = parts_.find(name);
    return found == parts_.end() ? ConsolePart{} : found->second;
}

std::string GuestMachine::Fact(const std::string& key) const {
    const auto found = facts_.find(key);
    return found == facts_.end() ? std::string() : found->second;
}

}  // namespace guest
