#include "platform/cim/hypervisor_reader.h"

#include <algorithm>
#include <charconv>

#include "platform/redfish/text_rules.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::cim {
namespace {

constexpr const char* kNameProperties[] = {"Caption", "ElementName", "Name", "OtherTypeDescription",
                                           "Description"};

bool IsHypervisorName(const std::string& text) {
    return redfish::ContainsIgnoringCase(text, "esx");
}

std::string HypervisorName(const CimInstance& system) {
    for (const char* property : kNameProperties) {
        std::string text = system.Text(property);
        if (IsHypervisorName(text)) return text;
    }
    return {};
}

// Guests are operating systems of the same class.
const CimInstance* FindOwn(const CimSnapshot& snapshot) {
    const auto& systems = snapshot.operating_systems;
    const auto found = std::find_if(systems.begin(), systems.end(), [](const CimInstance& system) {
        return !HypervisorName(system).empty();
    });
    if (found != systems.end()) return &*found;
    return systems.size() == 1 ? &systems.front() : nullptr;
}

// CIM_Processor.Family: 256 ARMv7, 257 ARMv8, 258 ARMv9.
std::string ArchitectureOf(const CimSnapshot& snapshot) {
    for (const CimInstance& processor : snapshot.processors) {
        const std::string family = processor.Text("Family");
        if (family == "256" || family == "257" || family == "258") return "aarch64";
    }
    // The hypervisor runs on one other architecture only.
    return "x86_64";
}

}  // namespace

HypervisorFacts ReadHypervisor(const CimSnapshot& snapshot) {
    HypervisorFacts facts;
    const CimInstance* own = FindOwn(snapshot);
    if (own == nullptr) return facts;
    facts.architecture = ArchitectureOf(snapshot);
    facts.version = own->Text("Version");
    facts.os = redfish::FirstOf(
        {HypervisorName(*own), own->Text("Caption"), own->Text("ElementName"), own->Text("Name")});
    const bool is_told = facts.os.find(facts.version) != std::string::npos;
    if (!is_told) facts.os += (facts.os.empty() ? "" : " ") + facts.version;
    return facts;
}

bool HasCimService(std::string_view version) {
    int major = 0;
    const auto [end, error] =
        std::from_chars(version.data(), version.data() + version.size(), major);
    return error != std::errc() || major <= kLastMajorReleaseWithCim;
}

std::string ReadProductVersion(std::string_view body) {
    const std::size_t about = body.find("<about>");
    const std::size_t end = body.find("</about>");
    if (about == std::string_view::npos || end == std::string_view::npos || end < about) return {};
    const std::string_view facts = body.substr(about, end - about);
    constexpr std::string_view kOpen = "<version>";
    const std::size_t start = facts.find(kOpen);
    const std::size_t stop = facts.find("</version>");
    if (start == std::string_view::npos || stop == std::string_view::npos || stop < start) {
        return {};
    }
    return transport::CleanText(facts.substr(start + kOpen.size(), stop - start - kOpen.size()));
}

}  // namespace Vantix::cim
