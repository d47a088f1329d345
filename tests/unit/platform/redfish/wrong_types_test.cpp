// Every field of a service in turn with a value of every wrong type: readers must neither crash nor
// throw, and what the field does not concern must stay.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/broadcom_switch_reader.h"
#include "platform/redfish/device_list_reader.h"
#include "platform/redfish/inventory_reader.h"
#include "platform/redfish/managed_system.h"
#include "platform/redfish/pmem_reader.h"
#include "recorded_tree.h"
#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

namespace bj = boost::json;

const bj::value kWrongValues[] = {nullptr,      7,
                                  -1.5,         true,
                                  "",           "\xFF\x01 text",
                                  bj::array{},  bj::array{nullptr, 1, "x"},
                                  bj::object{}, bj::object{{"@odata.id", 5}}};

void ReadEverything(const ServerSnapshot& snapshot) {
    const ManagedSystem managed = FindManagedSystem(snapshot);
    const BmcFacts facts = ReadBmcFacts(snapshot, managed.manager);
    EXPECT_NE(kBmcKindNone, BmcKindOf(facts));
    (void)IsThirdGenerationTavro(facts);
    (void)ReadReleaseName(managed.manager);
    (void)ReadInventory(snapshot);
    (void)ReadDeviceList(snapshot);
    (void)ReadPersistentMemory(snapshot);
    (void)HasUpdatableDeviceBehindBroadcomSwitch(snapshot);
}

/// Calls `check` once for every value below `value`, with that value replaced by `wrong`.
void WithEachReplaced(bj::value& value, const bj::value& wrong,
                      const std::function<void()>& check) {
    const bj::value original = value;
    value = wrong;
    check();
    value = original;
    if (bj::object* object = value.if_object()) {
        for (auto& member : *object) WithEachReplaced(member.value(), wrong, check);
    }
    if (bj::array* array = value.if_array()) {
        for (bj::value& element : *array) WithEachReplaced(element, wrong, check);
    }
}

ServerSnapshot SmallServer() {
    ServerSnapshot snapshot = SnapshotWithFirmware(
        {FirmwareMember("E", R"({"Id":"E","Name":"NIC","Version":"1","Updateable":true,
            "Status":{"State":"Enabled"},"RelatedItem":[{"@odata.id":"/n/1"}],
            "Oem":{"X":{"DeviceContext":"Slot 3","SoftwareStatus":"Installed"}}})")});
    snapshot.root = ParseObject(R"({"Vendor":"V","Product":"P","Links":
        {"ManagerProvidingService":{"@odata.id":"/m/1"}}})");
    snapshot.systems = {MakeResource("/s/1", R"({"@odata.type":"#ComputerSystem.v1.ComputerSystem",
        "Id":"1","Model":"EX","Bios":{"@odata.id":"/s/1/Bios"},
        "Links":{"ManagedBy":[{"@odata.id":"/m/1"}]}})")};
    snapshot.managers = {
        MakeResource("/m/1", R"({"ManagerType":"BMC","Oem":{"X":{"ReleaseName":"r"}},
        "Links":{"ManagerForServers":["/s/1"],"ActiveSoftwareImage":{"@odata.id":"/f/1"},
        "SoftwareImages":[{"@odata.id":"/f/1"}]}})")};
    snapshot.network_adapters = {MakeResource("/n/1", R"({"Location":{"PartLocation":
        {"ServiceLabel":"Slot 3","LocationOrdinalValue":3}},"Controllers":[{
        "FirmwarePackageVersion":"1","Links":{"PCIeDevices":[{"@odata.id":"/p/1"}]}}]})")};
    snapshot.pcie_devices = {MakeResource("/p/1", R"({"VendorId":"0x1000","Name":"Switch",
        "Slot":{"SlotType":"M2","Location":{"PartLocation":{"LocationType":"Slot"}}},
        "Links":{"PCIeDevices":["/p/2"]},"PCIeFunctions":{"Members":[{"VendorId":"0x1000"}]}})")};
    snapshot.storage = {MakeResource("/st", R"({"StorageControllers":[{"MemberId":"0"}],
        "Controllers":{"Members":[{"@odata.id":"/st/c","FirmwareVersion":"1"}]}})")};
    snapshot.power = {MakeResource("/c/1/Power", R"({"PowerSupplies":[{"FirmwareVersion":"1",
        "Oem":{"X":{"BayNumber":1}}}]})")};
    snapshot.pcie_slots = {MakeResource("/c/1/PCIeSlots", R"({"Slots":[{"SlotType":"FullLength",
        "Location":{"PartLocation":{"LocationOrdinalValue":1}},"Links":{"PCIeDevice":["/p/1"]}}]})")};
    snapshot.memory = {MakeResource("/me", R"({"MemoryType":"NVDIMM_N","MemoryMedia":["DRAM"],
        "MemoryLocation":{"Slot":1}})")};
    return snapshot;
}

std::vector<bj::object*> Bodies(ServerSnapshot& snapshot) {
    std::vector<bj::object*> bodies = {&snapshot.root};
    for (auto* list : {&snapshot.systems, &snapshot.managers, &snapshot.chassis, &snapshot.firmware,
                       &snapshot.network_adapters, &snapshot.pcie_devices, &snapshot.storage,
                       &snapshot.power, &snapshot.pcie_slots, &snapshot.memory}) {
        for (Resource& resource : *list) bodies.push_back(&resource.body);
    }
    return bodies;
}

TEST(WrongTypesTest, NoFieldOfAnyResourceCrashesTheReaders) {
    ServerSnapshot snapshot = SmallServer();
    int checks = 0;
    for (bj::object* body : Bodies(snapshot)) {
        for (auto& member : *body) {
            for (const bj::value& wrong : kWrongValues) {
                WithEachReplaced(member.value(), wrong, [&] {
                    ++checks;
                    EXPECT_NO_THROW(ReadEverything(snapshot));
                });
            }
        }
    }
    EXPECT_GT(checks, 800);
}

TEST(WrongTypesTest, WrongFieldOfOneMemberLeavesTheOtherMembersAlone) {
    for (const char* key :
         {"Id", "Name", "Version", "SoftwareId", "RelatedItem", "Status", "Oem"}) {
        for (const bj::value& wrong : kWrongValues) {
            ServerSnapshot snapshot = SmallServer();
            snapshot.firmware.push_back(FirmwareMember("Good", R"({"Id":"Good","Version":"2"})"));
            snapshot.firmware[0].body[key] = wrong;
            const Inventory inventory = ReadInventory(snapshot);
            EXPECT_TRUE(std::any_of(inventory.identities.begin(), inventory.identities.end(),
                                    [](const auto& identity) {
                                        return identity.InstanceID == "Good" &&
                                               identity.VersionString == "2";
                                    }))
                << key << ' ' << wrong;
        }
    }
}

TEST(WrongTypesTest, PathsThatAreNoPathsAreHarmless) {
    for (const char* path : {"", "/", "//", "#", "?", "nonsense", "https://", "%", "/a/../.."}) {
        ServerSnapshot snapshot = SmallServer();
        for (auto* list : {&snapshot.systems, &snapshot.managers, &snapshot.firmware,
                           &snapshot.network_adapters, &snapshot.storage, &snapshot.power}) {
            list->front().path = path;
        }
        EXPECT_NO_THROW(ReadEverything(snapshot)) << path;
    }
}

}  // namespace
}  // namespace Vantix::redfish
