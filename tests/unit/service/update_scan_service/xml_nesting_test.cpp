#include "service/update_scan_service/xml_nesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <optional>
#include <random>
#include <sstream>
#include <string>

namespace {

using service::detail::FindElementDeeperThan;

std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

// Pieces of markup in random order: now and then the parser takes the whole.
std::string RandomText(std::mt19937& random) {
    constexpr std::array kPieces = {"<a>",         "<b>",
                                    "</a>",        "</b>",
                                    "<c/>",        "<d x='1'>",
                                    "</d>",        "<e y=\"</a>\">",
                                    "</e>",        "text",
                                    "<!--<a>-->",  " ",
                                    "<?p <a>?>",   "<![CDATA[<a>]]>",
                                    "<!X <a>",     "'",
                                    "\"",          ">",
                                    "/",           "<f\">",
                                    "</f\">",      "<!DOCTYPE a [<b>]>",
                                    "<g h'='1'/>", "<a",
                                    "=",           "<",
                                    "\n"};
    std::uniform_int_distribution<std::size_t> piece(0, kPieces.size() - 1);
    std::string text = "<r>";
    for (int i = static_cast<int>(random() % 12); i > 0; --i) text += kPieces[piece(random)];
    return text + Repeated("</r>", static_cast<int>(random() % 5));
}

std::size_t DepthOf(const boost::property_tree::ptree& node) {
    std::size_t deepest = 0;
    for (const auto& [name, child] : node) {
        if (name != "<xmlattr>" && name != "<xmlcomment>") {
            deepest = std::max(deepest, DepthOf(child) + 1);
        }
    }
    return deepest;
}

// The depth that the parser finds; nothing when it refuses the text.
std::optional<std::size_t> ParsedDepth(const std::string& text) {
    std::istringstream stream(text);
    boost::property_tree::ptree tree;
    try {
        boost::property_tree::read_xml(stream, tree);
    } catch (const boost::property_tree::xml_parser_error&) {
        return std::nullopt;
    }
    return DepthOf(tree);
}

TEST(XmlNestingTest, DepthAgreesWithTheParserOnRandomTexts) {
    std::mt19937 random(20240229);
    int accepted = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = RandomText(random);
        const auto depth = ParsedDepth(text);
        if (!depth) continue;
        ++accepted;
        ASSERT_EQ(FindElementDeeperThan(text, *depth), std::nullopt) << text;
        ASSERT_NE(FindElementDeeperThan(text, *depth - 1), std::nullopt) << text;
    }
    EXPECT_GT(accepted, 500);
}

TEST(XmlNestingTest, NestingUpToTheLimitIsFine) {
    EXPECT_EQ(FindElementDeeperThan("<a><b><c></c></b></a>", 3), std::nullopt);
}

TEST(XmlNestingTest, FirstElementBeyondTheLimitIsFound) {
    EXPECT_EQ(FindElementDeeperThan("<a><b><c></c></b></a>", 2), 6U);
}

TEST(XmlNestingTest, SelfClosedElementBeyondTheLimitIsFound) {
    EXPECT_EQ(FindElementDeeperThan("<a><b/></a>", 1), 3U);
}

TEST(XmlNestingTest, NeighboursDoNotAddUp) {
    EXPECT_EQ(FindElementDeeperThan("<a>" + Repeated("<b></b><c/>", 1000) + "</a>", 2),
              std::nullopt);
}

TEST(XmlNestingTest, OpenTagsWithoutEndAreCounted) {
    EXPECT_EQ(FindElementDeeperThan(Repeated("<a>", 1000000), 256), 3U * 256U);
}

TEST(XmlNestingTest, EmptyAndBlankTextHasNoElement) {
    EXPECT_EQ(FindElementDeeperThan("", 0), std::nullopt);
    EXPECT_EQ(FindElementDeeperThan(" \r\n\t", 0), std::nullopt);
}

TEST(XmlNestingTest, CommentsOpenNoElement) {
    EXPECT_EQ(FindElementDeeperThan("<a><!-- <b><c> --></a>", 1), std::nullopt);
    EXPECT_EQ(FindElementDeeperThan("<a><!-- > <b> --><b/></a>", 1), 17U);
}

TEST(XmlNestingTest, CdataOpensNoElement) {
    EXPECT_EQ(FindElementDeeperThan("<a><![CDATA[<b><c>]]></a>", 1), std::nullopt);
    EXPECT_EQ(FindElementDeeperThan("<a><![CDATA[]]><b/></a>", 1), 15U);
}

TEST(XmlNestingTest, ProcessingInstructionsOpenNoElement) {
    EXPECT_EQ(FindElementDeeperThan("<?xml version=\"1.0\"?><a><?pi <b> ?></a>", 1), std::nullopt);
}

TEST(XmlNestingTest, DocumentTypeOpensNoElement) {
    const std::string doctype = "<!DOCTYPE a [<!ELEMENT a (b)> [<b><c>] ]>";
    EXPECT_EQ(FindElementDeeperThan(doctype + "<a/>", 1), std::nullopt);
    EXPECT_EQ(FindElementDeeperThan(doctype + "<a><b/></a>", 1), doctype.size() + 3);
}

TEST(XmlNestingTest, UnknownDeclarationEndsAtItsBracket) {
    EXPECT_EQ(FindElementDeeperThan("<!OTHER <b ><a><b/></a>", 1), 15U);
}

TEST(XmlNestingTest, AttributeValuesOpenNoElement) {
    EXPECT_EQ(FindElementDeeperThan("<a x='<b><c>' y = \"</a>'<b>\"></a>", 1), std::nullopt);
}

TEST(XmlNestingTest, ClosingTagInAnAttributeDoesNotCount) {
    EXPECT_EQ(FindElementDeeperThan("<a x=\"</a>\"><b></b></a>", 1), 12U);
}

TEST(XmlNestingTest, BracketInAnAttributeDoesNotEndTheTag) {
    EXPECT_EQ(FindElementDeeperThan("<a x='/>'><b/></a>", 1), 10U);
}

TEST(XmlNestingTest, QuotationMarkInAnAttributeNameOpensNoValue) {
    EXPECT_EQ(FindElementDeeperThan("<a q'r='1'><b/></a>", 1), 11U);
}

TEST(XmlNestingTest, OddCharactersInNamesBelongToTheName) {
    EXPECT_EQ(FindElementDeeperThan("<a<b><c'></c'></a<b>", 2), std::nullopt);
    EXPECT_EQ(FindElementDeeperThan("<a\"><b/></a\">", 1), 4U);
}

TEST(XmlNestingTest, SearchEndsAtTheFirstNul) {
    const std::string text = std::string("<a></a>") + '\0' + "<a><b><c>";
    EXPECT_EQ(FindElementDeeperThan(text, 1), std::nullopt);
}

TEST(XmlNestingTest, SearchEndsAtAMalformedTag) {
    for (const char* tag : {"<>", "< a>", "<a b>", "<a b=c>", "<a b='1>", "<a ?>", "</a>", "<a /x>",
                            "<!-- ", "<![CDATA[", "<?pi", "<!DOCTYPE a ["}) {
        EXPECT_EQ(FindElementDeeperThan(tag + Repeated("<x>", 10), 5), std::nullopt) << tag;
    }
}

TEST(XmlNestingTest, BlanksInsideTagsAreSkipped) {
    EXPECT_EQ(FindElementDeeperThan("<a\r\n\tx = '1'\n y\t=\t\"2\" ><b /></a >", 2), std::nullopt);
    EXPECT_EQ(FindElementDeeperThan("<a\nx = '1' ><b /></a>", 1), 12U);
}

}  // namespace
