#include "service/update_scan_service/xml_nesting.h"

#include <algorithm>
#include <array>

namespace service::detail {

namespace {

// A table makes the test one look-up: names are most of what is read here byte by byte.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char c : characters) contained_[static_cast<unsigned char>(c)] = true;
    }
    constexpr bool Contains(char c) const { return contained_[static_cast<unsigned char>(c)]; }

  private:
    std::array<bool, 256> contained_{};
};

constexpr CharacterSet kBlanks(" \t\r\n");
constexpr CharacterSet kAfterElementName(" \t\r\n/>?");
constexpr CharacterSet kAfterAttributeName(" \t\r\n/<>=?!");

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
        const char kind = position_ + 1 < xml_.size() ? xml_[position_ + 1] : '>';
        switch (kind) {
            case '/':
                CloseElement();
                break;
            case '?':
                MoveAfter("?>", position_ + 2);
                break;
            case '!':
                SkipDeclaration();
                break;
            default:
                OpenElement();
        }
    }

    void SkipDeclaration() {
        if (SkipAfter("<!--", "-->") || SkipAfter("<![CDATA[", "]]>")) return;
        if (Follows("<!DOCTYPE") && IsBlank(position_ + 9)) {
            SkipDoctype();
        } else {
            MoveAfter(">", position_ + 2);
        }
    }

    void CloseElement() {
        if (depth_ == 0) {
            Stop();
            return;
        }
        --depth_;
        MoveTo(xml_.find('>', position_ + 2));
    }

    void OpenElement() {
        ++position_;
        if (!SkipUntil(kAfterElementName)) Stop();
        deepest_ = std::max(deepest_, ++depth_);
        while (SkipAttribute()) {
        }
        if (Is('>')) {
            ++position_;
        } else if (Follows("/>")) {
            --depth_;
            position_ += 2;
        } else {
            Stop();
        }
    }

    // True after one whole attribute; otherwise the position is where the tag should end.
    bool SkipAttribute() {
        SkipBlanks();
        if (!SkipUntil(kAfterAttributeName)) return false;
        SkipBlanks();
        if (!Is('=')) return Stop();
        ++position_;
        SkipBlanks();
        if (!Is('"') && !Is('\'')) return Stop();
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

    void SkipBlanks() {
        while (position_ < xml_.size() && kBlanks.Contains(xml_[position_])) ++position_;
    }

    // False when there was nothing to skip.
    bool SkipUntil(const CharacterSet& end) {
        const std::size_t start = position_;
        while (position_ < xml_.size() && !end.Contains(xml_[position_])) ++position_;
        return position_ > start;
    }

    bool Is(char c) const { return position_ < xml_.size() && xml_[position_] == c; }
    bool Follows(std::string_view text) const {
        return xml_.substr(position_, text.size()) == text;
    }
    bool IsBlank(std::size_t position) const {
        return position < xml_.size() && kBlanks.Contains(xml_[position]);
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
