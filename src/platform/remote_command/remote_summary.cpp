#include "platform/remote_command/remote_summary.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <pugixml.hpp>
#include <string_view>

#include "platform/remote_command/small_file.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::remote {
namespace {

using transport::CleanStart;
using VantixConnection::SourceState;
using VantixConnection::SourceStateText;
using VantixConnection::SourceStatus;

constexpr std::size_t kMostSources = 100;
constexpr std::size_t kLongestName = 100;
constexpr std::size_t kLongestDetail = 500;
constexpr std::string_view kPartialExitCode = "3";
constexpr std::array kStates = {
    SourceState::kComplete, SourceState::kPartial, SourceState::kUnsupported, SourceState::kDenied,
    SourceState::kTimeout,  SourceState::kFailed,  SourceState::kNotTried};

int CountIn(const std::string& text) {
    int value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    return read.ec == std::errc() && value > 0 ? value : 0;
}

SourceState StateIn(std::string_view text) {
    const auto* const found = std::find_if(kStates.begin(), kStates.end(), [&](SourceState state) {
        return text == SourceStateText(state);
    });
    return found == kStates.end() ? SourceState::kFailed : *found;
}

SourceStatus SourceIn(const pugi::xml_node& node, bool is_partial) {
    SourceStatus status;
    status.source = CleanStart(node.child_value("NAME"), kLongestName);
    status.state = StateIn(transport::CleanText(node.child_value("STATE")));
    status.items_read = CountIn(node.child_value("READ"));
    status.items_failed = CountIn(node.child_value("FAILED"));
    status.required = is_partial;
    status.detail = CleanStart(node.child_value("DETAIL"), kLongestDetail);
    return status;
}

}  // namespace

std::vector<SourceStatus> ReadSources(const std::string& path) {
    const std::optional<std::string> content = ReadSmallFile(path);
    pugi::xml_document document;
    if (!content || !document.load_buffer(content->data(), content->size())) return {};
    const pugi::xml_node root = document.child("RESULT");
    const bool is_partial = transport::CleanText(root.child_value("EXITCODE")) == kPartialExitCode;
    std::vector<SourceStatus> sources;
    for (const pugi::xml_node& node : root.child("SOURCES").children("SOURCE")) {
        if (sources.size() == kMostSources) break;
        SourceStatus status = SourceIn(node, is_partial);
        if (!status.source.empty()) sources.push_back(std::move(status));
    }
    return sources;
}

}  // namespace Vantix::remote
