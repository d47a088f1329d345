#include "platform/redfish/classification.h"

#include <gtest/gtest.h>

namespace Vantix::redfish {
namespace {

ClassificationEvidence Named(const std::string& name) {
    ClassificationEvidence evidence;
    evidence.name = name;
    return evidence;
}

TEST(ClassificationTest, WordsDecideTheCode) {
    const std::pair<const char*, const char*> cases[] = {
        {"System BIOS", "6"},
        {"UEFI", "6"},
        {"UEFI-Backup", "6"},
        {"System ROM", "6"},
        {"SystemRomActive", "6"},
        {"Example Adapter Option ROM", "6"},
        {"Example RAID UEFI Driver", "6"},
        {"FCode Image", "6"},
        {"Example Network Driver", "2"},
        {"OS Drivers Pack", "2"},
        {"LED Driver Firmware", "10"},
        {"Diagnostics", "7"},
        {"UEFI Diagnostics", "7"},
        {"Embedded OS", "8"},
        {"Example Operating System", "8"},
        {"Bare Hypervisor", "8"},
        {"RAID Configuration Utility", "3"},
        {"Setup Tool", "3"},
        {"Example Middleware", "9"},
        {"Instrumentation Agent", "5"},
        {"Firmware Support Pack", "12"},
        {"Example Firmware Bundle", "13"},
        {"BMC", "10"},
        {"System Programmable Logic Device", "10"},
        {"VBIOS", "10"},
        {"Drive 4", "10"},
        {"", "10"},
    };
    for (const auto& [name, code] : cases) EXPECT_EQ(code, ClassificationOf(Named(name))) << name;
}

TEST(ClassificationTest, EveryTextOfTheEntryCounts) {
    ClassificationEvidence by_id;
    by_id.id = "BIOS";
    ClassificationEvidence by_software_id;
    by_software_id.software_id = "UEFI";
    ClassificationEvidence by_description;
    by_description.description = "SystemRomActive";
    for (const auto& evidence : {by_id, by_software_id, by_description}) {
        EXPECT_EQ("6", ClassificationOf(evidence));
    }
}

TEST(ClassificationTest, RelationToTheBiosResourceMakesABios) {
    ClassificationEvidence evidence = Named("Software Inventory");
    evidence.related_paths = {"/redfish/v1/Systems/system/Bios"};
    EXPECT_EQ("6", ClassificationOf(evidence));
    evidence.related_paths = {"/redfish/v1/Systems/system"};
    EXPECT_EQ("10", ClassificationOf(evidence));
}

TEST(ClassificationTest, SoftwareInventoryHoldsApplicationsUnlessFirmwareIsSaid) {
    ClassificationEvidence evidence = Named("Example Console");
    evidence.is_in_firmware_inventory = false;
    EXPECT_EQ("4", ClassificationOf(evidence));
    evidence.has_related_hardware = true;
    EXPECT_EQ("10", ClassificationOf(evidence));
    ClassificationEvidence bmc = Named("BMC");
    bmc.is_in_firmware_inventory = false;
    EXPECT_EQ("10", ClassificationOf(bmc));
}

}  // namespace
}  // namespace Vantix::redfish
