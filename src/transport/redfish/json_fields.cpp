#include "transport/redfish/json_fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport::json {
namespace {

namespace bj = boost::json;

std::string FractionText(double number) {
    char buffer[64];
    const auto done = std::to_chars(std::begin(buffer), std::end(buffer), number);
    if (done.ec != std::errc()) return {};
    std::string text(std::begin(buffer), done.ptr);
    // The parser keeps fractions apart from whole numbers: "2.0" is more likely than "2".
    if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
    return text;
}

const bj::value* Find(const bj::object& object, std::string_view key) {
    return object.if_contains(bj::string_view(key.data(), key.size()));
}

std::string_view ViewOf(const bj::string& text) {
    return {text.data(), text.size()};
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
    const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                      [&](char left, char right) { return fold(left) == right; });
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto done = std::from_chars(text.data(), text.data() + text.size(), number);
    if (done.ec != std::errc() || done.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<std::int64_t> WholeNumber(double number) {
    constexpr double kExactlyHeld = 9007199254740992.0;  // 2^53
    if (!(std::fabs(number) <= kExactlyHeld) || std::trunc(number) != number) return std::nullopt;
    return static_cast<std::int64_t>(number);
}

std::string UnescapedToken(std::string_view token) {
    std::string text;
    for (std::size_t at = 0; at < token.size(); ++at) {
        const bool is_escape = token[at] == '~' && at + 1 < token.size();
        if (is_escape && (token[at + 1] == '0' || token[at + 1] == '1')) {
            text += token[++at] == '0' ? '~' : '/';
        } else {
            text += token[at];
        }
    }
    return text;
}

const bj::value* Child(const bj::value& value, std::string_view token) {
    if (const bj::object* object = value.if_object()) return Find(*object, UnescapedToken(token));
    const bj::array* array = value.if_array();
    const std::optional<std::int64_t> index = WholeNumber(token);
    if (array == nullptr || !index || *index < 0) return nullptr;
    return array->if_contains(static_cast<std::size_t>(*index));
}

}  // namespace

std::string TextOf(const bj::value& value) {
    if (const auto* text = value.if_string()) return CleanText(ViewOf(*text));
    if (const auto* number = value.if_int64()) return std::to_string(*number);
    if (const auto* number = value.if_uint64()) return std::to_string(*number);
    if (const auto* number = value.if_double()) return FractionText(*number);
    if (const auto* flag = value.if_bool()) return *flag ? "true" : "false";
    return {};
}

std::string Text(const bj::object& object, std::string_view key) {
    const bj::value* value = Find(object, key);
    return value == nullptr ? std::string() : TextOf(*value);
}

std::string TextAt(const bj::object& object, Keys path) {
    const bj::object* current = &object;
    const bj::value* value = nullptr;
    for (const std::string_view key : path) {
        value = current == nullptr ? nullptr : Find(*current, key);
        if (value == nullptr) return {};
        current = value->if_object();
    }
    return value == nullptr ? std::string() : TextOf(*value);
}

std::optional<bool> OptionalBool(const bj::object& object, std::string_view key) {
    const std::string text = Text(object, key);
    if (text == "1" || EqualsIgnoringCase(text, "true")) return true;
    if (text == "0" || EqualsIgnoringCase(text, "false")) return false;
    return std::nullopt;
}

std::optional<std::int64_t> Integer(const bj::object& object, std::string_view key) {
    const bj::value* value = Find(object, key);
    if (value == nullptr || value->is_bool()) return std::nullopt;
    if (const auto* number = value->if_double()) return WholeNumber(*number);
    return WholeNumber(TextOf(*value));
}

const bj::object* Object(const bj::object& object, std::string_view key) {
    const bj::value* value = Find(object, key);
    return value == nullptr ? nullptr : value->if_object();
}

const bj::object* ObjectAt(const bj::object& object, Keys path) {
    const bj::object* current = &object;
    for (const std::string_view key : path) {
        if (current != nullptr) current = Object(*current, key);
    }
    return current;
}

const bj::array* Array(const bj::object& object, std::string_view key) {
    const bj::value* value = Find(object, key);
    return value == nullptr ? nullptr : value->if_array();
}

std::vector<const bj::object*> Objects(const bj::object& object, std::string_view key) {
    std::vector<const bj::object*> list;
    if (const bj::object* single = Object(object, key)) list.push_back(single);
    const bj::array* array = Array(object, key);
    if (array == nullptr) return list;
    for (const bj::value& value : *array) {
        if (const bj::object* member = value.if_object()) list.push_back(member);
    }
    return list;
}

namespace {

template <typename Reader>
std::vector<std::string> Collect(const bj::object& object, std::string_view key, Reader read) {
    std::vector<std::string> list;
    const bj::value* value = Find(object, key);
    if (value == nullptr) return list;
    const auto append = [&](const bj::value& member) {
        std::string text = read(member);
        if (!text.empty()) list.push_back(std::move(text));
    };
    const bj::array* array = value->if_array();
    if (array == nullptr) {
        append(*value);
        return list;
    }
    for (const bj::value& member : *array) append(member);
    return list;
}

}  // namespace

std::vector<std::string> Texts(const bj::object& object, std::string_view key) {
    return Collect(object, key, TextOf);
}

std::string LinkOf(const bj::value& value) {
    if (const bj::object* reference = value.if_object()) {
        const bj::value* id = Find(*reference, "@odata.id");
        return id == nullptr || !id->is_string() ? std::string() : TextOf(*id);
    }
    return value.is_string() ? TextOf(value) : std::string();
}

std::string Link(const bj::object& object, std::string_view key) {
    const bj::value* value = Find(object, key);
    return value == nullptr ? std::string() : LinkOf(*value);
}

std::vector<std::string> Links(const bj::object& object, std::string_view key) {
    return Collect(object, key, LinkOf);
}

const bj::value* AtPointer(const bj::object& object, std::string_view pointer) {
    if (!pointer.empty() && pointer.front() == '/') pointer.remove_prefix(1);
    if (pointer.empty()) return nullptr;
    const std::size_t end = pointer.find('/');
    const bj::value* value = Find(object, UnescapedToken(pointer.substr(0, end)));
    while (value != nullptr && pointer.find('/') != std::string_view::npos) {
        pointer.remove_prefix(pointer.find('/') + 1);
        value = Child(*value, pointer.substr(0, pointer.find('/')));
    }
    return value;
}

}  // namespace Vantix::transport::json
