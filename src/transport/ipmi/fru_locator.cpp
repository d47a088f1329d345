#include "transport/ipmi/fru_locator.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "transport/ipmi/hex_text.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::uint32_t kControllerAddress = 0x20;

struct Record {
    FruLocator locator;
    bool has_id = false;
    bool is_of_controller = true;
};

std::optional<std::uint32_t> ParseDecimal(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return {};
    return number;
}

/// "20h"
std::optional<std::uint32_t> ParseWithH(std::string_view text) {
    if (text.empty() || (text.back() != 'h' && text.back() != 'H')) return {};
    text.remove_suffix(1);
    return ParseHex(text, 0xff);
}

/// "10.1 (Power Supply)"
void TakeEntity(std::string_view text, FruLocator& locator) {
    const std::string_view numbers = text.substr(0, std::min(text.find(' '), text.size()));
    const std::size_t dot = numbers.find('.');
    if (dot == std::string_view::npos) return;
    locator.entity_id = ParseDecimal(numbers.substr(0, dot)).value_or(0);
    locator.entity_instance = ParseDecimal(numbers.substr(dot + 1)).value_or(0);
}

void TakeLine(std::string_view key, const std::string& value, Record& record) {
    if (key == "Entity ID") {
        TakeEntity(value, record.locator);
    } else if (key == "Device Access Address") {
        record.is_of_controller = ParseWithH(value) == kControllerAddress;
    } else if (key == "Logical FRU Device") {
        const auto id = ParseWithH(value);
        record.has_id = id.has_value();
        record.locator.fru_id = static_cast<std::uint8_t>(id.value_or(0));
    }
}

void Keep(const Record& record, std::vector<FruLocator>& locators) {
    if (!record.has_id || !record.is_of_controller) return;
    const bool is_known = std::any_of(
        locators.begin(), locators.end(),
        [&](const FruLocator& locator) { return locator.fru_id == record.locator.fru_id; });
    if (!is_known) locators.push_back(record.locator);
}

}  // namespace

std::vector<FruLocator> ParseFruLocators(std::string_view text) {
    std::vector<FruLocator> locators;
    Record record;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        const std::string key = CleanText(line.substr(0, colon));
        const std::string value = CleanText(line.substr(colon + 1));
        if (key == "Device ID") {
            Keep(record, locators);
            record = Record();
            record.locator.name = value;
        } else {
            TakeLine(key, value, record);
        }
    }
    Keep(record, locators);
    return locators;
}

}  // namespace Vantix::transport
