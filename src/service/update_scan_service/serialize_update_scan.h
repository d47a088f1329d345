// Saves a scan report as the scan XML file, loads it back and prints it as two text tables.
//
// Deliberately not here: what the values mean (the scan paths set them) and cleaning of texts (the
// platform delivers them clean; the writer stays literal).
#pragma once

#include <boost/property_tree/ptree_fwd.hpp>
#include <iosfwd>
#include <string>

#include "common/export.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service {

/// Static members only. Header keys are paths from the document root with '.' as separator; package
/// keys are relative to one package element. All values are part of the file format.
struct TARSEL_EXPORT SerializeScanReport {
    static const std::string TAG_SCAN;
    static const std::string TAG_XMLVERSION;
    static const std::string TAG_MT;
    static const std::string TAG_SN;
    static const std::string TAG_BMC_TYPE;
    static const std::string TAG_BMCRELEASENAME;
    static const std::string TAG_OS;
    static const std::string TAG_OS_MINVERSION;
    static const std::string TAG_ARCH;
    static const std::string TAG_ISPARTITION;
    static const std::string TAG_TOTAL;
    static const std::string TAG_SWITCHDOWNSTREAM;
    static const std::string TAG_PACKAGES;
    static const std::string TAG_PACKAGE;
    static const std::string TAG_NAME;
    static const std::string TAG_SOFTWAREID;
    static const std::string TAG_VERSION;
    static const std::string TAG_CLASSIFICATION;
    static const std::string TAG_DESCRIPTION;
    static const std::string TAG_INSTANCEID;
    static const std::string TAG_SLOTNUM;
    static const std::string TAG_SLOTTYPE;
    static const std::string TAG_PLDM;
    static const std::string TAG_PLDM_OLD;  ///< read only; files of older versions
    static const std::string TAG_HASDEVICE;
    static const std::string TAG_PUREVERSION;
    static const std::string TAG_TARSEL;  ///< wrapper element of the inventory file; read only

    /// Puts the header values into `tree` (existing nodes are overwritten) and appends one package
    /// per item behind those that are already there. Exceptions of the tree pass to the caller.
    static void AddToPtree(const UpdateScanReport& report, boost::property_tree::ptree& tree);

    /// Writes the report to `fileName`, in place: an existing file is overwritten and stays what it
    /// was (link, rights). SUCCEED, or WRITE_FILE_FAILED when it cannot be opened or written
    /// completely; a partial file may then remain. Logs nothing.
    [[nodiscard]] static int SaveToXml(const UpdateScanReport& report, const std::string& fileName);

    /// Reads a scan file, or the inventory file that wraps one, into `report`, which is not
    /// cleared: header values are overwritten as they are read, items are appended. Returns
    ///   SUCCEED;
    ///   FILE_NOT_EXIST     no such regular file (logged, and told on standard output);
    ///   READ_FILE_FAILED   the file cannot be opened (logged);
    ///   INVALID_FILE       no XML, or nested too deeply (logged; report untouched); or a required
    ///                      value is missing or no number (told on standard output, not logged;
    ///                      what was read before stays in the report).
    [[nodiscard]] static int LoadFromXml(const std::string& fileName, UpdateScanReport& report);

    /// Prints the platform table and the table of units. Drivers are listed for scan type "dd"
    /// only, those with an adapter id only, and the list ends with dots at the first driver that
    /// would follow 30 rows.
    static void PrintResult(const UpdateScanReport& report, std::ostream& out,
                            const std::string& scanType);

    /// The same on standard output.
    static void PrintResult(const UpdateScanReport& report, const std::string& scanType);
};

}  // namespace service
