// Looks over XML from outside before a parser builds a tree of it: nesting, number of elements and
// entity declarations are limited, because a small text can stand for a very large tree.
//
// Does not check that the text is well-formed; one pass, no memory.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Vantix::transport {

struct XmlLimits {
    int depth = 64;
    std::size_t elements = 1000000;
};

struct XmlGuardResult {
    std::size_t usable = 0;  ///< bytes before the place where a limit was exceeded
    std::string problem;     ///< one phrase; empty when the whole text may be parsed
};

[[nodiscard]] XmlGuardResult GuardXml(std::string_view text, const XmlLimits& limits = {});

}  // namespace Vantix::transport
