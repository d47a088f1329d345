// Compares output byte by byte with a file that is kept with the tests.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace test_support {

/// True when `actual` is exactly the content of the golden file. With the environment variable
/// TARSEL_UPDATE_GOLDEN set to 1 the file is rewritten instead, and the result is a failure, so
/// that no run passes by updating what it compares with.
testing::AssertionResult MatchesGoldenFile(const std::string& actual, const std::string& path);

}  // namespace test_support
