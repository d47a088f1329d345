#include "transport/redfish/json_document.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport::json {
namespace {

using namespace std::string_literals;

std::string TextOfMember(const JsonDocument& document, const char* key) {
    const auto* object = document.value.if_object();
    const auto* member = object == nullptr ? nullptr : object->if_contains(key);
    const auto* text = member == nullptr ? nullptr : member->if_string();
    return text == nullptr ? "(no text)" : std::string(text->data(), text->size());
}

std::string Nested(int depth) {
    return std::string(static_cast<std::size_t>(depth), '[') +
           std::string(static_cast<std::size_t>(depth), ']');
}

TEST(JsonDocumentTest, ValidDocumentIsReadAsItStands) {
    const JsonDocument document = ParseJson(R"({"Name":"BIOS"})");
    EXPECT_TRUE(document.IsValid());
    EXPECT_FALSE(document.was_cleaned);
    EXPECT_EQ(document.error, "");
    EXPECT_EQ(TextOfMember(document, "Name"), "BIOS");
}

TEST(JsonDocumentTest, BlanksAroundTheDocumentAreFine) {
    const JsonDocument document = ParseJson("\r\n {\"Name\":\"BIOS\"} \n\n");
    EXPECT_TRUE(document.IsValid());
    EXPECT_FALSE(document.was_cleaned);
}

TEST(JsonDocumentTest, LastOfDuplicateKeysWins) {
    EXPECT_EQ(TextOfMember(ParseJson(R"({"a":"1","a":"2"})"), "a"), "2");
}

// ---- cleaning
// ------------------------------------------------------------------------------------

TEST(JsonDocumentTest, ByteOrderMarkIsTakenOff) {
    const JsonDocument document = ParseJson("\xEF\xBB\xBF{\"Name\":\"BIOS\"}");
    EXPECT_TRUE(document.was_cleaned);
    EXPECT_EQ(TextOfMember(document, "Name"), "BIOS");
}

TEST(JsonDocumentTest, RawControlBytesInsideStringsBecomeBlanks) {
    const JsonDocument document = ParseJson("{\"Name\":\"NIC\r\nslot\t1\"}");
    EXPECT_TRUE(document.was_cleaned);
    EXPECT_EQ(TextOfMember(document, "Name"), "NIC  slot 1");
}

TEST(JsonDocumentTest, BadUtf8BecomesReplacementCharacter) {
    const JsonDocument document = ParseJson("{\"Name\":\"M\xFCller\"}");
    EXPECT_TRUE(document.was_cleaned);
    EXPECT_EQ(TextOfMember(document, "Name"), "M\xEF\xBF\xBDller");
}

TEST(JsonDocumentTest, GoodUtf8SurvivesCleaning) {
    EXPECT_EQ(TextOfMember(ParseJson("{\"Name\":\"\xC3\xA4\r\"}"), "Name"), "\xC3\xA4 ");
}

TEST(JsonDocumentTest, EscapesSurviveCleaning) {
    EXPECT_EQ(TextOfMember(ParseJson("{\"Name\":\"a\\\"b\\\\\r\\u0041\"}"), "Name"), "a\"b\\ A");
}

TEST(JsonDocumentTest, HalfASurrogatePairBecomesReplacementCharacter) {
    const JsonDocument document = ParseJson(R"({"Name":"x\ud83dy\udc00"})");
    EXPECT_TRUE(document.was_cleaned);
    EXPECT_EQ(TextOfMember(document, "Name"), "x\xEF\xBF\xBDy\xEF\xBF\xBD");
}

TEST(JsonDocumentTest, WholeSurrogatePairSurvivesCleaning) {
    EXPECT_EQ(TextOfMember(ParseJson("{\"Name\":\"\\ud83d\\ude00\r\"}"), "Name"),
              "\xF0\x9F\x98\x80 ");
}

TEST(JsonDocumentTest, NulBytesAfterTheDocumentAreIgnored) {
    const JsonDocument document = ParseJson("{\"Name\":\"BIOS\"}\0\0"s);
    EXPECT_TRUE(document.was_cleaned);
    EXPECT_EQ(TextOfMember(document, "Name"), "BIOS");
}

// ---- failures
// --------------------------------------------------------------------------------------

struct BadDocument {
    const char* name;
    const char* text;
    JsonErrorKind kind;
};

class BadJsonTest : public ::testing::TestWithParam<BadDocument> {};

TEST_P(BadJsonTest, IsRefusedWithItsKind) {
    const JsonDocument document = ParseJson(GetParam().text);
    EXPECT_EQ(document.kind, GetParam().kind);
    EXPECT_FALSE(document.IsValid());
    EXPECT_FALSE(document.was_cleaned);
    EXPECT_TRUE(document.value.is_null());
    EXPECT_NE(document.error, "");
}

INSTANTIATE_TEST_SUITE_P(
    JsonDocument, BadJsonTest,
    ::testing::Values(BadDocument{"Empty", "", JsonErrorKind::kEmpty},
                      BadDocument{"BlanksOnly", " \r\n", JsonErrorKind::kEmpty},
                      BadDocument{"MarkOnly", "\xEF\xBB\xBF", JsonErrorKind::kEmpty},
                      BadDocument{"Cut", R"({"Name":"BI)", JsonErrorKind::kSyntax},
                      BadDocument{"CutAfterComma", R"({"Name":"BIOS",)", JsonErrorKind::kSyntax},
                      BadDocument{"Words", "Not Found", JsonErrorKind::kSyntax},
                      BadDocument{"TrailingComma", R"({"a":1,})", JsonErrorKind::kSyntax},
                      BadDocument{"BadEscape", R"({"a":"\x"})", JsonErrorKind::kSyntax},
                      BadDocument{"LoneBackslash", R"({"a":"\)", JsonErrorKind::kSyntax},
                      BadDocument{"CutEscape", R"({"a":"\ud8)", JsonErrorKind::kSyntax},
                      BadDocument{"TextBehind", R"({"a":1} bye)", JsonErrorKind::kSyntax},
                      BadDocument{"Html", "<!DOCTYPE html><html>", JsonErrorKind::kHtml},
                      BadDocument{"HtmlAfterBlanks", "\r\n <html>", JsonErrorKind::kHtml},
                      BadDocument{"TwoObjects", R"({"error":{}}{"a":1})",
                                  JsonErrorKind::kTrailingDocument},
                      BadDocument{"TwoObjectsApart", "{\"error\":{}}\n{\"a\":1}",
                                  JsonErrorKind::kTrailingDocument}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(JsonDocumentTest, ErrorShowsTheStartOfTheText) {
    const JsonDocument document = ParseJson("<html>\r\n<body>Please log in</body>");
    EXPECT_EQ(document.error, "the answer is HTML, not JSON: <html>  <body>Please log in</body>");
}

TEST(JsonDocumentTest, ErrorShowsAtMostEightyCharactersOfTheText) {
    const JsonDocument document = ParseJson("<" + std::string(5000, 'x'));
    EXPECT_EQ(document.error, "the answer is HTML, not JSON: <" + std::string(79, 'x'));
}

TEST(JsonDocumentTest, SixtyFourLevelsAreRead) {
    EXPECT_TRUE(ParseJson(Nested(64)).IsValid());
}

TEST(JsonDocumentTest, SixtyFiveLevelsAreTooDeep) {
    EXPECT_EQ(ParseJson(Nested(65)).kind, JsonErrorKind::kTooDeep);
}

TEST(JsonDocumentTest, MillionOpenBracketsAreTooDeep) {
    EXPECT_EQ(ParseJson(std::string(1000000, '[')).kind, JsonErrorKind::kTooDeep);
}

TEST(JsonDocumentTest, DeepTextThatNeedsCleaningIsTooDeep) {
    EXPECT_EQ(ParseJson("\xEF\xBB\xBF" + Nested(65)).kind, JsonErrorKind::kTooDeep);
}

TEST(JsonDocumentTest, TextAtTheByteLimitIsRead) {
    EXPECT_TRUE(ParseJson("[1,2]", JsonLimits{5, 64}).IsValid());
}

TEST(JsonDocumentTest, TextBeyondTheByteLimitIsTooLarge) {
    const JsonDocument document = ParseJson("[1,2]", JsonLimits{4, 64});
    EXPECT_EQ(document.kind, JsonErrorKind::kTooLarge);
    EXPECT_EQ(document.error, "the answer has more than 4 bytes: [1,2]");
}

TEST(JsonDocumentTest, AnyCutOfADocumentIsRefusedQuietly) {
    const std::string text = R"({"Name":"\u00e4\ud83d\ude00","List":[1,-2.5e3,true,null]})";
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_FALSE(ParseJson(text.substr(0, size)).IsValid()) << size;
    }
}

}  // namespace
}  // namespace Vantix::transport::json
