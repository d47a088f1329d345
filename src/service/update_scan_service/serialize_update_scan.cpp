#include "service/update_scan_service/serialize_update_scan.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <fstream>
#include <locale>

#include "common/files/file_path.h"
#include "common/result/result_codes.h"

namespace service {

const std::string SerializeScanReport::TAG_SCAN = "SCAN";
const std::string SerializeScanReport::TAG_XMLVERSION = "SCAN.XMLVERSION";
const std::string SerializeScanReport::TAG_MT = "SCAN.CONTENT.MT";
const std::string SerializeScanReport::TAG_SN = "SCAN.CONTENT.SN";
const std::string SerializeScanReport::TAG_BMC_TYPE = "SCAN.CONTENT.BMCTYPE";
const std::string SerializeScanReport::TAG_BMCRELEASENAME = "SCAN.CONTENT.BMCRELEASENAME";
const std::string SerializeScanReport::TAG_OS = "SCAN.CONTENT.OS";
const std::string SerializeScanReport::TAG_OS_MINVERSION = "SCAN.CONTENT.OSMINVERSION";
const std::string SerializeScanReport::TAG_ARCH = "SCAN.CONTENT.ARCH";
const std::string SerializeScanReport::TAG_ISPARTITION = "SCAN.CONTENT.ISPARTITION";
const std::string SerializeScanReport::TAG_TOTAL = "SCAN.CONTENT.TOTAL";
const std::string SerializeScanReport::TAG_SWITCHDOWNSTREAM = "SCAN.CONTENT.HASSWITCHDOWNSTREAM";
const std::string SerializeScanReport::TAG_PACKAGES = "SCAN.CONTENT.PACKAGES";
const std::string SerializeScanReport::TAG_PACKAGE = "SCAN.CONTENT.PACKAGES.PACKAGE";
const std::string SerializeScanReport::TAG_NAME = "NAME";
const std::string SerializeScanReport::TAG_SOFTWAREID = "SOFTWAREID";
const std::string SerializeScanReport::TAG_VERSION = "VERSION";
const std::string SerializeScanReport::TAG_CLASSIFICATION = "CLASSIFICATION";
const std::string SerializeScanReport::TAG_DESCRIPTION = "DESCRIPTION";
const std::string SerializeScanReport::TAG_INSTANCEID = "INSTANCEID";
const std::string SerializeScanReport::TAG_SLOTNUM = "SLOTNUM";
const std::string SerializeScanReport::TAG_SLOTTYPE = "SLOTTYPE";
const std::string SerializeScanReport::TAG_PLDM = "AGENTLESSSUPPORT";
const std::string SerializeScanReport::TAG_PLDM_OLD = "PLDMUPDATE";
const std::string SerializeScanReport::TAG_HASDEVICE = "HASDEVICE";
const std::string SerializeScanReport::TAG_PUREVERSION = "XMLVERSION";  // kept: no key of its own
const std::string SerializeScanReport::TAG_TARSEL = "tarsel";

namespace {

using boost::property_tree::ptree;
using Tags = SerializeScanReport;

// Numbers go through std::to_string everywhere here: the tree's own conversion follows the global
// locale and would group digits.
void PutHeader(const UpdateScanReport& report, ptree& tree) {
    tree.put(Tags::TAG_XMLVERSION, report.GetXmlVersion());
    tree.put(Tags::TAG_MT, report.GetMT());
    tree.put(Tags::TAG_SN, report.GetScope());
    tree.put(Tags::TAG_BMC_TYPE, report.GetBmcType());
    tree.put(Tags::TAG_BMCRELEASENAME, report.GetBmcReleaseName());
    tree.put(Tags::TAG_OS, report.GetOS());
    tree.put(Tags::TAG_OS_MINVERSION, report.GetOSMinorVersion());
    tree.put(Tags::TAG_ARCH, report.GetArch());
    tree.put(Tags::TAG_ISPARTITION, std::to_string(report.GetIsPartition()));
    tree.put(Tags::TAG_TOTAL, std::to_string(report.GetScanCount()));
    tree.put(Tags::TAG_SWITCHDOWNSTREAM, report.GetSwitchDownstreamDevices());
}

void AddText(ptree& package, const std::string& tag, const std::string& text) {
    package.push_back({tag, ptree()})->second.data() = text;
}

void FillPackage(const UpdateScanItem& item, ptree& package) {
    AddText(package, Tags::TAG_NAME, item.name);
    AddText(package, Tags::TAG_SOFTWAREID, item.softwareId);
    AddText(package, Tags::TAG_VERSION, item.version);
    AddText(package, Tags::TAG_CLASSIFICATION, item.classification);
    AddText(package, Tags::TAG_DESCRIPTION, item.description);
    AddText(package, Tags::TAG_INSTANCEID, item.instanceId);
    AddText(package, Tags::TAG_SLOTNUM, item.slotNum);
    AddText(package, Tags::TAG_SLOTTYPE, item.slotType);
    AddText(package, Tags::TAG_PLDM, item.pldm);
    AddText(package, Tags::TAG_HASDEVICE, std::to_string(item.hasDevice));
}

// Looked up once for all packages: a path per package would search the tree again for each.
ptree& PackagesNode(ptree& tree) {
    if (const auto existing = tree.get_child_optional(Tags::TAG_PACKAGES)) return *existing;
    return tree.put_child(Tags::TAG_PACKAGES, ptree());
}

void WriteTree(const ptree& tree, std::ostream& out) {
    const auto settings =
        boost::property_tree::xml_writer_make_settings<std::string>('\t', 1, "utf-8");
    boost::property_tree::write_xml(out, tree, settings);
}

}  // namespace

void SerializeScanReport::AddToPtree(const UpdateScanReport& report, ptree& tree) {
    PutHeader(report, tree);

    const auto& items = report.GetScanResults();
    if (items.empty()) {
        tree.put(TAG_PACKAGES, std::string());
        return;
    }
    const std::string element = TAG_PACKAGE.substr(TAG_PACKAGES.size() + 1);
    ptree& packages = PackagesNode(tree);
    for (const UpdateScanItem& item : items) {
        // Filled where it stands: a finished package would be copied into the tree.
        FillPackage(item, packages.push_back({element, ptree()})->second);
    }
}

int SerializeScanReport::SaveToXml(const UpdateScanReport& report, const std::string& fileName) {
    ptree tree;
    AddToPtree(report, tree);
    try {
        // Binary: the same bytes on every system.
        std::ofstream file(Vantix::FilePath(fileName), std::ios::binary);
        file.imbue(std::locale::classic());
        WriteTree(tree, file);
        // A full disk shows only when the buffer is emptied; the destructor would not tell.
        file.flush();
        file.close();
        return file ? SUCCEED : WRITE_FILE_FAILED;
    } catch (...) {
        return WRITE_FILE_FAILED;
    }
}

}  // namespace service
