#include "tarsel/common_result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <sstream>

namespace tarsel {
namespace {

using boost::property_tree::ptree;
using std::chrono::seconds;
using Vantix::VantixConnection::SourceState;
using Vantix::VantixConnection::SourceStatus;

CommonResult AResult() {
    CommonResult result;
    result.code = 0x1006D;
    result.message = "A text.";
    result.exit_code = 7;
    result.target = "127.0.0.1:8443";
    result.version = "0.1.0";
    result.finished += seconds(61);
    return result;
}

ptree Parsed(const CommonResult& result) {
    std::istringstream xml(CommonResultXml(result));
    ptree tree;
    read_xml(xml, tree);
    return tree;
}

TEST(CommonResultTest, CodeIsTheWholeCodeInDecimal) {
    EXPECT_EQ(Parsed(AResult()).get<std::string>("RESULT.CODE"), "65645");
}

TEST(CommonResultTest, CodeAndMessageComeFirst) {
    const ptree root = Parsed(AResult()).get_child("RESULT");
    std::vector<std::string> names;
    for (const auto& [name, child] : root) {
        if (!name.starts_with('<')) names.push_back(name);
    }
    EXPECT_THAT(names, testing::ElementsAre("CODE", "MESSAGE", "EXITCODE", "TARGET", "TOOLVERSION",
                                            "STARTED", "FINISHED", "SOURCES"));
}

TEST(CommonResultTest, TimesAreUtc) {
    const ptree tree = Parsed(AResult());
    EXPECT_EQ(tree.get<std::string>("RESULT.STARTED"), "1970-01-01T00:00:00Z");
    EXPECT_EQ(tree.get<std::string>("RESULT.FINISHED"), "1970-01-01T00:01:01Z");
}

TEST(CommonResultTest, TargetVersionAndExitCodeAreTold) {
    const ptree tree = Parsed(AResult());
    EXPECT_EQ(tree.get<std::string>("RESULT.TARGET"), "127.0.0.1:8443");
    EXPECT_EQ(tree.get<std::string>("RESULT.TOOLVERSION"), "0.1.0");
    EXPECT_EQ(tree.get<std::string>("RESULT.EXITCODE"), "7");
}

TEST(CommonResultTest, MessageWithMarkupIsReadBackAsItWas) {
    CommonResult result = AResult();
    result.message = "a <b> & \"c\" 'd' ]]> \xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\x91";
    EXPECT_EQ(Parsed(result).get<std::string>("RESULT.MESSAGE"), result.message);
}

TEST(CommonResultTest, ControlBytesBecomeBlanks) {
    CommonResult result = AResult();
    result.message = std::string("a\x01\x1B\0b\x7F", 6) + "c\td\ne";
    EXPECT_EQ(Parsed(result).get<std::string>("RESULT.MESSAGE"), "a   b c\td\ne");
}

TEST(CommonResultTest, BrokenUtf8IsReplaced) {
    const std::string bad = "\xEF\xBF\xBD";
    const std::pair<std::string, std::string> cases[] = {
        {"a\xFF", "a" + bad},
        {"\xC3", bad},
        {"\xE2\x82", bad + bad},
        {"\xC0\xAF", bad + bad},
        {"\xED\xA0\x80", bad + bad + bad},
        {"\xF4\x90\x80\x80", bad + bad + bad + bad},
        {"\xC3(", bad + "("}};
    for (const auto& [given, expected] : cases) {
        CommonResult result = AResult();
        result.message = given;
        EXPECT_EQ(Parsed(result).get<std::string>("RESULT.MESSAGE"), expected);
    }
}

TEST(CommonResultTest, SourcesHaveStateAndCounts) {
    CommonResult result = AResult();
    SourceStatus status;
    status.source = "firmware inventory";
    status.state = SourceState::kPartial;
    status.items_read = 9;
    status.items_failed = 1;
    status.detail = "one member is missing";
    result.sources = {status, status};
    const ptree sources = Parsed(result).get_child("RESULT.SOURCES");
    EXPECT_EQ(sources.count("SOURCE"), 2U);
    const ptree source = sources.get_child("SOURCE");
    EXPECT_EQ(source.get<std::string>("NAME"), "firmware inventory");
    EXPECT_EQ(source.get<std::string>("STATE"), "partial");
    EXPECT_EQ(source.get<std::string>("READ"), "9");
    EXPECT_EQ(source.get<std::string>("FAILED"), "1");
    EXPECT_EQ(source.get<std::string>("DETAIL"), "one member is missing");
}

TEST(CommonResultTest, EncodingIsDeclared) {
    EXPECT_THAT(
        CommonResultXml(AResult()),
        testing::StartsWith("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<RESULT>\n\t<CODE>"));
}

}  // namespace
}  // namespace tarsel
