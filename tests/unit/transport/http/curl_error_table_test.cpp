#include "transport/http/curl_error_table.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

struct CodeCase {
    CURLcode code;
    HttpErrorKind kind;
};

class CurlErrorTableTest : public ::testing::TestWithParam<CodeCase> {};

TEST_P(CurlErrorTableTest, CodeOfAConnectedExchangeHasItsKind) {
    const FailureFacts connected{true, false, false};
    EXPECT_EQ(KindOfCurlCode(GetParam().code, connected, ""), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    Codes, CurlErrorTableTest,
    ::testing::Values(CodeCase{CURLE_OK, HttpErrorKind::kNone},
                      CodeCase{CURLE_URL_MALFORMAT, HttpErrorKind::kBadAddress},
                      CodeCase{CURLE_COULDNT_RESOLVE_HOST, HttpErrorKind::kResolve},
                      CodeCase{CURLE_COULDNT_RESOLVE_PROXY, HttpErrorKind::kResolve},
                      CodeCase{CURLE_COULDNT_CONNECT, HttpErrorKind::kConnect},
                      CodeCase{CURLE_PROXY, HttpErrorKind::kConnect},
                      CodeCase{CURLE_OPERATION_TIMEDOUT, HttpErrorKind::kTimeout},
                      CodeCase{CURLE_SSL_CONNECT_ERROR, HttpErrorKind::kTlsHandshake},
                      CodeCase{CURLE_SSL_CIPHER, HttpErrorKind::kTlsHandshake},
                      CodeCase{CURLE_SSL_CERTPROBLEM, HttpErrorKind::kTlsHandshake},
                      CodeCase{CURLE_PEER_FAILED_VERIFICATION, HttpErrorKind::kUntrusted},
                      CodeCase{CURLE_SSL_CACERT_BADFILE, HttpErrorKind::kUntrusted},
                      CodeCase{CURLE_SSL_ISSUER_ERROR, HttpErrorKind::kUntrusted},
                      CodeCase{CURLE_SSL_PINNEDPUBKEYNOTMATCH, HttpErrorKind::kUntrusted},
                      CodeCase{CURLE_GOT_NOTHING, HttpErrorKind::kReset},
                      CodeCase{CURLE_SEND_ERROR, HttpErrorKind::kReset},
                      CodeCase{CURLE_RECV_ERROR, HttpErrorKind::kReset},
                      CodeCase{CURLE_SEND_FAIL_REWIND, HttpErrorKind::kReset},
                      CodeCase{CURLE_PARTIAL_FILE, HttpErrorKind::kTruncated},
                      CodeCase{CURLE_FILESIZE_EXCEEDED, HttpErrorKind::kTooLarge},
                      CodeCase{CURLE_WRITE_ERROR, HttpErrorKind::kOther},
                      CodeCase{CURLE_ABORTED_BY_CALLBACK, HttpErrorKind::kOther},
                      CodeCase{CURLE_UNSUPPORTED_PROTOCOL, HttpErrorKind::kProtocol},
                      CodeCase{CURLE_WEIRD_SERVER_REPLY, HttpErrorKind::kProtocol},
                      CodeCase{CURLE_HTTP2, HttpErrorKind::kProtocol},
                      CodeCase{CURLE_HTTP2_STREAM, HttpErrorKind::kProtocol},
                      CodeCase{CURLE_BAD_CONTENT_ENCODING, HttpErrorKind::kProtocol},
                      CodeCase{CURLE_OUT_OF_MEMORY, HttpErrorKind::kOther}),
    [](const auto& tested) { return "Code" + std::to_string(tested.param.code); });

TEST(CurlErrorTableFactsTest, TimeoutBeforeTheConnectionStandsIsAConnectTimeout) {
    EXPECT_EQ(KindOfCurlCode(CURLE_OPERATION_TIMEDOUT, {}, ""), HttpErrorKind::kConnectTimeout);
}

TEST(CurlErrorTableFactsTest, WriteErrorAtTheBodyLimitIsTooLarge) {
    EXPECT_EQ(KindOfCurlCode(CURLE_WRITE_ERROR, {true, true, false}, ""), HttpErrorKind::kTooLarge);
}

TEST(CurlErrorTableFactsTest, DeadKeptConnectionIsAReset) {
    EXPECT_EQ(KindOfCurlCode(CURLE_ABORTED_BY_CALLBACK, {true, false, true}, ""),
              HttpErrorKind::kReset);
}

TEST(CurlErrorTableFactsTest, HandshakeThatBreaksOffIsAReset) {
    for (const char* text : {"OpenSSL SSL_connect: Connection reset by peer in connection to x:1",
                             "OpenSSL SSL_connect: SSL_ERROR_SYSCALL in connection to x:1",
                             "error:0A000126:SSL routines::unexpected eof while reading"}) {
        EXPECT_EQ(KindOfCurlCode(CURLE_SSL_CONNECT_ERROR, {}, text), HttpErrorKind::kReset) << text;
    }
}

TEST(CurlErrorTableFactsTest, OldProtocolsAndShortKeysCallForTheLegacyOption) {
    for (const char* text : {"error:0A000102:SSL routines::unsupported protocol",
                             "error:0A00042E:SSL routines::tlsv1 alert protocol version",
                             "error:0A00018A:SSL routines::dh key too small",
                             "error:0A00018F:SSL routines::ee key too small",
                             "SSL certificate problem: EE certificate key too weak",
                             "error:0A000410:SSL routines::sslv3 alert handshake failure",
                             "error:0A000152:SSL routines::unsafe legacy renegotiation disabled",
                             "SSL certificate problem: CA certificate md too weak"}) {
        EXPECT_TRUE(MayLegacyTlsHelp(text)) << text;
    }
}

TEST(CurlErrorTableFactsTest, OtherTlsFailuresDoNotCallForTheLegacyOption) {
    for (const char* text : {"SSL certificate problem: self-signed certificate",
                             "SSL certificate problem: certificate has expired",
                             "error:0A00010B:SSL routines::wrong version number", ""}) {
        EXPECT_FALSE(MayLegacyTlsHelp(text)) << text;
    }
}

}  // namespace
}  // namespace Vantix::transport
