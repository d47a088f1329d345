// What arrives at a server, word for word.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/transport/http/http_client.h"

namespace Vantix::transport {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::RequestRecord;

class RequestTextTest : public ::testing::Test {
  protected:
    RequestRecord Arrived(const HttpRequest& request) {
        const HttpOutcome outcome = Ask(transport_, request);
        EXPECT_TRUE(outcome.Answered()) << outcome.error.text;
        const simulators::BmcCounts counts = bmc_.Counts();
        return counts.log.empty() ? RequestRecord() : counts.log.back();
    }

    static std::string HeaderOf(const RequestRecord& record, const char* name) {
        const std::string* value = simulators::FindHeader(record.headers, name);
        return value == nullptr ? "(absent)" : *value;
    }

    BmcSimulator bmc_{SmallBmc()};
    CurlTransport transport_{SettingsFor(bmc_)};
};

struct TargetText {
    const char* name;
    const char* given;
    const char* sent;
};

class RequestTargetTest : public RequestTextTest,
                          public ::testing::WithParamInterface<TargetText> {};

TEST_P(RequestTargetTest, ArrivesAsExpected) {
    EXPECT_EQ(Arrived(Get(GetParam().given)).target, GetParam().sent);
}

INSTANTIATE_TEST_SUITE_P(
    RequestText, RequestTargetTest,
    ::testing::Values(TargetText{"Expand", "/redfish/v1?$expand=.($levels=1)",
                                 "/redfish/v1?$expand=.($levels=1)"},
                      TargetText{"QueryOptions", "/redfish/v1?$skip=50&$top=50,x",
                                 "/redfish/v1?$skip=50&$top=50,x"},
                      TargetText{"Blank", "/redfish/v1/Installed-0-   __NIC.Slot.1-1",
                                 "/redfish/v1/Installed-0-%20%20%20__NIC.Slot.1-1"},
                      TargetText{"BlankInQuery", "/redfish/v1?$filter=Name eq \"x\"",
                                 "/redfish/v1?$filter=Name%20eq%20%22x%22"},
                      TargetText{"EncodedBytes", "/redfish/v1/a%20b%2Fc", "/redfish/v1/a%20b%2Fc"},
                      TargetText{"DotSegments", "/redfish/v1/../v1/./Systems",
                                 "/redfish/v1/../v1/./Systems"},
                      TargetText{"TrailingSlash", "/redfish/v1/", "/redfish/v1/"},
                      TargetText{"NonAscii", "/redfish/v1/\xC3\xA4", "/redfish/v1/%C3%A4"},
                      TargetText{"Colons", "/redfish/v1/a:b@c;d", "/redfish/v1/a:b@c;d"},
                      TargetText{"DoubleSlash", "/redfish//v1", "/redfish//v1"},
                      TargetText{"MissingSlash", "redfish/v1", "/redfish/v1"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(RequestTextTest, NoCredentialsMeanNoAuthorizationHeader) {
    EXPECT_EQ(HeaderOf(Arrived(Get(kRoot)), "Authorization"), "(absent)");
}

TEST_F(RequestTextTest, CredentialsOfOneRequestDoNotStickToTheNext) {
    EXPECT_NE(HeaderOf(Arrived(GetAs(kRoot, "demo", "x")), "Authorization"), "(absent)");
    EXPECT_EQ(HeaderOf(Arrived(Get(kRoot)), "Authorization"), "(absent)");
}

TEST_F(RequestTextTest, BasicCredentialsComeWithTheFirstRequest) {
    // "demo:x" in Base64
    EXPECT_EQ(HeaderOf(Arrived(GetAs(kRoot, "demo", "x")), "Authorization"), "Basic ZGVtbzp4");
    EXPECT_EQ(bmc_.Counts().requests, 1);
}

TEST(RequestTextPasswordTest, AnyPasswordArrivesIntact) {
    for (const char* password : {"p:\xC3\xA4\"\\ $", "@/?#", "%20", "\xF0\x9F\x98\x80", ""}) {
        BmcOptions options = SmallBmc();
        options.password = password;
        const BmcSimulator bmc(options);
        const HttpOutcome outcome =
            AskOnce(SettingsFor(bmc), GetAs("/redfish/v1/Systems", "demo", password));
        EXPECT_EQ(outcome.response.status, 200) << password;
    }
}

TEST_F(RequestTextTest, CompressionIsNeitherOfferedNorRefused) {
    EXPECT_EQ(HeaderOf(Arrived(Get(kRoot)), "Accept-Encoding"), "(absent)");
}

TEST_F(RequestTextTest, HeadersOfTheRequestArrive) {
    HttpRequest request = Get(kRoot);
    request.headers = {{"OData-Version", "4.0"}, {"X-Empty", ""}};
    const RequestRecord record = Arrived(request);
    EXPECT_EQ(HeaderOf(record, "OData-Version"), "4.0");
    EXPECT_EQ(HeaderOf(record, "X-Empty"), "");
}

TEST_F(RequestTextTest, HeaderWithALineBreakIsNotSent) {
    HttpRequest request = Get(kRoot);
    request.headers = {{"X-Auth-Token", "a\r\nX-Smuggled: 1"}};
    const RequestRecord record = Arrived(request);
    EXPECT_EQ(HeaderOf(record, "X-Auth-Token"), "(absent)");
    EXPECT_EQ(HeaderOf(record, "X-Smuggled"), "(absent)");
}

TEST_F(RequestTextTest, UserAgentIsOurs) {
    EXPECT_EQ(HeaderOf(Arrived(Get(kRoot)), "User-Agent"), "tarsel");
}

TEST_F(RequestTextTest, PostCarriesItsBody) {
    const std::string login = R"({"UserName":"demo","Password":"demo-pass-1"})";
    const HttpOutcome outcome =
        Ask(transport_, PostTo("/redfish/v1/SessionService/Sessions", login));
    EXPECT_EQ(outcome.response.status, 201);
    EXPECT_NE(outcome.response.Header("x-auth-token"), "");
    EXPECT_EQ(bmc_.Counts().sessions_made, 1);
}

TEST_F(RequestTextTest, DeleteIsSentAsSuch) {
    const std::string login = R"({"UserName":"demo","Password":"demo-pass-1"})";
    const HttpOutcome opened =
        Ask(transport_, PostTo("/redfish/v1/SessionService/Sessions", login));
    HttpRequest request = Get(opened.response.Header("location"));
    request.method = HttpMethod::kDelete;
    request.headers = {{"X-Auth-Token", opened.response.Header("x-auth-token")}};
    EXPECT_EQ(Arrived(request).method, "DELETE");
    EXPECT_EQ(bmc_.Counts().sessions_ended, 1);
}

TEST_F(RequestTextTest, PostWithoutBodyHasLengthZero) {
    EXPECT_EQ(HeaderOf(Arrived(PostTo("/redfish/v1/Systems", "")), "Content-Length"), "0");
}

TEST_F(RequestTextTest, MethodOfOneRequestDoesNotStickToTheNext) {
    Arrived(PostTo("/redfish/v1/Systems", "{}"));
    EXPECT_EQ(Arrived(Get(kRoot)).method, "GET");
}

}  // namespace
}  // namespace Vantix::transport
