#include "transport/http/curl_error_table.h"

#include <algorithm>
#include <array>

namespace Vantix::transport {
namespace {

bool ContainsAny(std::string_view text, const std::string_view* first,
                 const std::string_view* last) {
    return std::any_of(first, last, [text](std::string_view part) {
        return text.find(part) != std::string_view::npos;
    });
}

// A peer that hangs up during the handshake is overloaded or restarting; it did not refuse us.
bool IsBrokenHandshake(std::string_view text) {
    constexpr std::array<std::string_view, 4> kWords = {"SSL_ERROR_SYSCALL", "reset by peer",
                                                        "Connection was reset", "unexpected eof"};
    return ContainsAny(text, kWords.data(), kWords.data() + kWords.size());
}

}  // namespace

HttpErrorKind KindOfCurlCode(CURLcode code, const FailureFacts& facts, std::string_view text) {
    switch (code) {
        case CURLE_OK:
            return HttpErrorKind::kNone;
        case CURLE_URL_MALFORMAT:
            return HttpErrorKind::kBadAddress;
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return HttpErrorKind::kResolve;
        case CURLE_COULDNT_CONNECT:
        case CURLE_PROXY:
            return HttpErrorKind::kConnect;
        case CURLE_OPERATION_TIMEDOUT:
            return facts.is_connected ? HttpErrorKind::kTimeout : HttpErrorKind::kConnectTimeout;
        case CURLE_SSL_CONNECT_ERROR:
            return IsBrokenHandshake(text) ? HttpErrorKind::kReset : HttpErrorKind::kTlsHandshake;
        case CURLE_SSL_CIPHER:
        case CURLE_SSL_CERTPROBLEM:
        case CURLE_SSL_ENGINE_NOTFOUND:
        case CURLE_SSL_ENGINE_SETFAILED:
        case CURLE_SSL_ENGINE_INITFAILED:
            return HttpErrorKind::kTlsHandshake;
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_CRL_BADFILE:
        case CURLE_SSL_ISSUER_ERROR:
        case CURLE_SSL_INVALIDCERTSTATUS:
        case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
            return HttpErrorKind::kUntrusted;
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_FAIL_REWIND:
            return HttpErrorKind::kReset;
        case CURLE_PARTIAL_FILE:
            return HttpErrorKind::kTruncated;
        case CURLE_FILESIZE_EXCEEDED:
            return HttpErrorKind::kTooLarge;
        case CURLE_WRITE_ERROR:
            return facts.is_too_large ? HttpErrorKind::kTooLarge : HttpErrorKind::kOther;
        case CURLE_ABORTED_BY_CALLBACK:
            return facts.is_lost_on_reuse ? HttpErrorKind::kReset : HttpErrorKind::kOther;
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_HTTP2:
        case CURLE_HTTP2_STREAM:
        case CURLE_BAD_CONTENT_ENCODING:
            return HttpErrorKind::kProtocol;
        default:
            return HttpErrorKind::kOther;
    }
}

bool MayLegacyTlsHelp(std::string_view text) {
    constexpr std::array<std::string_view, 10> kWords = {"unsupported protocol",
                                                         "protocol version",
                                                         "key too small",
                                                         "key too weak",
                                                         "handshake failure",
                                                         "unsafe legacy renegotiation",
                                                         "md too weak",
                                                         "no ciphers available",
                                                         "no protocols available",
                                                         "dh key"};
    return ContainsAny(text, kWords.data(), kWords.data() + kWords.size());
}

}  // namespace Vantix::transport
