#include "transport/redfish/odata_link.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

struct LinkCase {
    const char* text;
    const char* path;
};

TEST(ODataLinkTest, EverySpellingOfOneResourceGivesOnePath) {
    for (const char* text :
         {"/redfish/v1/Systems/1", "/redfish/v1/Systems/1/", "/redfish/v1//Systems/1",
          "//redfish/v1/Systems/1", "https://192.0.2.7/redfish/v1/Systems/1",
          "HTTP://bmc.invalid:8443/redfish/v1/Systems/1/",
          "https://[2001:db8::7]/redfish/v1/Systems/1", "//bmc.invalid/redfish/v1/Systems/1",
          "redfish/v1/Systems/1", " /redfish/v1/Systems/1\n", "/redfish/v1/Systems/1?$select=Id",
          "/redfish/v1/Systems/1#/Boot", "/redfish/v1/./Systems/1",
          "/redfish/v1/Chassis/../Systems/1"}) {
        EXPECT_EQ("/redfish/v1/Systems/1", LinkPath(text)) << text;
    }
}

TEST(ODataLinkTest, RelativeReferenceResolvesAgainstTheHolder) {
    const LinkCase cases[] = {{"3", "/redfish/v1/Chassis/3"},
                              {"../Systems/1", "/redfish/v1/Systems/1"},
                              {"?page=2", "/redfish/v1/Chassis/1"},
                              {"#/Name", "/redfish/v1/Chassis/1"},
                              {"../../../../../x", "/x"}};
    for (const auto& [text, path] : cases) {
        EXPECT_EQ(path, LinkPath(text, "/redfish/v1/Chassis/1")) << text;
    }
}

TEST(ODataLinkTest, EmptyTextIsNoLink) {
    for (const char* text : {"", "  ", "\n"}) {
        EXPECT_EQ("", LinkPath(text)) << '"' << text << '"';
        EXPECT_EQ("", LinkTarget(text));
    }
}

TEST(ODataLinkTest, HostWithoutPathIsTheRoot) {
    EXPECT_EQ("/", LinkPath("https://bmc.invalid"));
    EXPECT_EQ("/", LinkPath("/"));
    EXPECT_EQ("/", LinkPath("/../.."));
}

TEST(ODataLinkTest, NextPageKeepsItsQuery) {
    const LinkCase cases[] = {
        {"/redfish/v1/UpdateService/FirmwareInventory?$skip=50",
         "/redfish/v1/UpdateService/FirmwareInventory?$skip=50"},
        {"https://bmc.invalid/redfish/v1/X/?$skip=50&$top=50#part",
         "/redfish/v1/X?$skip=50&$top=50"},
        {"?$skip=50", "/redfish/v1/Chassis?$skip=50"},
        {"/redfish/v1/X?$filter=Name eq 'a b'", "/redfish/v1/X?$filter=Name%20eq%20'a%20b'"},
        {"/redfish/v1/X?u=https://h//a", "/redfish/v1/X?u=https://h//a"}};
    for (const auto& [text, target] : cases) {
        EXPECT_EQ(target, LinkTarget(text, "/redfish/v1/Chassis?$skip=0")) << text;
    }
}

TEST(ODataLinkTest, FragmentIsSplitOffAsPointer) {
    const auto link = SplitLink("https://bmc.invalid/redfish/v1/Chassis/1/Power/#/PowerSupplies/0");
    EXPECT_EQ("/redfish/v1/Chassis/1/Power", link.path);
    EXPECT_EQ("/PowerSupplies/0", link.pointer);
    EXPECT_EQ("", SplitLink("/redfish/v1/Chassis/1").pointer);
}

TEST(ODataLinkTest, OnlyIllegalBytesAreEncoded) {
    const LinkCase cases[] = {
        {"Installed-0-   __NIC.Slot.1-1", "Installed-0-%20%20%20__NIC.Slot.1-1"},
        {"a%20b%2Fc", "a%20b%2Fc"},
        {"100%", "100%25"},
        {"%zz%4", "%25zz%254"},
        {"$expand=.($levels=1)&a=b,c;d'e!f*g+h@i:j~k",
         "$expand=.($levels=1)&a=b,c;d'e!f*g+h@i:j~k"},
        {"\"<>\\^`{|}", "%22%3C%3E%5C%5E%60%7B%7C%7D"},
        {"\xC3\xBC\x01\x7F", "%C3%BC%01%7F"}};
    for (const auto& [text, encoded] : cases) EXPECT_EQ(encoded, EncodeIllegalBytes(text)) << text;
}

TEST(ODataLinkTest, EncodingTwiceChangesNothing) {
    const std::string once = LinkTarget("/redfish/v1/A b/100%?x=\"y z\"");
    EXPECT_EQ(once, LinkTarget(once));
}

TEST(ODataLinkTest, SameLinkIgnoresCaseHostAndSlashes) {
    EXPECT_TRUE(IsSameLink("/redfish/v1/Systems/1/Bios", "https://h/redfish/v1/systems/1/bios/"));
    EXPECT_TRUE(IsSameLink("/redfish/v1/A%2fB", "/redfish/v1/A%2FB"));
    EXPECT_FALSE(IsSameLink("/redfish/v1/Systems/1", "/redfish/v1/Systems/10"));
}

TEST(ODataLinkTest, LastSegmentSkipsTrailingSlash) {
    EXPECT_EQ("BMC", LastSegment("/redfish/v1/UpdateService/FirmwareInventory/BMC"));
    EXPECT_EQ("BMC", LastSegment("/redfish/v1/BMC/"));
    EXPECT_EQ("", LastSegment("/"));
    EXPECT_EQ("", LastSegment(""));
}

}  // namespace
}  // namespace Vantix::transport
