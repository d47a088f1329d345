#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "doubles/log_double.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "support/cout_capture.h"
#include "support/golden_file.h"
#include "support/grouping_locale.h"
#include "support/item_builder.h"

namespace {

using service::SerializeScanReport;
using service::UpdateScanItem;
using service::UpdateScanReport;
using test_support::AnItem;

using Lines = std::vector<std::string>;

std::string Printed(const UpdateScanReport& report, const std::string& scan_type) {
    std::ostringstream out;
    SerializeScanReport::PrintResult(report, out, scan_type);
    return out.str();
}

// The rows of the result table: what follows its rule, without empty lines.
Lines Rows(const UpdateScanReport& report, const std::string& scan_type) {
    std::istringstream text(Printed(report, scan_type));
    Lines rows;
    bool in_rows = false;
    bool in_results = false;
    for (std::string line; std::getline(text, line);) {
        if (in_rows && !line.empty()) rows.push_back(line);
        in_results = in_results || line == "Scan Result";
        in_rows = in_rows || (in_results && line.starts_with("---"));
    }
    return rows;
}

// The rows with every run of blanks made one: content without layout.
Lines PlainRows(const UpdateScanReport& report, const std::string& scan_type) {
    Lines rows = Rows(report, scan_type);
    for (std::string& row : rows) {
        std::istringstream words(row);
        row.clear();
        for (std::string word; words >> word;) row += (row.empty() ? "" : " ") + word;
    }
    return rows;
}

UpdateScanReport ReportOf(const std::vector<UpdateScanItem>& items) {
    UpdateScanReport report;
    report.SetScanResults(items);
    return report;
}

std::string SlotOf(const std::string& number, const std::string& type) {
    const Lines rows =
        PlainRows(ReportOf({AnItem().Name("unit").Version("version").Slot(number, type)}), "fw");
    const std::string begin = "1 unit ";
    const std::string end = " version";
    if (rows.size() != 1 || !rows[0].starts_with(begin) || !rows[0].ends_with(end)) return "no row";
    return rows[0].substr(begin.size(), rows[0].size() - begin.size() - end.size());
}

TEST(PrintResultTest, EmptyReportPrintsBothTables) {
    EXPECT_EQ(Printed(UpdateScanReport(), "fw"),
              "Platform Information\n"
              "Machine Type    BMC Type    OS\n"
              "------------------------------\n"
              "\n"
              "\n"
              "Scan Result\n"
              "No.    Updatable Unit    Slot    Installed Version\n"
              "--------------------------------------------------\n"
              "\n");
}

TEST(PrintResultTest, TablesOfAnInventedServerLineUp) {
    UpdateScanReport report;
    report.SetMT("9XQ1");
    report.SetBmcType("Tavro");
    report.SetOS("None");
    report.PushScanItem(AnItem().Name("BMC (Primary)").Version("2.10 (build EX21A)"));
    report.PushScanItem(AnItem().Name("Adapter caf\xC3\xA9").Version("14.2").Slot("3", "7"));
    report.PushScanItem(AnItem().Name("Drive").Version("A1").Slot("12", "1"));
    EXPECT_TRUE(test_support::MatchesGoldenFile(Printed(report, "fw"),
                                                TARSEL_GOLDEN_FOLDER "/invented_server.txt"));
}

TEST(PrintResultTest, PlatformTableShowsMachineTypeBmcTypeAndSystem) {
    UpdateScanReport report;
    report.SetMT("9XQ1");
    report.SetBmcType("Ossa2");
    report.SetOS("sles15");
    const std::string text = Printed(report, "fw");
    EXPECT_NE(text.find("9XQ1            Ossa2       sles15\n"), std::string::npos) << text;
}

TEST(PrintResultTest, FirmwareScanListsNoDriverAndLogsNothing) {
    const doubles::LogCapture log;
    const UpdateScanReport report =
        ReportOf({AnItem().AdapterDriver(), AnItem().AdapterDriver().Version("")});
    EXPECT_TRUE(Rows(report, "fw").empty());
    EXPECT_TRUE(log.Records().empty());
}

TEST(PrintResultTest, OnlyDriverScanTypeListsDrivers) {
    const UpdateScanReport report = ReportOf({AnItem().AdapterDriver().Name("driver")});
    EXPECT_EQ(Rows(report, "dd").size(), 1U);
    for (const char* type : {"", "all", "DD", "dd ", "fw"}) {
        EXPECT_TRUE(Rows(report, type).empty()) << type;
    }
}

TEST(PrintResultTest, OnlyExactDriverClassificationIsADriver) {
    const UpdateScanReport report =
        ReportOf({AnItem().Classification("022").Name("a"),
                  AnItem().Classification("22 ").Name("b"), AnItem().Classification("").Name("c")});
    EXPECT_EQ(Rows(report, "fw").size(), 3U);
}

TEST(PrintResultTest, DriverScanTypeListsFirmwareToo) {
    EXPECT_EQ(
        PlainRows(ReportOf({AnItem().Name("firmware"), AnItem().AdapterDriver().Name("driver")}),
                  "dd"),
        (Lines{"1 firmware N/A 1.00", "2 driver N/A 1.00"}));
}

TEST(PrintResultTest, DriverNeedsAnAdapterIdAsAWhole) {
    for (const char* id : {"exampledrv", "_0a1b2c3d", "drv_0a1b2c3", "drv_0a1b2c3g",
                           "drv_0a1b2c3d4", "drv_0a1b2c3d ", "drv-0a1b2c3d", ""}) {
        const doubles::LogCapture log;
        EXPECT_TRUE(Rows(ReportOf({AnItem().AdapterDriver().SoftwareId(id)}), "dd").empty()) << id;
        EXPECT_TRUE(log.Records().empty()) << id;
    }
    for (const char* id : {"d_0a1b2c3d", "a_b_ABCDEF01", "__00000000", "two words_12345678"}) {
        EXPECT_EQ(Rows(ReportOf({AnItem().AdapterDriver().SoftwareId(id)}), "dd").size(), 1U) << id;
    }
}

TEST(PrintResultTest, FortyDriversAreCutAfterThirtyRows) {
    const UpdateScanReport report =
        ReportOf(std::vector<UpdateScanItem>(40, AnItem().AdapterDriver().Name("driver")));
    const Lines rows = PlainRows(report, "dd");
    ASSERT_EQ(rows.size(), 31U);
    EXPECT_EQ(rows[0], "1 driver N/A 1.00");
    EXPECT_EQ(rows[29], "30 driver N/A 1.00");
    EXPECT_EQ(rows[30], "31 ...... ...... ......");
}

TEST(PrintResultTest, ThirtyDriversAreNotCut) {
    const UpdateScanReport report =
        ReportOf(std::vector<UpdateScanItem>(30, AnItem().AdapterDriver()));
    EXPECT_EQ(Rows(report, "dd").size(), 30U);
}

TEST(PrintResultTest, NothingFollowsTheDots) {
    std::vector<UpdateScanItem> items(31, AnItem().AdapterDriver());
    items.push_back(AnItem().Name("firmware"));
    EXPECT_EQ(PlainRows(ReportOf(items), "dd").back(), "31 ...... ...... ......");
}

TEST(PrintResultTest, FirmwareRowsCountTowardsTheLimit) {
    std::vector<UpdateScanItem> items(35, AnItem().Name("firmware"));
    items.push_back(AnItem().AdapterDriver());
    const Lines rows = PlainRows(ReportOf(items), "dd");
    ASSERT_EQ(rows.size(), 36U);
    EXPECT_EQ(rows.back(), "36 ...... ...... ......");
}

TEST(PrintResultTest, FirmwareAloneIsNeverCut) {
    EXPECT_EQ(Rows(ReportOf(std::vector<UpdateScanItem>(100, AnItem())), "dd").size(), 100U);
}

TEST(PrintResultTest, DriverThatIsNotListedDoesNotEndTheList) {
    std::vector<UpdateScanItem> items(30, AnItem());
    items.push_back(AnItem().AdapterDriver().SoftwareId("no adapter"));
    items.push_back(AnItem().Name("last"));
    EXPECT_EQ(PlainRows(ReportOf(items), "dd").back(), "31 last N/A 1.00");
}

TEST(PrintResultTest, DriverWithEmptyVersionBeyondTheLimitStillShowsTheDots) {
    std::vector<UpdateScanItem> items(30, AnItem());
    items.push_back(AnItem().AdapterDriver().Version(""));
    EXPECT_EQ(PlainRows(ReportOf(items), "dd").back(), "31 ...... ...... ......");
}

TEST(PrintResultTest, SlotTypesHaveTheirNames) {
    const Lines names = {"ONBOARD",         "Drive_Bay", "PSU_Slot",         "PCI_Slot",
                         "AEP_Slot",        "M2_Bay",    "7mm_Bay",          "PCIe_Slot",
                         "Retimer_SLOT",    "OCP_SLOT",  "Retimer_CFF_SLOT", "Retimer_Riser_SLOT",
                         "Retimer_OCP_SLOT"};
    for (std::size_t type = 0; type < names.size(); ++type) {
        EXPECT_EQ(SlotOf("2", std::to_string(type)), names[type] + " 2");
    }
}

TEST(PrintResultTest, UnknownSlotTypeShowsTheNumberAlone) {
    for (const char* type : {"13", "-1", "99999999999999999999", "-99999999999999999999"}) {
        EXPECT_EQ(SlotOf("2", type), "2") << type;
    }
}

TEST(PrintResultTest, SlotTypeWithoutNumberCountsAsOnboard) {
    EXPECT_EQ(SlotOf("2", ""), "ONBOARD 2");
    EXPECT_EQ(SlotOf("2", "PCI"), "ONBOARD 2");
    EXPECT_EQ(SlotOf("2", " 3x"), "PCI_Slot 2");
}

TEST(PrintResultTest, EmptySlotNumberShowsNotAvailableWhateverItsType) {
    for (const char* type : {"", "0", "3", "13"}) EXPECT_EQ(SlotOf("", type), "N/A");
}

TEST(PrintResultTest, ItemWithoutVersionTakesNoNumber) {
    EXPECT_EQ(PlainRows(ReportOf({AnItem().Name("a"), AnItem().Name("b").Version(""),
                                  AnItem().Name("c")}),
                        "fw"),
              (Lines{"1 a N/A 1.00", "2 c N/A 1.00"}));
}

TEST(PrintResultTest, ItemsWithoutNameOrVersionAreLogged) {
    const doubles::LogCapture log;
    Rows(ReportOf({AnItem().Name("b").Version("").Slot("3", "3"), AnItem().Name("")}), "fw");
    EXPECT_EQ(log.Texts(4),
              (Lines{"Ignore empty item: b|PCI_Slot 3|", "Ignore empty item: |N/A|1.00"}));
    EXPECT_EQ(log.Records().front().source,
              "..\\..\\Src\\service\\update_scan_service\\serialize_update_scan");
}

TEST(PrintResultTest, RowNumbersFollowNoLocale) {
    const test_support::GlobalGroupingLocale grouping;
    const UpdateScanReport report = ReportOf(std::vector<UpdateScanItem>(1000, AnItem().Name("x")));
    EXPECT_EQ(PlainRows(report, "fw").back(), "1000 x N/A 1.00");
}

TEST(PrintResultTest, OverloadWithoutStreamPrintsToStandardOutput) {
    const UpdateScanReport report = ReportOf({AnItem()});
    const test_support::CoutCapture console;
    SerializeScanReport::PrintResult(report, "fw");
    EXPECT_EQ(console.Text(), Printed(report, "fw"));
}

}  // namespace
