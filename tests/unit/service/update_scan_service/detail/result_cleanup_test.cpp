#include "service/update_scan_service/detail/result_cleanup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/builders.h"

namespace service::detail {
namespace {

using support::AnItem;
using testing::ElementsAre;
using testing::IsEmpty;

UpdateScanReport ReportOf(const std::vector<UpdateScanItem>& items) {
    UpdateScanReport report;
    report.SetScanResults(items);
    return report;
}

std::vector<std::string> Names(const UpdateScanReport& report) {
    std::vector<std::string> names;
    for (const UpdateScanItem& item : report.GetScanResults()) names.push_back(item.name);
    return names;
}

std::vector<std::string> NamesWithoutOem(const std::vector<UpdateScanItem>& items) {
    UpdateScanReport report = ReportOf(items);
    RemoveOemItems(report);
    return Names(report);
}

std::vector<std::string> DistinguishedNames(const std::vector<UpdateScanItem>& items) {
    UpdateScanReport report = ReportOf(items);
    DistinguishDuplicateNames(report);
    return Names(report);
}

TEST(RemoveOemItemsTest, ItemsBehindMoveUpInTheirOrder) {
    EXPECT_THAT(NamesWithoutOem({AnItem().Name("a"), AnItem().Name("oem_nic"), AnItem().Name("c"),
                                 AnItem().Name("b")}),
                ElementsAre("a", "c", "b"));
}

TEST(RemoveOemItemsTest, ConsecutiveItemsAreAllRemoved) {
    EXPECT_THAT(NamesWithoutOem({AnItem().Name("oem1"), AnItem().Name("oem2"),
                                 AnItem().Name("oem3"), AnItem().Name("kept")}),
                ElementsAre("kept"));
}

TEST(RemoveOemItemsTest, BareNameIsRemoved) {
    EXPECT_THAT(NamesWithoutOem({AnItem().Name("oem")}), IsEmpty());
}

TEST(RemoveOemItemsTest, OtherCaseAndOtherPlaceAreKept) {
    EXPECT_THAT(NamesWithoutOem({AnItem().Name("OEM-Adapter"), AnItem().Name("Oem"),
                                 AnItem().Name("myoem"), AnItem().Name("oe"), AnItem().Name("")}),
                ElementsAre("OEM-Adapter", "Oem", "myoem", "oe", ""));
}

TEST(RemoveOemItemsTest, DriversAreRemovedToo) {
    EXPECT_THAT(NamesWithoutOem({AnItem().Name("oem_driver").Classification("22")}), IsEmpty());
}

TEST(RemoveOemItemsTest, EmptyListStaysEmpty) {
    EXPECT_THAT(NamesWithoutOem({}), IsEmpty());
}

TEST(RemoveOemItemsTest, ScanCountStaysAsItIs) {
    UpdateScanReport report = ReportOf({AnItem().Name("oem")});
    report.SetScanCount(1);
    RemoveOemItems(report);
    EXPECT_EQ(report.GetScanCount(), 1);
}

TEST(DistinguishDuplicateNamesTest, EveryMemberOfAGroupGetsItsSuffix) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("NIC").Slot("1").Version("2").SoftwareId("A"),
                                    AnItem().Name("other").SoftwareId("X"),
                                    AnItem().Name("NIC").Slot("1").Version("2").SoftwareId("B"),
                                    AnItem().Name("NIC").Slot("1").Version("2").SoftwareId("C")}),
                ElementsAre("NIC(A)", "other", "NIC(B)", "NIC(C)"));
}

TEST(DistinguishDuplicateNamesTest, DifferentVersionsKeepTheirNames) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("NIC").Slot("1").Version("2"),
                                    AnItem().Name("NIC").Slot("1").Version("3")}),
                ElementsAre("NIC", "NIC"));
}

TEST(DistinguishDuplicateNamesTest, DifferentSlotsKeepTheirNames) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("NIC").Slot("1").Version("x"),
                                    AnItem().Name("NIC").Slot("2").Version("x")}),
                ElementsAre("NIC", "NIC"));
}

TEST(DistinguishDuplicateNamesTest, EqualSoftwareIdentifiersStayEqual) {
    EXPECT_THAT(DistinguishedNames(
                    {AnItem().Name("NIC").SoftwareId("A"), AnItem().Name("NIC").SoftwareId("A")}),
                ElementsAre("NIC(A)", "NIC(A)"));
}

TEST(DistinguishDuplicateNamesTest, DriversKeepTheirNames) {
    const UpdateScanItem driver = AnItem().Name("drv").Slot("1").Version("2").Classification("22");
    EXPECT_THAT(DistinguishedNames({driver, driver}), ElementsAre("drv", "drv"));
}

TEST(DistinguishDuplicateNamesTest, DriverNamedDriveKeepsItsName) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("Drive").Classification("22")}),
                ElementsAre("Drive"));
}

TEST(DistinguishDuplicateNamesTest, DriverDoesNotCountForFirmware) {
    EXPECT_THAT(
        DistinguishedNames({AnItem().Name("NIC").Classification("22"), AnItem().Name("NIC")}),
        ElementsAre("NIC", "NIC"));
}

TEST(DistinguishDuplicateNamesTest, LongerClassificationIsNoDriver) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("NIC").Classification("220").SoftwareId("A"),
                                    AnItem().Name("NIC").Classification("220").SoftwareId("B")}),
                ElementsAre("NIC(A)", "NIC(B)"));
}

TEST(DistinguishDuplicateNamesTest, LoneDriveGetsTheSuffix) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("Drive").SoftwareId("Disk0")}),
                ElementsAre("Drive(Disk0)"));
}

TEST(DistinguishDuplicateNamesTest, EmptySoftwareIdentifierGivesEmptyBrackets) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("Drive")}), ElementsAre("Drive()"));
}

TEST(DistinguishDuplicateNamesTest, NamesLikeDriveKeepThem) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("Drive 0"), AnItem().Name("drive")}),
                ElementsAre("Drive 0", "drive"));
}

TEST(DistinguishDuplicateNamesTest, EqualConcatenationsAreOneGroup) {
    EXPECT_THAT(DistinguishedNames({AnItem().Name("AB").Slot("1").Version("v").SoftwareId("x"),
                                    AnItem().Name("A").Slot("B1").Version("v").SoftwareId("y"),
                                    AnItem().Name("").Slot("").Version("AB1v").SoftwareId("z")}),
                ElementsAre("AB(x)", "A(y)", "(z)"));
}

TEST(DistinguishDuplicateNamesTest, NewNamesAreNotCountedAgain) {
    EXPECT_THAT(
        DistinguishedNames({AnItem().Name("N").SoftwareId("A"), AnItem().Name("N").SoftwareId("A"),
                            AnItem().Name("N(A)").SoftwareId("B")}),
        ElementsAre("N(A)", "N(A)", "N(A)"));
}

TEST(DistinguishDuplicateNamesTest, EmptyListStaysEmpty) {
    EXPECT_THAT(DistinguishedNames({}), IsEmpty());
}

TEST(ResultCleanupTest, RemovedItemNeverCountsTowardsAGroup) {
    // Without the removal the two concatenations would be equal.
    UpdateScanReport report =
        ReportOf({AnItem().Name("oem_nic").Slot("1"), AnItem().Name("").Slot("oem_nic1")});
    RemoveOemItems(report);
    DistinguishDuplicateNames(report);
    EXPECT_THAT(Names(report), ElementsAre(""));
}

}  // namespace
}  // namespace service::detail
