// Ends a test, from inside a helper, as one that this system cannot run.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace test_support {

/// Leaves the test, its fixture's constructor or SetUp at once; the test counts as skipped for
/// `reason`. Only for the thread of the test.
[[noreturn]] inline void SkipTest(const std::string& reason) {
    using testing::TestPartResult;
    [&] { GTEST_SKIP() << reason; }();
    // What GoogleTest takes for the end of a test whose result is known already.
    throw testing::AssertionException(
        TestPartResult(TestPartResult::kSkip, __FILE__, __LINE__, reason.c_str()));
}

}  // namespace test_support
