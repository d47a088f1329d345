// Tolerant reading of JSON bodies as services in the field send them.
//
// Every accessor takes what is there and never throws: null, missing, or a type that cannot mean
// the wanted value reads as absent. Texts come back clean (cut at NUL, control bytes to blank, bad
// UTF-8 to U+FFFD, trimmed). Deliberately not here: parsing, and any knowledge of what a field
// means.
#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport::json {

using Keys = std::initializer_list<std::string_view>;

/// The value as text: strings cleaned, numbers in the classic locale, "true" or "false"; null,
/// objects and arrays are empty.
[[nodiscard]] std::string TextOf(const boost::json::value& value);

/// The member as text (see TextOf); empty when there is none.
[[nodiscard]] std::string Text(const boost::json::object& object, std::string_view key);

/// The text at the end of a walk through nested objects; empty when any step is missing.
[[nodiscard]] std::string TextAt(const boost::json::object& object, Keys path);

/// Booleans, the numbers 0 and 1, and the texts "true" and "false" in any case.
[[nodiscard]] std::optional<bool> OptionalBool(const boost::json::object& object,
                                               std::string_view key);

/// Whole numbers, also as text or as a fraction of value zero (2.0); nothing else.
[[nodiscard]] std::optional<std::int64_t> Integer(const boost::json::object& object,
                                                  std::string_view key);

/// The member if it is an object, else nullptr. Valid as long as `object` is unchanged.
[[nodiscard]] const boost::json::object* Object(const boost::json::object& object,
                                                std::string_view key);

/// The object at the end of a walk; nullptr when a step is missing or no object.
[[nodiscard]] const boost::json::object* ObjectAt(const boost::json::object& object, Keys path);

/// The member if it is an array, else nullptr.
[[nodiscard]] const boost::json::array* Array(const boost::json::object& object,
                                              std::string_view key);

/// The objects of an array member, others passed over; a single object counts as a list of one.
[[nodiscard]] std::vector<const boost::json::object*> Objects(const boost::json::object& object,
                                                              std::string_view key);

/// The texts of an array member, empty ones left out; a single text counts as a list of one.
[[nodiscard]] std::vector<std::string> Texts(const boost::json::object& object,
                                             std::string_view key);

/// The link as written: `@odata.id` of an object (DSP0266), or a plain string; empty otherwise.
[[nodiscard]] std::string LinkOf(const boost::json::value& value);
[[nodiscard]] std::string Link(const boost::json::object& object, std::string_view key);

/// The links of a list in its order, empty ones left out; a single link counts as a list of one.
[[nodiscard]] std::vector<std::string> Links(const boost::json::object& object,
                                             std::string_view key);

/// What a JSON pointer (RFC 6901, with or without the leading '/') points at below `object`;
/// nullptr when it leads nowhere.
[[nodiscard]] const boost::json::value* AtPointer(const boost::json::object& object,
                                                  std::string_view pointer);

}  // namespace Vantix::transport::json
