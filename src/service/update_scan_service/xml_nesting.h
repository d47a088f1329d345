// Measures how deeply the elements of an XML text are nested, before a parser that calls itself for
// every level is let near it.
//
// Deliberately not here: any judgement whether the text is well-formed. The parser says that.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace service::detail {

/// The offset of the first element that stands deeper than `limit` levels; nothing when there is
/// none. Reads as the tree library's parser does, in one pass and in constant space: comments,
/// CDATA sections, processing instructions, declarations and attribute values open no element, and
/// where the parser would give up (first NUL, first malformed tag) the search ends.
[[nodiscard]] std::optional<std::size_t> FindElementDeeperThan(std::string_view xml,
                                                               std::size_t limit);

}  // namespace service::detail
