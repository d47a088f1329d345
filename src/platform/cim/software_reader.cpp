#include "platform/cim/software_reader.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "platform/redfish/slot_rules.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::cim {

using VantixOptions::SoftwareIdentity_;

namespace {

constexpr const char* kCurrent = "2";

using TextMember = std::string SoftwareIdentity_::*;
constexpr std::pair<const char*, TextMember> kTexts[] = {
    {"Description", &SoftwareIdentity_::Description},
    {"ElementName", &SoftwareIdentity_::ElementName},
    {"ProductName", &SoftwareIdentity_::ProductName},
    {"Manufacturer", &SoftwareIdentity_::Manufacturer},
    {"Caption", &SoftwareIdentity_::Caption},
    {"Classifications", &SoftwareIdentity_::Classifications},
    {"ClassificationDescriptions", &SoftwareIdentity_::ClassificationDescriptions},
    {"IdentityInfoValue", &SoftwareIdentity_::IdentityInfoValue},
    {"IdentityInfoType", &SoftwareIdentity_::IdentityInfoType},
    {"TargetOperatingSystems", &SoftwareIdentity_::TargetOperatingSystems},
    {"SubDeviceID", &SoftwareIdentity_::SubDeviceID},
    {"SoftwareStatus", &SoftwareIdentity_::SoftwareStatus},
    {"SoftwareRole", &SoftwareIdentity_::SoftwareRole},
    {"InstanceID", &SoftwareIdentity_::InstanceID},
    {"AssociatedAdapterSlot", &SoftwareIdentity_::AssociatedAdapterSlot},
    {"LastUpdateError", &SoftwareIdentity_::LastUpdateError},
    {"LastUpdateErrorString", &SoftwareIdentity_::LastUpdateErrorString},
    {"SerialNumber", &SoftwareIdentity_::SerialNumber},
    {"PartNumber", &SoftwareIdentity_::PartNumber},
};

bool IsTrue(const std::string& text) {
    return redfish::Lower(text) == "true";
}

std::string VersionOf(const CimInstance& instance) {
    const std::string text = instance.Text("VersionString");
    if (!redfish::IsNoVersion(text)) return text;
    const bool is_large = IsTrue(instance.Text("IsLargeBuildNumber"));
    std::string version;
    for (const char* part : {"MajorVersion", "MinorVersion", "RevisionNumber",
                             is_large ? "LargeBuildNumber" : "BuildNumber"}) {
        const std::string number = instance.Text(part);
        if (number.empty()) break;
        version += (version.empty() ? "" : ".") + number;
    }
    return version;
}

// IdentityInfoType is "<organisation>:<kind>"; the kind tells which value is the identifier.
std::string SoftwareIdOf(const CimInstance& instance) {
    const std::string own = instance.Text("SoftwareID");
    if (!own.empty()) return own;
    const auto& types = instance.Values("IdentityInfoType");
    const auto& values = instance.Values("IdentityInfoValue");
    for (std::size_t at = 0; at < std::min(types.size(), values.size()); ++at) {
        const std::string type = redfish::Lower(types[at]);
        const std::string kind = type.substr(type.rfind(':') + 1);
        if (kind == "softwareid" && !values[at].empty()) return values[at];
    }
    return redfish::FirstOf({values.empty() ? "" : values.front(), instance.Text("ElementName"),
                             instance.Text("InstanceID")});
}

std::string FlagOf(const CimInstance& instance) {
    const std::string text = redfish::Lower(instance.Text("IsPLDMUpdateSupported"));
    if (text == "true" || text == "1") return "1";
    return text == "false" || text == "0" ? "0" : "";
}

// An adapter that names its slot without the slot's kind stands in an expansion slot.
std::int32_t SlotTypeOf(const CimInstance& instance) {
    const std::string text = instance.Text("SlotType");
    std::int32_t type = redfish::kSlotOnBoard;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), type);
    if (result.ec == std::errc()) return type;
    const bool has_slot = !instance.Text("AssociatedAdapterSlot").empty();
    return has_slot ? redfish::kSlotPcie : redfish::kSlotOnBoard;
}

bool SaysNotInstalled(const CimInstance& instance) {
    for (const char* property : {"InstanceID", "Status", "SoftwareStatus"}) {
        const auto words = redfish::Words(instance.Text(property));
        if (redfish::HasAnyWord(
                words, {"previous", "available", "staged", "pending", "next", "rollback"})) {
            return true;
        }
    }
    return false;
}

bool IsCurrent(const CimInstance& element_software) {
    const auto& status = element_software.Values("ElementSoftwareStatus");
    return status.empty() || std::find(status.begin(), status.end(), kCurrent) != status.end();
}

class InstalledRule {
  public:
    explicit InstalledRule(const CimSnapshot& snapshot)
        : has_installed_(!snapshot.installed.empty()),
          has_element_(!snapshot.element_software.empty()) {
        for (const CimInstance& entry : snapshot.installed) {
            named_.insert(entry.Reference("InstalledSoftware"));
        }
        if (has_installed_) return;
        for (const CimInstance& entry : snapshot.element_software) {
            if (IsCurrent(entry)) named_.insert(entry.Reference("Antecedent"));
        }
    }

    // Why the instance is not installed; empty when it is.
    [[nodiscard]] std::string Reason(const CimInstance& instance, const std::string& key) const {
        if (SaysNotInstalled(instance)) return "says so itself";
        if (!has_installed_ && !has_element_) return {};
        return named_.count(key) != 0 ? "" : "no association names it as installed";
    }

  private:
    const bool has_installed_;
    const bool has_element_;
    std::set<std::string> named_;
};

}  // namespace

std::string KeyOf(const CimInstance& instance) {
    const std::string key = KeyText(instance.name);
    const std::string id = instance.Text("InstanceID");
    return key.empty() && !id.empty() ? "=" + id : key;
}

std::string DateOf(std::string_view text) {
    constexpr std::size_t kSeconds = 14;
    const bool is_datetime =
        text.size() > kSeconds && text[kSeconds] == '.' &&
        text.substr(0, kSeconds).find_first_not_of("0123456789") == std::string_view::npos;
    if (!is_datetime) return std::string(text);
    std::string date(text.substr(0, 4));
    date.append("-").append(text.substr(4, 2)).append("-").append(text.substr(6, 2));
    return date;
}

SoftwareIdentity_ ReadSoftwareIdentity(const CimInstance& instance) {
    SoftwareIdentity_ identity;
    for (const auto& [property, member] : kTexts) identity.*member = instance.Text(property);
    identity.Name = redfish::FirstOf(
        {instance.Text("Name"), instance.Text("ElementName"), instance.Text("Caption")});
    identity.VersionString = VersionOf(instance);
    identity.SoftwareID = SoftwareIdOf(instance);
    identity.ReleaseDate = DateOf(instance.Text("ReleaseDate"));
    identity.IsPLDMUpdateSupported = FlagOf(instance);
    identity.SlotType = SlotTypeOf(instance);
    return identity;
}

CimInventory ReadSoftware(const CimSnapshot& snapshot) {
    const InstalledRule rule(snapshot);
    CimInventory inventory;
    std::set<std::string> seen;
    for (const CimInstance& instance : snapshot.software) {
        std::string key = KeyOf(instance);
        if (!key.empty() && !seen.insert(key).second) continue;
        SoftwareIdentity_ identity = ReadSoftwareIdentity(instance);
        const std::string reason = rule.Reason(instance, key);
        if (!reason.empty()) {
            inventory.not_installed.push_back(
                redfish::FirstOf({identity.InstanceID, identity.Name}) + ": " + reason);
            continue;
        }
        inventory.without_version += identity.VersionString.empty() ? 1 : 0;
        inventory.identities.push_back(std::move(identity));
        inventory.keys.push_back(std::move(key));
    }
    return inventory;
}

}  // namespace Vantix::cim
