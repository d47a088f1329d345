#include "platform/redfish/enclosure_manager.h"

#include <algorithm>
#include <string>

#include "transport/redfish/json_fields.h"

namespace Vantix::redfish {

namespace json = transport::json;

namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

}  // namespace

bool IsEnclosureManager(RedfishChannel& channel) {
    const auto& root = channel.Root();
    if (!json::Link(root, "Systems").empty()) return false;
    if (Lower(json::Text(root, "Product")).find("enclosure") != std::string::npos) return true;
    const Resource* manager = channel.Managed().manager;
    return manager != nullptr && json::Text(manager->body, "ManagerType") == "EnclosureManager";
}

}  // namespace Vantix::redfish
