#include <array>
#include <boost/regex.hpp>
#include <cstdlib>
#include <iostream>
#include <string>

#include "platform/log/log.h"
#include "platform/table/table.h"
#include "service/update_scan_service/scan_log_source.h"
#include "service/update_scan_service/serialize_update_scan.h"

namespace service {

namespace {

constexpr int kRowLogDetail = 4;
constexpr int kMaxRows = 30;
constexpr std::uint64_t kColumnPadding = 4;
constexpr char kDriverClassification[] = "22";
constexpr char kDriverScanType[] = "dd";
constexpr char kDots[] = "......";

// Indexed by the numeric value of an item's slot type.
constexpr std::array kSlotTypeNames = {"ONBOARD",         "Drive_Bay",        "PSU_Slot",
                                       "PCI_Slot",        "AEP_Slot",         "M2_Bay",
                                       "7mm_Bay",         "PCIe_Slot",        "Retimer_SLOT",
                                       "OCP_SLOT",        "Retimer_CFF_SLOT", "Retimer_Riser_SLOT",
                                       "Retimer_OCP_SLOT"};

bool IsAdapterId(const std::string& software_id) {
    static const boost::regex pattern("(.+)_([0-9a-fA-F]{8})");
    return boost::regex_match(software_id, pattern);
}

std::string SlotCell(const UpdateScanItem& item) {
    if (item.slotNum.empty()) return "N/A";
    // Text that is no number counts as 0, as the slot types of old files do.
    const long type = std::strtol(item.slotType.c_str(), nullptr, 10);
    if (type < 0 || type >= static_cast<long>(kSlotTypeNames.size())) return item.slotNum;
    return std::string(kSlotTypeNames[static_cast<std::size_t>(type)]) + " " + item.slotNum;
}

void PrintPlatformTable(const UpdateScanReport& report, std::ostream& out) {
    TableSerializer table(3, "Platform Information", kColumnPadding);
    table.sstream() << "Machine Type"
                    << "BMC Type"
                    << "OS";
    table.sstream() << report.GetMT() << report.GetBmcType() << report.GetOS();
    table.PrintTable(out);
}

// The rows of the result table, in the order of the items.
class ResultRows {
  public:
    ResultRows(TableStream& cells, const std::string& scan_type)
        : cells_(cells), drivers_wanted_(scan_type == kDriverScanType) {}

    // False when the list ends here.
    bool Add(const UpdateScanItem& item) {
        if (item.classification != kDriverClassification) {
            AddRow(item);
            return true;
        }
        if (!drivers_wanted_ || !IsAdapterId(item.softwareId)) return true;
        if (count_ >= kMaxRows) {
            cells_ << count_ + 1 << kDots << kDots << kDots;
            return false;
        }
        AddRow(item);
        return true;
    }

  private:
    void AddRow(const UpdateScanItem& item) {
        const std::string slot = SlotCell(item);
        if (item.name.empty() || item.version.empty()) {
            Vantix::Log(kRowLogDetail, kSerializeLogSource, __LINE__).Stream()
                << "Ignore empty item: " << item.name << "|" << slot << "|" << item.version;
            return;
        }
        ++count_;
        cells_ << count_ << item.name << slot << item.version;
    }

    TableStream& cells_;
    bool drivers_wanted_;
    int count_ = 0;
};

}  // namespace

void SerializeScanReport::PrintResult(const UpdateScanReport& report, std::ostream& out,
                                      const std::string& scanType) {
    PrintPlatformTable(report, out);

    TableSerializer table(4, "Scan Result", kColumnPadding);
    table.sstream() << "No."
                    << "Updatable Unit"
                    << "Slot"
                    << "Installed Version";
    ResultRows rows(table.sstream(), scanType);
    for (const UpdateScanItem& item : report.GetScanResults()) {
        if (!rows.Add(item)) break;
    }
    table.PrintTable(out);
}

void SerializeScanReport::PrintResult(const UpdateScanReport& report, const std::string& scanType) {
    PrintResult(report, std::cout, scanType);
}

}  // namespace service
