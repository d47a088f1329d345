#include "support/golden_file.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace test_support {

namespace {

bool UpdateIsWanted() {
    const char* flag = std::getenv("TARSEL_UPDATE_GOLDEN");
    return flag != nullptr && std::string(flag) == "1";
}

testing::AssertionResult Rewrite(const std::string& actual, const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file << actual;
    file.close();
    return testing::AssertionFailure()
           << (file ? "rewritten, run again without the flag: " : "cannot be written: ") << path;
}

}  // namespace

testing::AssertionResult MatchesGoldenFile(const std::string& actual, const std::string& path) {
    if (UpdateIsWanted()) return Rewrite(actual, path);

    std::ifstream file(path, std::ios::binary);
    if (!file) return testing::AssertionFailure() << "no golden file " << path;
    const std::string expected{std::istreambuf_iterator<char>(file),
                               std::istreambuf_iterator<char>()};
    if (actual == expected) return testing::AssertionSuccess();

    const auto differs =
        std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end()).first;
    const auto line = std::count(actual.begin(), differs, '\n') + 1;
    return testing::AssertionFailure()
           << "differs from " << path << " in line " << line << "; the output is:\n"
           << actual;
}

}  // namespace test_support
