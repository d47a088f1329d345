// Any bytes as what a disk answers: read without a crash, and every text that comes out is clean
// and no longer than its field.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/disk/nvme_identity.h"
#include "platform/disk/scsi_pages.h"
#include "platform/disk/storage_queries.h"
#include "platform/disk/udev_record.h"

namespace {

using namespace Vantix::disk;

// A byte that is no text becomes a replacement character of three.
void RequireText(const std::string& text, std::size_t field_length) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
    if (text.size() > field_length * 3) std::abort();
}

void ReadAsScsi(std::string_view bytes) {
    if (const auto inquiry = ReadInquiry(bytes)) {
        RequireText(inquiry->vendor, 8);
        RequireText(inquiry->model, 16);
        RequireText(inquiry->revision, 4);
    }
    if (const auto texts = ReadAtaPage(bytes)) {
        RequireText(texts->model, 40);
        RequireText(texts->firmware, 8);
        RequireText(texts->serial, 20);
    }
    RequireText(ReadSerialPage(bytes), bytes.size());
    const UnitNames names = ReadNamesPage(bytes);
    RequireText(names.t10_name, bytes.size());
    if (names.naa_formats.size() > bytes.size() / 5) std::abort();
}

void ReadAsStorageAnswer(std::string_view bytes) {
    if (const auto device = ReadStorageDevice(bytes)) {
        for (const std::string* text :
             {&device->vendor, &device->model, &device->revision, &device->serial}) {
            RequireText(*text, bytes.size());
        }
    }
    (void)ReadAdapterBus(bytes);
    if (ReadNaaFormats(bytes).size() > bytes.size() / 16) std::abort();
    if (ReadIdentifyData(bytes).size() > bytes.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(data, data + size);
    RequireText(UdevValue(bytes, "ID_REVISION"), size);
    if (const auto identity = ReadIdentifyController(bytes)) {
        RequireText(identity->model, 40);
        RequireText(identity->firmware, 8);
        RequireText(identity->serial, 20);
    }
    ReadAsScsi(bytes);
    ReadAsStorageAnswer(bytes);
    // With a page code that is right, so that what stands behind it is reached.
    for (const char code : {'\x80', '\x83', '\x89'}) {
        if (size < 4) break;
        bytes[1] = code;
        if (size > 56) bytes[56] = '\xec';
        ReadAsScsi(bytes);
    }
    return 0;
}
