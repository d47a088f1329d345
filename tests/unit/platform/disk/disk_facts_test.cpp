#include "platform/disk/disk_facts.h"

#include <gtest/gtest.h>

#include "support/system_tree.h"

namespace Vantix::disk {
namespace {

DiskFacts ADisk() {
    DiskFacts facts;
    facts.node = "sda";
    facts.source = "SCSI disk";
    facts.manufacturer = "EXAMPLE";
    facts.model = "DISK01";
    facts.firmware = "DF01";
    facts.serial = "DSER01";
    facts.slot = {"4", redfish::kSlotDriveBay};
    return facts;
}

TEST(DiskFactsTest, IdentityHasAllThatIsKnown) {
    const auto identity = MakeIdentity(ADisk());
    EXPECT_EQ(identity.Name, "DISK01");
    EXPECT_EQ(identity.ElementName, "DISK01");
    EXPECT_EQ(identity.ProductName, "DISK01");
    EXPECT_EQ(identity.Description, "Drive firmware");
    EXPECT_EQ(identity.Caption, "SCSI disk");
    EXPECT_EQ(identity.Manufacturer, "EXAMPLE");
    EXPECT_EQ(identity.VersionString, "DF01");
    EXPECT_EQ(identity.SerialNumber, "DSER01");
    EXPECT_EQ(identity.InstanceID, "sda");
    EXPECT_EQ(identity.Classifications, "10");
    EXPECT_EQ(identity.IsPLDMUpdateSupported, "0");
}

TEST(DiskFactsTest, ModelIsIdentifierAndPartNumber) {
    const auto identity = MakeIdentity(ADisk());
    EXPECT_EQ(identity.SoftwareID, "DISK01");
    EXPECT_EQ(identity.PartNumber, "DISK01");
}

TEST(DiskFactsTest, BayIsTheSlot) {
    const auto identity = MakeIdentity(ADisk());
    EXPECT_EQ(identity.AssociatedAdapterSlot, "4");
    EXPECT_EQ(identity.SlotType, 1);
}

TEST(DiskFactsTest, DiskWithoutBayHasNoSlot) {
    DiskFacts facts = ADisk();
    facts.slot = {};
    EXPECT_EQ(MakeIdentity(facts).AssociatedAdapterSlot, "");
    EXPECT_EQ(MakeIdentity(facts).SlotType, 0);
}

TEST(DiskFactsTest, DiskWithoutModelIsNamedByItsNodeAndHasNoPartNumber) {
    DiskFacts facts = ADisk();
    facts.model.clear();
    const auto identity = MakeIdentity(facts);
    EXPECT_EQ(identity.Name, "sda");
    EXPECT_EQ(identity.SoftwareID, "sda");
    EXPECT_EQ(identity.PartNumber, "");
}

TEST(DiskFactsTest, DiskWithoutRevisionHasAnEmptyVersion) {
    DiskFacts facts = ADisk();
    facts.firmware.clear();
    EXPECT_EQ(MakeIdentity(facts).VersionString, "");
}

TEST(DiskFactsTest, HugeAndUnreadableAttributesAreNothing) {
    test_support::SystemTree tree;
    tree.File("/sys/long", std::string(5000, 'x'))
        .File("/sys/binary", "\xff\xfe\x01\xff")
        .File("/sys/padded", std::string("DISK01  ") + std::string(4088, '\0'))
        .Link("/sys/circle", "circle");
    const transport::SystemRoot root(tree.Root());
    EXPECT_EQ(Attribute(root, "/sys/long"), "");
    EXPECT_EQ(Attribute(root, "/sys/binary"), "");
    EXPECT_EQ(Attribute(root, "/sys/circle"), "");
    EXPECT_EQ(Attribute(root, "/sys/padded"), "DISK01");
}

}  // namespace
}  // namespace Vantix::disk
