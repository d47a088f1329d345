#include "transport/http/url_text.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

TEST(UrlTextTest, NamesAndIpv4AddressesStandAsTheyAre) {
    EXPECT_EQ(UrlHost("bmc7.example"), "bmc7.example");
    EXPECT_EQ(UrlHost("127.0.0.1"), "127.0.0.1");
}

TEST(UrlTextTest, Ipv6AddressesStandInBrackets) {
    EXPECT_EQ(UrlHost("::1"), "[::1]");
}

TEST(UrlTextTest, ZoneIdIsEncoded) {
    EXPECT_EQ(UrlHost("fe80::1%eth0"), "[fe80::1%25eth0]");
}

TEST(UrlTextTest, HostTextMayBeANameOrAnAddress) {
    for (const char* host : {"bmc7", "bmc_7.example.", "127.0.0.1", "::1", "fe80::1%eth0"}) {
        EXPECT_TRUE(IsHostText(host)) << host;
    }
}

TEST(UrlTextTest, HostTextEndsNoHostPartOfAUrl) {
    for (const char* host : {"", "a b", "a/b", "a?b", "a#b", "a@b", "a\\b", "[a", "a]", "a\nb"}) {
        EXPECT_FALSE(IsHostText(host)) << host;
    }
}

struct TargetCase {
    const char* name;
    const char* given;
    const char* encoded;
};

class EncodeTargetTest : public ::testing::TestWithParam<TargetCase> {};

TEST_P(EncodeTargetTest, ChangesOnlyWhatMayNotBeSent) {
    EXPECT_EQ(EncodeTarget(GetParam().given), GetParam().encoded);
}

INSTANTIATE_TEST_SUITE_P(
    UrlText, EncodeTargetTest,
    ::testing::Values(TargetCase{"Plain", "/redfish/v1/Systems/1", "/redfish/v1/Systems/1"},
                      TargetCase{"Root", "/", "/"}, TargetCase{"Empty", "", "/"},
                      TargetCase{"NoSlash", "redfish", "/redfish"},
                      TargetCase{"QuerySigns", "/a?$expand=.($levels=1)&b=c,d",
                                 "/a?$expand=.($levels=1)&b=c,d"},
                      TargetCase{"SubDelimiters", "/!$&'()*+,;=:@-._~", "/!$&'()*+,;=:@-._~"},
                      TargetCase{"Blank", "/a b", "/a%20b"},
                      TargetCase{"Quotes", "/\"a\"", "/%22a%22"},
                      TargetCase{"LineBreak", "/a\r\nX: y", "/a%0D%0AX:%20y"},
                      TargetCase{"Delete", "/\x7F", "/%7F"},
                      TargetCase{"NonAscii", "/\xC3\xA4\xFF", "/%C3%A4%FF"},
                      TargetCase{"Encoded", "/a%20b%2f", "/a%20b%2f"},
                      TargetCase{"LonePercent", "/100%", "/100%25"},
                      TargetCase{"PercentAndLetters", "/%zz%4", "/%25zz%254"},
                      TargetCase{"OtherForbidden", "/<>\\^`{|}", "/%3C%3E%5C%5E%60%7B%7C%7D"},
                      TargetCase{"DotSegments", "/a/../b", "/a/../b"}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace Vantix::transport
