#include "platform/redfish/managed_system.h"

#include <gmock/gmock.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

using testing::HasSubstr;

Resource SystemResource(const std::string& id, const std::string& more = "") {
    return MakeResource("/redfish/v1/Systems/" + id,
                        R"({"@odata.type":"#ComputerSystem.v1_7_0.ComputerSystem","Id":")" + id +
                            "\"" + more + "}");
}

Resource ManagerOf(const std::string& id, const std::string& type, const std::string& systems) {
    return MakeResource("/redfish/v1/Managers/" + id,
                        R"({"Id":")" + id + R"(","ManagerType":")" + type +
                            R"(","Links":{"ManagerForServers":[)" + systems + "]}}");
}

std::string LinkTo(const std::string& path) {
    return R"({"@odata.id":")" + path + R"("})";
}

TEST(ManagedSystemTest, FactsComeFromTheSystem) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource(
        "1", R"(,"Model":" EX100 ","SKU":"S","SerialNumber":"EX1","BiosVersion":"B1")"));
    snapshot.managers.push_back(MakeResource("/m", R"({"FirmwareVersion":"M1"})"));
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("EX100", managed.machine_type);
    EXPECT_EQ("EX1", managed.serial_number);
    EXPECT_EQ("B1", managed.bios_version);
    EXPECT_EQ("M1", managed.manager_version);
    EXPECT_EQ("", managed.notice);
}

TEST(ManagedSystemTest, MachineTypeFallsBackToSkuThenPartNumber) {
    const std::pair<const char*, const char*> cases[] = {
        {R"(,"Model":"M","SKU":"S","PartNumber":"P")", "M"},
        {R"(,"Model":null,"SKU":"S","PartNumber":"P")", "S"},
        {R"(,"Model":"","SKU":{},"PartNumber":"P")", "P"},
        {R"(,"Model":"To be filled by O.E.M.","SKU":"01234567890123456789AB","PartNumber":"P")",
         "P"},
        {R"(,"Model":"Default string")", ""},
        {"", ""}};
    for (const auto& [facts, machine_type] : cases) {
        ServerSnapshot snapshot;
        snapshot.systems.push_back(SystemResource("1", facts));
        EXPECT_EQ(machine_type, FindManagedSystem(snapshot).machine_type) << facts;
    }
}

TEST(ManagedSystemTest, PlaceholderSerialNumberIsUnknown) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("1", R"(,"SerialNumber":"System Serial Number")"));
    EXPECT_EQ("", FindManagedSystem(snapshot).serial_number);
}

TEST(ManagedSystemTest, HostIsChosenBeforeAcceleratorBoards) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("Board_0", R"(,"Model":"Board")"));
    snapshot.systems.push_back(SystemResource(
        "Host", R"(,"Model":"Host","Bios":{"@odata.id":"/redfish/v1/Systems/Host/Bios"})"));
    snapshot.managers.push_back(ManagerOf("BMC", "BMC", LinkTo("/redfish/v1/Systems/Host/")));
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("Host", managed.machine_type);
    EXPECT_EQ("", managed.notice);
}

TEST(ManagedSystemTest, ManagersLinkOfAnotherCaseAndHostCounts) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("A"));
    snapshot.systems.push_back(SystemResource("B", R"(,"Model":"B-Model")"));
    snapshot.managers.push_back(
        ManagerOf("BMC", "BMC", LinkTo("https://other.invalid/redfish/v1/systems/b")));
    EXPECT_EQ("B-Model", FindManagedSystem(snapshot).machine_type);
}

TEST(ManagedSystemTest, SystemOfTheServingManagerIsPreferred) {
    ServerSnapshot snapshot;
    snapshot.root = ParseObject(
        R"({"Links":{"ManagerProvidingService":{"@odata.id":"/redfish/v1/Managers/Own"}}})");
    snapshot.systems.push_back(SystemResource("Dpu", R"(,"Model":"Dpu")"));
    snapshot.systems.push_back(SystemResource("Host", R"(,"Model":"Host")"));
    snapshot.managers.push_back(ManagerOf("Other", "BMC", LinkTo("/redfish/v1/Systems/Dpu")));
    snapshot.managers.push_back(ManagerOf("Own", "BMC", LinkTo("/redfish/v1/Systems/Host")));
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("Host", managed.machine_type);
    EXPECT_EQ("/redfish/v1/Managers/Own", managed.manager->path);
}

TEST(ManagedSystemTest, PhysicalSystemIsPreferredToOtherTypes) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("Dpu", R"(,"SystemType":"DPU","Model":"Dpu")"));
    snapshot.systems.push_back(
        SystemResource("Host", R"(,"SystemType":"Physical","Model":"Host")"));
    EXPECT_EQ("Host", FindManagedSystem(snapshot).machine_type);
}

TEST(ManagedSystemTest, SystemThatNamesItsManagerIsPreferred) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("A", R"(,"Model":"A")"));
    snapshot.systems.push_back(
        SystemResource("B", R"(,"Model":"B","Links":{"ManagedBy":["/redfish/v1/Managers/1"]})"));
    EXPECT_EQ("B", FindManagedSystem(snapshot).machine_type);
}

TEST(ManagedSystemTest, EqualCandidatesAreListedAndTheFirstIsUsed) {
    ServerSnapshot snapshot;
    for (const char* id : {"Node3", "Node1", "Node2"}) {
        snapshot.systems.push_back(SystemResource(id, R"(,"BiosVersion":"B")"));
    }
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("/redfish/v1/Systems/Node3", managed.system->path);
    EXPECT_THAT(managed.notice, HasSubstr("3 computer systems (Node3, Node1, Node2)"));
    EXPECT_THAT(managed.notice, HasSubstr("--system-id"));
}

TEST(ManagedSystemTest, RequestedIdDecidesAlone) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("Node3", R"(,"BiosVersion":"B")"));
    snapshot.systems.push_back(SystemResource("Node1", R"(,"Model":"One")"));
    const ManagedSystem managed = FindManagedSystem(snapshot, "node1");
    EXPECT_EQ("One", managed.machine_type);
    EXPECT_EQ("", managed.notice);
}

TEST(ManagedSystemTest, UnknownRequestedIdGivesNoFactsOfAnotherSystem) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("Node1", R"(,"Model":"One")"));
    snapshot.chassis.push_back(MakeResource("/c", R"({"Model":"Case"})"));
    const ManagedSystem managed = FindManagedSystem(snapshot, "Node9");
    EXPECT_EQ(nullptr, managed.system);
    EXPECT_EQ("", managed.machine_type);
    EXPECT_EQ("No computer system has the Id \"Node9\"; the service has Node1.", managed.notice);
}

TEST(ManagedSystemTest, SettingsTemplatesAndErrorsAreNoSystems) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("Capabilities"));
    snapshot.systems.push_back(SystemResource("Zone", R"(,"Name@Redfish.RequiredOnCreate":true)"));
    snapshot.systems.push_back(SystemResource("Settings"));
    snapshot.systems.push_back(MakeResource(
        "/redfish/v1/Systems/2", R"({"@odata.type":"#ComputerSystemCollection.X","Id":"2"})"));
    snapshot.systems.push_back(MakeResource("/redfish/v1/Systems/3", R"({"error":{}})"));
    EXPECT_EQ(nullptr, FindManagedSystem(snapshot).system);
}

TEST(ManagedSystemTest, SystemWithoutTypeIsASystem) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(MakeResource("/redfish/v1/Systems/1", R"({"Model":"EX"})"));
    EXPECT_EQ("EX", FindManagedSystem(snapshot).machine_type);
}

TEST(ManagedSystemTest, ServiceWithoutSystemsTakesFactsOfTheEnclosure) {
    ServerSnapshot snapshot;
    snapshot.chassis.push_back(MakeResource("/redfish/v1/Chassis/Fan", R"({"Model":"Fan"})"));
    snapshot.chassis.push_back(
        MakeResource("/redfish/v1/Chassis/E",
                     R"({"ChassisType":"Enclosure","Model":"EX-E","SerialNumber":"EXE1"})"));
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("EX-E", managed.machine_type);
    EXPECT_EQ("EXE1", managed.serial_number);
}

TEST(ManagedSystemTest, InnerChassisIsNotTheEnclosure) {
    ServerSnapshot snapshot;
    snapshot.chassis.push_back(MakeResource(
        "/c/blade", R"({"Model":"Inner","Links":{"ContainedBy":{"@odata.id":"/c/outer"}}})"));
    snapshot.chassis.push_back(MakeResource("/c/outer", R"({"Model":"Outer"})"));
    EXPECT_EQ("Outer", FindManagedSystem(snapshot).machine_type);
}

TEST(ManagedSystemTest, ChassisNeverFillsInForASystem) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("1"));
    snapshot.chassis.push_back(
        MakeResource("/c", R"({"ChassisType":"Enclosure","Model":"E","SerialNumber":"S"})"));
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("", managed.machine_type);
    EXPECT_EQ("", managed.serial_number);
}

TEST(ManagedSystemTest, ManagerOfTheSystemIsChosenBeforeOthers) {
    ServerSnapshot snapshot;
    snapshot.systems.push_back(SystemResource("1"));
    snapshot.managers.push_back(ManagerOf("Aux", "AuxiliaryController", ""));
    snapshot.managers.push_back(ManagerOf("Chassis", "EnclosureManager", ""));
    snapshot.managers.push_back(ManagerOf("BMC", "BMC", LinkTo("/redfish/v1/Systems/1")));
    EXPECT_EQ("/redfish/v1/Managers/BMC", FindManagedSystem(snapshot).manager->path);
}

TEST(ManagedSystemTest, EnclosureManagerIsChosenWhereThereIsNoSystem) {
    ServerSnapshot snapshot;
    snapshot.managers.push_back(ManagerOf("Aux", "AuxiliaryController", ""));
    snapshot.managers.push_back(ManagerOf("Enc", "EnclosureManager", ""));
    EXPECT_EQ("/redfish/v1/Managers/Enc", FindManagedSystem(snapshot).manager->path);
}

TEST(ManagedSystemTest, FirstManagerIsChosenWhenNothingTells) {
    ServerSnapshot snapshot;
    snapshot.managers.push_back(MakeResource("/error", R"({"error":{}})"));
    snapshot.managers.push_back(MakeResource("/first", "{}"));
    snapshot.managers.push_back(MakeResource("/second", "{}"));
    EXPECT_EQ("/first", FindManagedSystem(snapshot).manager->path);
}

TEST(ManagedSystemTest, EmptySnapshotGivesNothing) {
    const ManagedSystem managed = FindManagedSystem({});
    EXPECT_EQ(nullptr, managed.system);
    EXPECT_EQ(nullptr, managed.manager);
    EXPECT_EQ(nullptr, managed.chassis);
    EXPECT_EQ("", managed.machine_type);
}

}  // namespace
}  // namespace Vantix::redfish
