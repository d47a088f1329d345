#include "transport/cim_xml/xml_guard.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

std::string Nested(int levels) {
    std::string text;
    for (int level = 0; level < levels; ++level) text += "<a>";
    for (int level = 0; level < levels; ++level) text += "</a>";
    return text;
}

TEST(XmlGuardTest, OrdinaryTextIsUsableWhole) {
    const std::string text = "<?xml version='1.0'?><!-- < --><a b='>'><c/><![CDATA[<x>]]></a>";

    EXPECT_EQ(GuardXml(text).usable, text.size());
    EXPECT_EQ(GuardXml(text).problem, "");
}

TEST(XmlGuardTest, NestingUpToTheLimitPasses) {
    EXPECT_EQ(GuardXml(Nested(64)).problem, "");
}

TEST(XmlGuardTest, DeeperNestingEndsTheUsablePart) {
    const XmlGuardResult result = GuardXml(Nested(65));

    EXPECT_EQ(result.usable, 64U * 3U);
    EXPECT_EQ(result.problem, "it is nested too deeply");
}

TEST(XmlGuardTest, SiblingsDoNotNest) {
    std::string text = "<a>";
    for (int n = 0; n < 1000; ++n) text += "<b/><c></c>";

    EXPECT_EQ(GuardXml(text).problem, "");
}

TEST(XmlGuardTest, MillionOpenTagsStopEarly) {
    std::string text;
    for (int n = 0; n < 1000000; ++n) text += "<a>";

    EXPECT_EQ(GuardXml(text).usable, 64U * 3U);
}

TEST(XmlGuardTest, TooManyElementsEndTheUsablePart) {
    XmlLimits limits;
    limits.elements = 3;

    const XmlGuardResult result = GuardXml("<a><b/><b/><b/></a>", limits);

    EXPECT_EQ(result.problem, "it has too many elements");
    EXPECT_EQ(result.usable, 11U);
}

TEST(XmlGuardTest, DeclaredEntitiesAreRefused) {
    const std::string bomb = "<!DOCTYPE a [<!ENTITY x \"yyyy\"><!ENTITY z \"&x;&x;\">]><a>&z;</a>";

    EXPECT_EQ(GuardXml(bomb).problem, "it declares entities");
}

TEST(XmlGuardTest, DocumentTypeAloneIsNoHarm) {
    EXPECT_EQ(GuardXml("<!DOCTYPE CIM SYSTEM \"CIM_DTD_V20.dtd\"><CIM/>").problem, "");
}

TEST(XmlGuardTest, UnendedMarkupReachesToTheEnd) {
    for (const std::string text : {"<a b='", "<!-- ", "<![CDATA[", "<?x", "<", "</", "<!"}) {
        EXPECT_EQ(GuardXml(text).usable, text.size()) << text;
    }
}

}  // namespace
}  // namespace Vantix::transport
