// Builds what disks answer: SCSI pages and NVMe Identify data.
#pragma once

#include <cstddef>
#include <string>

namespace disk_test {

inline std::string Padded(std::string text, std::size_t length, char filler = ' ') {
    text.resize(length, filler);
    return text;
}

inline std::string Page(unsigned char code, const std::string& body) {
    std::string page = {'\0', static_cast<char>(code), static_cast<char>(body.size() >> 8U),
                        static_cast<char>(body.size() & 0xffU)};
    return page + body;
}

/// One name of page 83h. `kind`: association and type byte, 0x01 a T10 name, 0x03 an NAA one.
inline std::string Name(unsigned char kind, const std::string& value) {
    return std::string{'\1', static_cast<char>(kind), '\0', static_cast<char>(value.size())} +
           value;
}

/// The text as ATA drives keep it: padded, and the characters of each pair changed over.
inline std::string AtaWords(const std::string& text, std::size_t length) {
    std::string words = Padded(text, length);
    for (std::size_t i = 0; i + 1 < length; i += 2) std::swap(words[i], words[i + 1]);
    return words;
}

/// Page 89h of a drive that answered IDENTIFY DEVICE.
inline std::string AtaPage(const std::string& model, const std::string& firmware,
                           const std::string& serial) {
    std::string identify(512, '\0');
    identify.replace(20, 20, AtaWords(serial, 20));
    identify.replace(46, 8, AtaWords(firmware, 8));
    identify.replace(54, 40, AtaWords(model, 40));
    std::string body(56, '\0');
    body[52] = '\xec';
    return Page(0x89, body + identify);
}

inline std::string InquiryBytes(char type, const std::string& vendor, const std::string& model,
                                const std::string& revision) {
    return std::string(1, type) + std::string(7, '\0') + Padded(vendor, 8) + Padded(model, 16) +
           Padded(revision, 4);
}

inline std::string IdentifyData(const std::string& serial, const std::string& model,
                                const std::string& firmware) {
    return Padded(
        std::string(4, '\x11') + Padded(serial, 20) + Padded(model, 40) + Padded(firmware, 8), 4096,
        '\0');
}

}  // namespace disk_test
