// The reader over the recorded answers of a real CIM server.
#include <gtest/gtest.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "transport/cim_xml/cim_answer.h"

namespace Vantix::transport {
namespace {

namespace fs = std::filesystem;

const fs::path kRecordings = fs::path(TARSEL_SHARED_MOCKUPS) / "cimxml-pegasus";

std::string ReadFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

int MessageIdIn(const std::string& body) {
    const std::size_t at = body.find("<MESSAGE ID=\"");
    int id = -1;
    if (at != std::string::npos) {
        std::from_chars(body.data() + at + 13, body.data() + body.size(), id);
    }
    return id;
}

class CimRecordedTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!fs::is_directory(kRecordings)) {
            GTEST_SKIP() << "no recorded answers at " << kRecordings;
        }
    }
};

TEST_F(CimRecordedTest, EveryAnswerIsReadOrAnErrorOfItsService) {
    int files = 0;
    int errors = 0;
    for (const auto& entry : fs::recursive_directory_iterator(kRecordings)) {
        const std::string name = entry.path().filename().string();
        if (!name.ends_with(".response.xml")) continue;
        ++files;
        const std::string body = ReadFile(entry.path());
        const CimAnswer answer = ReadCimAnswer(body, MessageIdIn(body));
        const bool has_error = body.find("<ERROR CODE=\"") != std::string::npos;
        errors += has_error ? 1 : 0;
        if (body.find("<IMETHODRESPONSE") == std::string::npos) continue;
        EXPECT_EQ(static_cast<bool>(answer.failure), has_error)
            << entry.path() << answer.failure.text;
        EXPECT_TRUE(answer.skipped.empty()) << entry.path();
    }
    EXPECT_GT(files, 300);
    EXPECT_GT(errors, 200);
}

TEST_F(CimRecordedTest, EnumeratedInstancesComeWithTheirTrimmedValues) {
    const std::string body =
        ReadFile(kRecordings / "InterfaceArchive" / "v002001" / "tests" / "Providers" /
                 "InstanceProvider" / "EnumerateInstances.response.xml");

    const CimAnswer answer = ReadCimAnswer(body, 25000);

    ASSERT_EQ(answer.instances.size(), 3U);
    EXPECT_EQ(answer.instances[1].Text("Identifier"), "2");
    EXPECT_EQ(answer.instances[1].Text("Message"), "Yo Planet");
}

}  // namespace
}  // namespace Vantix::transport
