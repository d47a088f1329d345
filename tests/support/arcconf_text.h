// What arcconf prints, in the manner of its releases, for invented controllers and disks.
#pragma once

#include <string>
#include <vector>

namespace test_support::arcconf {

inline const std::string kRule(70, '-');
inline const char* const kDone = "\n\nCommand completed successfully.\n";

inline std::string Banner(int controllers) {
    return "Controllers found: " + std::to_string(controllers) + "\n";
}

inline std::string Title(const std::string& text) {
    return kRule + "\n" + text + "\n" + kRule + "\n";
}

inline std::string Subtitle(const std::string& text) {
    const std::string rule = "   " + std::string(56, '-') + "\n";
    return rule + "   " + text + "\n" + rule;
}

/// "   Key                 : Value"
inline std::string Pair(const std::string& key, const std::string& value, int indent = 3,
                        std::size_t colon = 44) {
    std::string line(static_cast<std::size_t>(indent), ' ');
    line += key;
    if (line.size() < colon) line.append(colon - line.size(), ' ');
    return line + " : " + value + "\n";
}

/// The answer to "list": each entry the fields behind "Controller N:".
inline std::string List(const std::vector<std::string>& controllers) {
    std::string text = Banner(static_cast<int>(controllers.size())) +
                       Title("Controller information") +
                       "   Controller ID             : Status, Slot, Mode, Name, SerialNumber, "
                       "WWN\n" +
                       kRule + "\n";
    for (std::size_t i = 0; i < controllers.size(); ++i) {
        text +=
            "   Controller " + std::to_string(i + 1) + ":             : " + controllers[i] + "\n";
    }
    return text + kDone;
}

/// The answer to "getconfig N AD".
inline std::string Adapter(const std::string& pci_address, const std::string& firmware,
                           int controllers = 1) {
    return Banner(controllers) + Title("Controller information") +
           Pair("Controller Model", "Fake RAID 4711") +
           Pair("PCI Address (Domain:Bus:Device:Function)", pci_address) +
           Subtitle("Controller Version Information") + Pair("Firmware", firmware) +
           Pair("Driver", "Linux 0.1") + Subtitle("Battery Information") +
           Pair("Firmware", "not-this-one") + kDone;
}

/// One disk among the devices of "getconfig N PD".
inline std::string Disk(int number, const std::string& vendor, const std::string& model,
                        const std::string& firmware, const std::string& serial,
                        const std::string& location) {
    return "      Device #" + std::to_string(number) + "\n         Device is a Hard drive\n" +
           Pair("State", "Online", 9) + Pair("Reported Location", location, 9) +
           Pair("Vendor", vendor, 9) + Pair("Model", model, 9) + Pair("Firmware", firmware, 9) +
           Pair("Serial number", serial, 9);
}

inline std::string Enclosure(int number) {
    return "   Channel #2:\n      Device #" + std::to_string(number) +
           "\n         Device is an Enclosure Services Device\n" + Pair("Vendor", "FAKE", 9) +
           Pair("Model", "Virtual SGPIO", 9) + Pair("Firmware", "9.99", 9);
}

/// The answer to "getconfig N PD".
inline std::string Devices(const std::string& devices, int controllers = 1) {
    return Banner(controllers) + Title("Physical Device information") + "   Channel #0:\n" +
           devices + kDone;
}

}  // namespace test_support::arcconf
