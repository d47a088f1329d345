// Patterns over text. GoogleTest's own know no groups of letters on Windows.
#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace test_support {

/// A part of the text, or with "^" and "$" the whole, is as the pattern (ECMAScript) says.
MATCHER_P(HasPattern, pattern, "has the pattern " + testing::PrintToString(pattern)) {
    return std::regex_search(std::string(arg), std::regex(pattern));
}

}  // namespace test_support
