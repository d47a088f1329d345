#include "transport/cim_xml/cim_types.h"

#include <algorithm>

namespace Vantix::transport {
namespace {

// ASCII only: the result must not follow the locale.
char LowerOf(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool IsLess(char left, char right) {
    return LowerOf(left) < LowerOf(right);
}

}  // namespace

bool CimNameLess::operator()(std::string_view left, std::string_view right) const {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        IsLess);
}

bool IsSameCimName(std::string_view left, std::string_view right) {
    const CimNameLess less;
    return !less(left, right) && !less(right, left);
}

std::string KeyText(const CimInstanceName& name) {
    // A sole key may come without its name on one side of an association.
    if (name.keys.size() == 1) return "=" + name.keys.begin()->second.text;
    std::string text;
    for (const auto& [key, value] : name.keys) {
        std::transform(key.begin(), key.end(), std::back_inserter(text), LowerOf);
        text += "=" + value.text + "\n";
    }
    return text;
}

std::string CimInstance::Text(std::string_view property) const {
    const auto& values = Values(property);
    return values.empty() ? std::string() : values.front();
}

const std::vector<std::string>& CimInstance::Values(std::string_view property) const {
    static const std::vector<std::string> kNone;
    const auto found = properties.find(property);
    return found == properties.end() ? kNone : found->second;
}

std::string CimInstance::Reference(std::string_view property) const {
    const auto found = references.find(property);
    return found == references.end() ? std::string() : KeyText(found->second);
}

}  // namespace Vantix::transport
