#include "service/update_scan_service/update_scan_report.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using service::UpdateScanItem;
using service::UpdateScanReport;

UpdateScanItem ItemCalled(const std::string& name) {
    UpdateScanItem item;
    item.name = name;
    return item;
}

std::vector<std::string> Names(const UpdateScanReport& report) {
    std::vector<std::string> names;
    for (const UpdateScanItem& item : report.GetScanResults()) names.push_back(item.name);
    return names;
}

TEST(UpdateScanItemTest, DefaultItemHasEmptyTextsAndNoDevice) {
    const UpdateScanItem item;
    for (const std::string& text :
         {item.softwareId, item.version, item.classification, item.description, item.name,
          item.pldm, item.instanceId, item.slotNum, item.slotType}) {
        EXPECT_EQ(text, "");
    }
    EXPECT_EQ(item.hasDevice, 0);
}

TEST(UpdateScanItemTest, FieldsStandInTheirFixedOrder) {
    const UpdateScanItem item{"id", "1.2", "10", "text", "name", "1", "inst", "3", "7", 4};
    EXPECT_EQ(item.softwareId, "id");
    EXPECT_EQ(item.version, "1.2");
    EXPECT_EQ(item.classification, "10");
    EXPECT_EQ(item.description, "text");
    EXPECT_EQ(item.name, "name");
    EXPECT_EQ(item.pldm, "1");
    EXPECT_EQ(item.instanceId, "inst");
    EXPECT_EQ(item.slotNum, "3");
    EXPECT_EQ(item.slotType, "7");
    EXPECT_EQ(item.hasDevice, 4);
}

TEST(UpdateScanReportTest, DefaultReportHasXmlVersionOnePointZero) {
    EXPECT_EQ(UpdateScanReport().GetXmlVersion(), "1.0");
}

TEST(UpdateScanReportTest, DefaultReportIsOtherwiseEmpty) {
    const UpdateScanReport report;
    for (const std::string& text :
         {report.GetArch(), report.GetBmcReleaseName(), report.GetBmcType(), report.GetMT(),
          report.GetOS(), report.GetOSMinorVersion(), report.GetScope(),
          report.GetSwitchDownstreamDevices()}) {
        EXPECT_EQ(text, "");
    }
    EXPECT_EQ(report.GetIsPartition(), 0);
    EXPECT_EQ(report.GetScanCount(), 0);
    EXPECT_FALSE(report.IsCheckDevice());
    EXPECT_TRUE(report.GetScanResults().empty());
}

TEST(UpdateScanReportTest, EverySetterReachesItsOwnMember) {
    UpdateScanReport report;
    report.SetArch("arch");
    report.SetBmcReleaseName("release");
    report.SetBmcType("type");
    report.SetMT("mt");
    report.SetOS("os");
    report.SetOSMinorVersion("minor");
    report.SetScope("scope");
    report.SetSwitchDownstreamDevices("switch");
    report.SetXmlVersion("2.0");
    EXPECT_EQ(report.GetArch(), "arch");
    EXPECT_EQ(report.GetBmcReleaseName(), "release");
    EXPECT_EQ(report.GetBmcType(), "type");
    EXPECT_EQ(report.GetMT(), "mt");
    EXPECT_EQ(report.GetOS(), "os");
    EXPECT_EQ(report.GetOSMinorVersion(), "minor");
    EXPECT_EQ(report.GetScope(), "scope");
    EXPECT_EQ(report.GetSwitchDownstreamDevices(), "switch");
    EXPECT_EQ(report.GetXmlVersion(), "2.0");
}

TEST(UpdateScanReportTest, NumbersAndFlagAreKeptAsGiven) {
    UpdateScanReport report;
    report.SetIsPartition(-3);
    report.SetScanCount(1234567);
    report.SetCheckDevice(true);
    EXPECT_EQ(report.GetIsPartition(), -3);
    EXPECT_EQ(report.GetScanCount(), 1234567);
    EXPECT_TRUE(report.IsCheckDevice());
}

TEST(UpdateScanReportTest, TextGettersReturnCopies) {
    static_assert(std::is_same_v<decltype(UpdateScanReport().GetOS()), std::string>);
    UpdateScanReport report;
    report.SetOS("first");
    const std::string before = report.GetOS();
    report.SetOS("second");
    EXPECT_EQ(before, "first");
}

TEST(UpdateScanReportTest, SettingATextToItselfKeepsIt) {
    UpdateScanReport report;
    report.SetMT("9XQ1");
    report.SetMT(report.GetMT());
    EXPECT_EQ(report.GetMT(), "9XQ1");
}

TEST(UpdateScanReportTest, TextsAreNotNormalised) {
    UpdateScanReport report;
    report.SetOS("  Two  Words\t\n");
    EXPECT_EQ(report.GetOS(), "  Two  Words\t\n");
}

TEST(UpdateScanReportTest, PushedItemsStandInTheirOrder) {
    UpdateScanReport report;
    report.PushScanItem(ItemCalled("b"));
    report.PushScanItem(ItemCalled("a"));
    EXPECT_EQ(Names(report), (std::vector<std::string>{"b", "a"}));
}

TEST(UpdateScanReportTest, GivenAwayItemIsAppendedWhole) {
    UpdateScanReport report;
    UpdateScanItem item = ItemCalled("a long name beyond any small buffer");
    item.hasDevice = 5;
    report.PushScanItem(std::move(item));
    EXPECT_EQ(Names(report), (std::vector<std::string>{"a long name beyond any small buffer"}));
    EXPECT_EQ(report.GetScanResults().front().hasDevice, 5);
}

TEST(UpdateScanReportTest, PushingDoesNotChangeTheScanCount) {
    UpdateScanReport report;
    report.SetScanCount(7);
    report.PushScanItem(ItemCalled("a"));
    const std::vector<UpdateScanItem> more(3);
    report.PushScanItem(more.begin(), more.end());
    EXPECT_EQ(report.GetScanCount(), 7);
}

TEST(UpdateScanReportTest, EmptyRangeLeavesTheListUnchanged) {
    UpdateScanReport report;
    report.PushScanItem(ItemCalled("only"));
    const std::vector<UpdateScanItem> none;
    report.PushScanItem(none.begin(), none.end());
    EXPECT_EQ(Names(report), (std::vector<std::string>{"only"}));
}

TEST(UpdateScanReportTest, RangeIsAppendedInItsOrder) {
    UpdateScanReport report;
    report.PushScanItem(ItemCalled("first"));
    const std::vector<UpdateScanItem> more = {ItemCalled("x"), ItemCalled("y"), ItemCalled("z")};
    report.PushScanItem(more.begin() + 1, more.end());
    EXPECT_EQ(Names(report), (std::vector<std::string>{"first", "y", "z"}));
}

TEST(UpdateScanReportTest, OwnRangeCanBeAppended) {
    UpdateScanReport report;
    for (const char* name : {"a long name beyond any small buffer", "b", "c"}) {
        report.PushScanItem(ItemCalled(name));
    }
    const auto& items = report.GetScanResults();
    report.PushScanItem(items.cbegin(), items.cend());
    ASSERT_EQ(Names(report).size(), 6U);
    EXPECT_EQ(Names(report)[3], "a long name beyond any small buffer");
    EXPECT_EQ(Names(report)[5], "c");
}

TEST(UpdateScanReportTest, OwnItemCanBePushed) {
    UpdateScanReport report;
    report.PushScanItem(ItemCalled("a long name beyond any small buffer"));
    for (int i = 0; i < 10; ++i) report.PushScanItem(report.GetScanResults().front());
    EXPECT_EQ(Names(report).back(), "a long name beyond any small buffer");
}

TEST(UpdateScanReportTest, ScanResultsGiveTheListItself) {
    UpdateScanReport report;
    report.GetScanResults().push_back(ItemCalled("direct"));
    const UpdateScanReport& view = report;
    EXPECT_EQ(&report.GetScanResults(), &view.GetScanResults());
    EXPECT_EQ(Names(view), (std::vector<std::string>{"direct"}));
}

TEST(UpdateScanReportTest, SetScanResultsReplacesTheWholeList) {
    UpdateScanReport report;
    report.PushScanItem(ItemCalled("old"));
    const std::vector<UpdateScanItem> items = {ItemCalled("new")};
    report.SetScanResults(items);
    EXPECT_EQ(Names(report), (std::vector<std::string>{"new"}));
    EXPECT_EQ(items.front().name, "new");
}

TEST(UpdateScanReportTest, SettingTheListToItselfKeepsIt) {
    UpdateScanReport report;
    report.PushScanItem(ItemCalled("kept"));
    report.SetScanResults(report.GetScanResults());
    EXPECT_EQ(Names(report), (std::vector<std::string>{"kept"}));
}

TEST(UpdateScanReportTest, ChangingACopyLeavesTheSourceUntouched) {
    UpdateScanReport source;
    source.SetOS("os");
    source.SetCheckDevice(true);
    source.PushScanItem(ItemCalled("original"));
    UpdateScanReport copy(source);
    copy.GetScanResults().front().name = "changed";
    copy.SetOS("other");
    EXPECT_EQ(Names(source), (std::vector<std::string>{"original"}));
    EXPECT_EQ(source.GetOS(), "os");
    EXPECT_TRUE(copy.IsCheckDevice());
}

TEST(UpdateScanReportTest, AssignmentCopiesEveryMember) {
    UpdateScanReport source;
    source.SetScope("SN0001");
    source.SetIsPartition(1);
    source.SetScanCount(2);
    source.PushScanItem(ItemCalled("item"));
    UpdateScanReport target;
    target = source;
    EXPECT_EQ(target.GetScope(), "SN0001");
    EXPECT_EQ(target.GetIsPartition(), 1);
    EXPECT_EQ(target.GetScanCount(), 2);
    EXPECT_EQ(Names(target), (std::vector<std::string>{"item"}));
}

}  // namespace
