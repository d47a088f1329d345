// What the cases of loading a scan file have in common: pieces of scan XML, and a loader that keeps
// log and console.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "doubles/log_double.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "support/cout_capture.h"
#include "support/temporary_folder.h"

namespace scan_xml_reader {

using service::SerializeScanReport;
using service::UpdateScanReport;

inline constexpr char kLogSource[] =
    "..\\..\\Src\\service\\update_scan_service\\serialize_update_scan";

using Lines = std::vector<std::string>;

inline std::string Element(const std::string& tag, const std::string& text) {
    return "<" + tag + ">" + text + "</" + tag + ">";
}

// The text elements of a package that every file has.
inline std::string Package(const std::string& software_id, const std::string& more = "") {
    return Element("PACKAGE", Element("NAME", "n") + Element("SOFTWAREID", software_id) +
                                  Element("VERSION", "v") + Element("CLASSIFICATION", "10") +
                                  Element("DESCRIPTION", "d") + more);
}

inline const std::string kHeader =
    "<BMCTYPE>Tavro</BMCTYPE><MT>9XQ1</MT><OS>None</OS><OSMINVERSION></OSMINVERSION><ARCH>None</"
    "ARCH>"
    "<SN>EXAMPLE0001</SN><ISPARTITION>0</ISPARTITION><TOTAL>3</TOTAL>";

inline std::string ScanXml(const std::string& content) {
    return Element("SCAN", "<XMLVERSION>1.0</XMLVERSION>" + Element("CONTENT", content));
}

inline std::string ScanXmlWithPackages(const std::string& packages) {
    return ScanXml(kHeader + Element("PACKAGES", packages));
}

inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return place == std::string::npos ? text : text.replace(place, from.size(), to);
}

// The text with the element `tag` under another name, as if it were missing.
inline std::string Renamed(const std::string& xml, const std::string& tag) {
    return Replaced(Replaced(xml, "<" + tag + ">", "<GONE>"), "</" + tag + ">", "</GONE>");
}

class ScanXmlReaderTest : public testing::Test {
  protected:
    int LoadPath(const std::string& path) {
        const test_support::CoutCapture console;
        const int code = SerializeScanReport::LoadFromXml(path, report_);
        console_ = console.Text();
        return code;
    }

    int Load(const std::string& xml) { return LoadPath(folder_.Write("scan.xml", xml)); }

    // The agentless flag of one package with these elements.
    std::string LoadedPldm(const std::string& software_id, const std::string& elements) {
        EXPECT_EQ(Load(ScanXmlWithPackages(Package(software_id, elements))), SUCCEED);
        return report_.GetScanResults().empty() ? "none" : report_.GetScanResults().back().pldm;
    }

    test_support::TemporaryFolder folder_;
    doubles::LogCapture log_;
    UpdateScanReport report_;
    std::string console_;
};

}  // namespace scan_xml_reader
