// The pages in which SCSI disks tell what they are. Pure: bytes in, values out.
//
// Deliberately not here: where the bytes come from, and what counts as a disk of this machine.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::disk {

/// Standard INQUIRY data (SPC-4, 6.4.2); texts are clean.
struct InquiryData {
    int device_type = 0;
    std::string vendor, model, revision;
};

/// Nothing when the data end before the revision.
[[nodiscard]] std::optional<InquiryData> ReadInquiry(std::string_view bytes);

/// Unit Serial Number page (SPC-4, 80h). Empty when the page is another one or shorter than it
/// says: half a serial number is a wrong one.
[[nodiscard]] std::string ReadSerialPage(std::string_view page);

/// Device Identification page (SPC-4, 83h): how the logical unit is named. What is cut off at the
/// end of the page is left out.
struct UnitNames {
    std::vector<int> naa_formats;  ///< first digit of each NAA name: 5 registered, 6 extended
    std::string t10_name;          ///< maker and what the maker put behind it; clean
};
[[nodiscard]] UnitNames ReadNamesPage(std::string_view page);

/// What the ATA drive behind a translation layer says itself, in the ATA Information page (SAT-4,
/// 89h). Its texts are longer than those of the translation: 40, 8 and 20 characters.
struct AtaTexts {
    std::string model, firmware, serial;
};

/// Nothing when the page is another one, is cut before the model, or holds no ATA drive's data.
[[nodiscard]] std::optional<AtaTexts> ReadAtaPage(std::string_view page);

}  // namespace Vantix::disk
