#include "transport/cim_xml/xml_guard.h"

#include <algorithm>

namespace Vantix::transport {
namespace {

// Behind `end`, searched from `at`; the end of the text when it is not there.
std::size_t Behind(std::string_view text, std::size_t at, std::string_view end) {
    const std::size_t found = text.find(end, at);
    return found == std::string_view::npos ? text.size() : found + end.size();
}

// Behind the '>' of the tag at `at`; a '>' inside a quoted value does not end it.
std::size_t BehindTag(std::string_view text, std::size_t at) {
    char quote = '\0';
    for (; at < text.size(); ++at) {
        const char letter = text[at];
        if (quote != '\0') {
            if (letter == quote) quote = '\0';
        } else if (letter == '"' || letter == '\'') {
            quote = letter;
        } else if (letter == '>') {
            return at + 1;
        }
    }
    return text.size();
}

class Guard {
  public:
    Guard(std::string_view text, const XmlLimits& limits) : text_(text), limits_(limits) {}

    XmlGuardResult Run() {
        std::size_t at = text_.find('<');
        while (at != std::string_view::npos) {
            const std::size_t next = Pass(at);
            if (!problem_.empty()) return {at, problem_};
            at = text_.find('<', next);
        }
        return {text_.size(), {}};
    }

  private:
    // Behind the markup at `at`.
    std::size_t Pass(std::size_t at) {
        const std::string_view rest = text_.substr(at);
        if (rest.starts_with("<!--")) return Behind(text_, at + 4, "-->");
        if (rest.starts_with("<![CDATA[")) return Behind(text_, at + 9, "]]>");
        if (rest.starts_with("<?")) return Behind(text_, at + 2, "?>");
        if (rest.starts_with("<!")) {
            if (rest.starts_with("<!ENTITY")) problem_ = "it declares entities";
            return at + 2;
        }
        const std::size_t end = BehindTag(text_, at + 1);
        if (rest.starts_with("</")) {
            depth_ = std::max(0, depth_ - 1);
        } else {
            Open(end >= at + 2 && text_.substr(end - 2, 2) == "/>");
        }
        return end;
    }

    void Open(bool is_empty) {
        if (++elements_ > limits_.elements) problem_ = "it has too many elements";
        if (++depth_ > limits_.depth) problem_ = "it is nested too deeply";
        if (is_empty) --depth_;
    }

    std::string_view text_;
    const XmlLimits& limits_;
    std::string problem_;
    std::size_t elements_ = 0;
    int depth_ = 0;
};

}  // namespace

XmlGuardResult GuardXml(std::string_view text, const XmlLimits& limits) {
    return Guard(text, limits).Run();
}

}  // namespace Vantix::transport
