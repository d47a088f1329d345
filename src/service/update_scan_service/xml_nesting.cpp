#include "service/update_scan_service/xml_nesting.h"

#include <algorithm>

namespace service::detail {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kAfterElementName = " \t\r\n/>?";
constexpr std::string_view kAfterAttributeName = " \t\r\n/<>=?!";

// Walks from markup to markup. A step that meets something malformed puts the position at the end:
// the parser will stop at that place with its own error.
class MarkupWalker {
  public:
    explicit MarkupWalker(std::string_view xml) : xml_(xml.substr(0, xml.find('\0'))) {}

    std::optional<std::size_t> FindDeeperThan(std::size_t limit) {
        while (NextMarkup()) {
            const std::size_t start = position_;
            Step();
            if (deepest_ > limit) return start;
        }
        return std::nullopt;
    }

  private:
    bool NextMarkup() {
        MoveTo(xml_.find('<', position_));
        return position_ < xml_.size();
    }

    void Step() {
        if (SkipAfter("<!--", "-->") || SkipAfter("<![CDATA[", "]]>") || SkipAfter("<?", "?>")) {
            return;
        }
        if (Follows("<!DOCTYPE") && IsBlank(position_ + 9)) {
            SkipDoctype();
        } else if (Follows("<!")) {
            MoveAfter(">", position_ + 2);
        } else if (Follows("</")) {
            CloseElement();
        } else {
            OpenElement();
        }
    }

    void CloseElement() {
        if (depth_ == 0) {
            Stop();
            return;
        }
        --depth_;
        MoveAfter(">", position_ + 2);
    }

    void OpenElement() {
        const std::size_t name = position_ + 1;
        MoveTo(xml_.find_first_of(kAfterElementName, name));
        if (position_ <= name) Stop();
        deepest_ = std::max(deepest_, ++depth_);
        while (SkipAttribute()) {
        }
        if (Follows("/>")) {
            --depth_;
            position_ += 2;
        } else if (Follows(">")) {
            ++position_;
        } else {
            Stop();
        }
    }

    // True after one whole attribute; otherwise the position is where the tag should end.
    bool SkipAttribute() {
        SkipBlanks();
        const std::size_t name = position_;
        MoveTo(xml_.find_first_of(kAfterAttributeName, position_));
        if (position_ == name) return false;
        SkipBlanks();
        if (!Follows("=")) return Stop();
        ++position_;
        SkipBlanks();
        if (!Follows("\"") && !Follows("'")) return Stop();
        MoveAfter(xml_.substr(position_, 1), position_ + 1);
        return true;
    }

    // Brackets hold declarations, in which '>' means nothing.
    void SkipDoctype() {
        std::size_t brackets = 0;
        for (position_ += 10; position_ < xml_.size(); ++position_) {
            const char c = xml_[position_];
            if (c == '>' && brackets == 0) break;
            if (c == '[') ++brackets;
            if (c == ']' && brackets > 0) --brackets;
        }
        MoveTo(position_ + 1);
    }

    bool SkipAfter(std::string_view begin, std::string_view end) {
        if (!Follows(begin)) return false;
        MoveAfter(end, position_ + begin.size());
        return true;
    }

    void MoveAfter(std::string_view mark, std::size_t from) {
        const std::size_t found = xml_.find(mark, from);
        MoveTo(found == std::string_view::npos ? found : found + mark.size());
    }

    void MoveTo(std::size_t position) { position_ = std::min(position, xml_.size()); }
    void SkipBlanks() { MoveTo(xml_.find_first_not_of(kBlanks, position_)); }
    bool Follows(std::string_view text) const {
        return xml_.substr(position_, text.size()) == text;
    }
    bool IsBlank(std::size_t position) const {
        return position < xml_.size() && kBlanks.find(xml_[position]) != std::string_view::npos;
    }
    bool Stop() {
        position_ = xml_.size();
        return false;
    }

    std::string_view xml_;
    std::size_t position_ = 0;
    std::size_t depth_ = 0;
    std::size_t deepest_ = 0;
};

}  // namespace

std::optional<std::size_t> FindElementDeeperThan(std::string_view xml, std::size_t limit) {
    return MarkupWalker(xml).FindDeeperThan(limit);
}

}  // namespace service::detail
