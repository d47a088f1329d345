#include "transport/cim_xml/cim_answer.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <pugixml.hpp>
#include <utility>

#include "transport/cim_xml/cim_nodes.h"
#include "transport/cim_xml/xml_guard.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kLongestDescription = 200;

CimFailure FailureOf(CimProblem problem, std::string text) {
    CimFailure failure;
    failure.problem = problem;
    failure.text = std::move(text);
    return failure;
}

// What a parser must not meet: raw control bytes, which some services leave in texts.
std::string WithoutControlBytes(std::string_view text) {
    std::string clean(text);
    const auto is_bad = [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return byte < 0x20U && letter != '\t' && letter != '\n' && letter != '\r';
    };
    std::replace_if(clean.begin(), clean.end(), is_bad, ' ');
    return clean;
}

class Reader {
  public:
    Reader(std::string_view body, int message_id) : text_(body), message_id_(message_id) {}

    CimAnswer Read() {
        const XmlGuardResult guard = GuardXml(text_);
        text_.resize(guard.usable);
        problem_ = guard.problem;
        const bool is_over_limit = !problem_.empty();
        Parse();
        const pugi::xml_node cim = document_.child("CIM");
        if (!cim) {
            answer_.failure = FailureOf(CimProblem::kNoService, NotCim(is_over_limit));
            return std::move(answer_);
        }
        ReadMessage(cim.child("MESSAGE"));
        return std::move(answer_);
    }

  private:
    void Parse() {
        pugi::xml_parse_result result = Load();
        if (!result) {
            text_ = WithoutControlBytes(text_);
            result = Load();
        }
        if (result) return;
        is_broken_ = true;
        broken_at_ = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
        if (problem_.empty()) {
            problem_ = std::string(result.description()) + " at byte " + std::to_string(broken_at_);
        }
    }

    pugi::xml_parse_result Load() {
        return document_.load_buffer(text_.data(), text_.size(), pugi::parse_default);
    }

    [[nodiscard]] std::string NotCim(bool is_over_limit) const {
        if (is_over_limit) return "the answer was not read: " + problem_;
        const std::string start = CleanStart(text_);
        if (start.empty()) return "the answer is empty";
        return "the answer is no CIM-XML: " + start;
    }

    void ReadMessage(const pugi::xml_node& message) {
        int id = 0;
        const std::string id_text = CimAttribute(message, "ID");
        const auto [end, error] =
            std::from_chars(id_text.data(), id_text.data() + id_text.size(), id);
        const bool is_number = error == std::errc() && end == id_text.data() + id_text.size();
        if (message && (!is_number || id != message_id_)) {
            answer_.failure = FailureOf(
                CimProblem::kBadBody, "the answer belongs to another request (message " + id_text +
                                          ", not " + std::to_string(message_id_) + ")");
            return;
        }
        const pugi::xml_node response = message.child("SIMPLERSP").child("IMETHODRESPONSE");
        if (const pugi::xml_node failed = response.child("ERROR")) {
            ReadError(failed);
            return;
        }
        if (!response && !is_broken_) {
            problem_ = "it holds no response";
            is_broken_ = true;
        }
        for (const pugi::xml_node& value : response.child("IRETURNVALUE").children()) {
            ReadValue(value);
        }
        if (is_broken_) {
            answer_.failure =
                FailureOf(CimProblem::kBadBody, "the answer cannot be read whole: " + problem_);
        }
    }

    void ReadError(const pugi::xml_node& node) {
        const std::string code = CimAttribute(node, "CODE");
        int status = kCimFailed;
        std::from_chars(code.data(), code.data() + code.size(), status);
        const std::string name = CimStatusText(status);
        std::string text = "CIM status " + std::to_string(status);
        if (!name.empty()) text += " " + name;
        const std::string description = CimAttribute(node, "DESCRIPTION");
        if (!description.empty()) text += ": " + CleanStart(description, kLongestDescription);
        const bool is_denied = status == kCimAccessDenied;
        answer_.failure =
            FailureOf(is_denied ? CimProblem::kForbidden : CimProblem::kCimError, std::move(text));
        answer_.failure.cim_status = status;
    }

    // Where the text broke off, the last element is there without its end, and so without what
    // else belonged to it.
    [[nodiscard]] bool IsComplete(const pugi::xml_node& node) const {
        if (!is_broken_ || node.next_sibling()) return true;
        const std::ptrdiff_t start = node.offset_debug();
        if (start < 0) return false;
        const std::string end = "</" + std::string(node.name()) + ">";
        return text_.substr(0, broken_at_ + 1).find(end, static_cast<std::size_t>(start)) !=
               std::string::npos;
    }

    void ReadValue(const pugi::xml_node& node) {
        const std::string kind = node.name();
        if (kind.empty()) return;
        if (!IsComplete(node)) {
            answer_.skipped.push_back("an instance that breaks off");
            return;
        }
        if (kind == "INSTANCENAME" || kind == "INSTANCEPATH" || kind == "OBJECTPATH") {
            answer_.names.push_back(ReadCimName(node));
            return;
        }
        if (kind != "INSTANCE" && !kind.starts_with("VALUE.")) return;
        std::string reason;
        if (auto instance = ReadCimInstance(node, reason)) {
            answer_.instances.push_back(std::move(*instance));
        } else {
            answer_.skipped.push_back(reason);
        }
    }

    std::string text_;
    const int message_id_;
    pugi::xml_document document_;
    CimAnswer answer_;
    std::string problem_;
    std::size_t broken_at_ = 0;
    bool is_broken_ = false;
};

}  // namespace

std::string CimStatusText(int status) {
    constexpr const char* kNames[] = {"",
                                      "CIM_ERR_FAILED",
                                      "CIM_ERR_ACCESS_DENIED",
                                      "CIM_ERR_INVALID_NAMESPACE",
                                      "CIM_ERR_INVALID_PARAMETER",
                                      "CIM_ERR_INVALID_CLASS",
                                      "CIM_ERR_NOT_FOUND",
                                      "CIM_ERR_NOT_SUPPORTED",
                                      "CIM_ERR_CLASS_HAS_CHILDREN",
                                      "CIM_ERR_CLASS_HAS_INSTANCES",
                                      "CIM_ERR_INVALID_SUPERCLASS",
                                      "CIM_ERR_ALREADY_EXISTS",
                                      "CIM_ERR_NO_SUCH_PROPERTY",
                                      "CIM_ERR_TYPE_MISMATCH",
                                      "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED",
                                      "CIM_ERR_INVALID_QUERY",
                                      "CIM_ERR_METHOD_NOT_AVAILABLE",
                                      "CIM_ERR_METHOD_NOT_FOUND"};
    const auto count = static_cast<int>(std::size(kNames));
    return status > 0 && status < count ? kNames[status] : "";
}

CimAnswer ReadCimAnswer(std::string_view body, int message_id) {
    return Reader(body, message_id).Read();
}

}  // namespace Vantix::transport
