#include "transport/http/curl_transfer.h"

#include <openssl/ssl.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string_view>
#include <utility>

#include "transport/http/curl_error_table.h"
#include "transport/http/url_text.h"

namespace Vantix::transport {
namespace {

// No BMC needs more; an endless header section would otherwise fill the memory.
constexpr std::size_t kMaxHeaderBytes = 256 * 1024;

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return lower;
}

curl_off_t Microseconds(CURL* easy, CURLINFO which) {
    curl_off_t value = 0;
    curl_easy_getinfo(easy, which, &value);
    return value;
}

// What ALPN settled; libcurl itself tells the version only once an answer has come.
bool IsHttp2Agreed(CURL* easy) {
    curl_tlssessioninfo* session = nullptr;
    curl_easy_getinfo(easy, CURLINFO_TLS_SSL_PTR, &session);
    if (session == nullptr || session->backend != CURLSSLBACKEND_OPENSSL ||
        session->internals == nullptr) {
        return false;
    }
    const unsigned char* name = nullptr;
    unsigned int length = 0;
    SSL_get0_alpn_selected(static_cast<SSL*>(session->internals), &name, &length);
    return length == 2 && std::memcmp(name, "h2", 2) == 0;
}

// A line break in a header would let a token from outside add headers of its own.
bool IsSafeHeader(const std::string& text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
}

}  // namespace

CurlTransfer::CurlTransfer(HttpRequest request, HttpTransport::Handler handler)
    : request_(std::move(request)), handler_(std::move(handler)) {}

void CurlTransfer::Attach(EasyHandle easy, const TransferContext& context, bool force_http1,
                          bool force_fresh) {
    easy_ = std::move(easy);
    response_ = HttpResponse();
    uploaded_ = 0;
    header_bytes_ = 0;
    is_connected_ = is_http2_ = is_too_large_ = is_lost_on_reuse_ = false;
    error_text_[0] = '\0';
    is_http1_forced_ = force_http1;
    max_body_bytes_ = context.settings.max_body_bytes;
    SetConnectionOptions(context);
    SetRequestOptions(context);
    SetHeaders();
    context.trust.Apply(easy_.get());
    curl_easy_setopt(
        easy_.get(), CURLOPT_HTTP_VERSION,
        static_cast<long>(force_http1 ? CURL_HTTP_VERSION_1_1 : CURL_HTTP_VERSION_2TLS));
    curl_easy_setopt(easy_.get(), CURLOPT_FRESH_CONNECT, force_fresh ? 1L : 0L);
}

void CurlTransfer::SetConnectionOptions(const TransferContext& context) {
    CURL* const easy = easy_.get();
    const CurlSettings& settings = context.settings;
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                     static_cast<long>(settings.connect_timeout.count()));
    curl_easy_setopt(easy, CURLOPT_USERAGENT, settings.user_agent.c_str());
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_SHARE, context.share);
    if (!settings.use_environment_proxy || !settings.proxy.empty()) {
        // An empty text means: no proxy, whatever the environment says.
        curl_easy_setopt(easy, CURLOPT_PROXY, settings.proxy.c_str());
        curl_easy_setopt(easy, CURLOPT_NOPROXY, "");
    }
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error_text_);
    curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &CurlTransfer::OnRequestAboutToBeSent);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlTransfer::OnHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlTransfer::OnBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE,
                     static_cast<curl_off_t>(settings.max_body_bytes));
}

void CurlTransfer::SetRequestOptions(const TransferContext& context) {
    CURL* const easy = easy_.get();
    const std::string url = context.base_url + EncodeTarget(request_.target);
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    if (request_.method == HttpMethod::kPost) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(request_.body.size()));
        curl_easy_setopt(easy, CURLOPT_READFUNCTION, &CurlTransfer::OnUpload);
        curl_easy_setopt(easy, CURLOPT_READDATA, this);
    } else if (request_.method == HttpMethod::kDelete) {
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, "DELETE");
    }
    if (request_.basic) {
        curl_easy_setopt(easy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC));
        curl_easy_setopt(easy, CURLOPT_USERNAME, request_.basic->first.c_str());
        curl_easy_setopt(easy, CURLOPT_PASSWORD, request_.basic->second.c_str());
    }
    // Decoding must be switched on, but offering compression upsets some services, and refusing it
    // upsets others: the header itself is taken out again.
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
}

void CurlTransfer::SetHeaders() {
    curl_slist* list = curl_slist_append(nullptr, "Accept-Encoding:");
    list = curl_slist_append(list, "Expect:");
    for (const auto& [name, value] : request_.headers) {
        if (!IsSafeHeader(name) || !IsSafeHeader(value)) {
            continue;
        }
        // libcurl takes "Name:" as the wish to send no such header; "Name;" sends it empty.
        const std::string line = value.empty() ? name + ";" : name + ": " + value;
        list = curl_slist_append(list, line.c_str());
    }
    headers_.reset(list);
    curl_easy_setopt(easy_.get(), CURLOPT_HTTPHEADER, list);
}

EasyHandle CurlTransfer::Detach() {
    curl_easy_reset(easy_.get());
    headers_.reset();
    return std::move(easy_);
}

CurlTransfer::TimePoint CurlTransfer::SilentUntil() const {
    if (!is_connected_ || request_.timeout.count() <= 0) {
        return TimePoint::max();
    }
    return last_sign_of_life_ + request_.timeout;
}

HttpOutcome CurlTransfer::Finish(CURLcode code, const TlsTrust& trust) {
    HttpOutcome outcome;
    ReadFacts();
    const std::string text = error_text_[0] == '\0' ? curl_easy_strerror(code) : error_text_;
    const FailureFacts facts{is_connected_, is_too_large_, is_lost_on_reuse_};
    outcome.error.kind = KindOfCurlCode(code, facts, text);
    if (outcome.error.kind == HttpErrorKind::kTooLarge) {
        outcome.error.text =
            "the answer is larger than " + std::to_string(max_body_bytes_) + " bytes";
    } else if (is_lost_on_reuse_) {
        outcome.error.text = "the kept connection was closed by the peer";
        response_.is_reused_connection = true;
    } else if (outcome.error.kind != HttpErrorKind::kNone) {
        outcome.error.text = trust.Explain(code, text);
    }
    if (!outcome.Answered()) {
        response_.body = std::string();
        outcome.error.never_sent = !is_connected_;
    }
    outcome.response = std::move(response_);
    return outcome;
}

HttpOutcome CurlTransfer::FinishSilent() {
    HttpOutcome outcome;
    ReadFacts();
    outcome.error.kind = HttpErrorKind::kTimeout;
    outcome.error.text =
        "no byte came for " + std::to_string(request_.timeout.count()) + " milliseconds";
    response_.body = std::string();
    outcome.response = std::move(response_);
    return outcome;
}

bool CurlTransfer::FailedInHttp2(CURLcode code) const {
    return code == CURLE_HTTP2 || code == CURLE_HTTP2_STREAM ||
           (is_http2_ && (code == CURLE_WEIRD_SERVER_REPLY || code == CURLE_UNSUPPORTED_PROTOCOL));
}

bool CurlTransfer::WasCutInHttp2(CURLcode code) const {
    return is_http2_ && (code == CURLE_RECV_ERROR || code == CURLE_GOT_NOTHING);
}

void CurlTransfer::ReadFacts() {
    CURL* const easy = easy_.get();
    long status = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    response_.status = static_cast<int>(status);
    long new_connections = 0;
    curl_easy_getinfo(easy, CURLINFO_NUM_CONNECTS, &new_connections);
    response_.is_reused_connection = is_connected_ && new_connections == 0;
    const curl_off_t total = Microseconds(easy, CURLINFO_TOTAL_TIME_T);
    const curl_off_t ready = Microseconds(easy, CURLINFO_PRETRANSFER_TIME_T);
    response_.response_time = Milliseconds(std::max<curl_off_t>(0, total - ready) / 1000);
    if (new_connections == 0) {
        return;
    }
    const curl_off_t connected = std::max(Microseconds(easy, CURLINFO_APPCONNECT_TIME_T),
                                          Microseconds(easy, CURLINFO_CONNECT_TIME_T));
    const curl_off_t resolved = Microseconds(easy, CURLINFO_NAMELOOKUP_TIME_T);
    // Rounded up, so that 0 keeps meaning "reused".
    const curl_off_t spent = std::max<curl_off_t>(1, connected - resolved);
    response_.connect_time = Milliseconds((spent + 999) / 1000);
}

std::size_t CurlTransfer::TakeHeaderLine(std::string_view line) {
    last_sign_of_life_ = std::chrono::steady_clock::now();
    header_bytes_ += line.size();
    if (header_bytes_ > kMaxHeaderBytes) {
        is_too_large_ = true;
        return 0;
    }
    const std::string_view text = Trimmed(line);
    if (text.substr(0, 5) == "HTTP/") {
        response_.headers.clear();  // the headers of an interim answer do not count
        return line.size();
    }
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos) {
        response_.headers[LowerCase(Trimmed(text.substr(0, colon)))] =
            std::string(Trimmed(text.substr(colon + 1)));
    }
    return line.size();
}

std::size_t CurlTransfer::TakeBody(const char* bytes, std::size_t size) {
    last_sign_of_life_ = std::chrono::steady_clock::now();
    if (size > max_body_bytes_ - response_.body.size()) {
        is_too_large_ = true;
        return 0;
    }
    if (response_.body.empty()) {
        const curl_off_t announced = Microseconds(Handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T);
        if (announced > 0 && static_cast<std::size_t>(announced) <= max_body_bytes_) {
            response_.body.reserve(static_cast<std::size_t>(announced));
        }
    }
    response_.body.append(bytes, size);
    return size;
}

int CurlTransfer::OnRequestAboutToBeSent(void* self, char*, char*, int, int) {
    auto* const transfer = static_cast<CurlTransfer*>(self);
    // libcurl repeats a request by itself when a kept connection turns out dead. A repeated POST
    // could open a second session, and the reset of a GET must become known above; only a DELETE
    // may go again in silence.
    if (transfer->is_connected_ && transfer->request_.method != HttpMethod::kDelete) {
        transfer->is_lost_on_reuse_ = true;
        return CURL_PREREQFUNC_ABORT;
    }
    transfer->is_connected_ = true;
    transfer->is_http2_ = IsHttp2Agreed(transfer->Handle());
    transfer->last_sign_of_life_ = std::chrono::steady_clock::now();
    return CURL_PREREQFUNC_OK;
}

std::size_t CurlTransfer::OnUpload(char* buffer, std::size_t size, std::size_t count, void* self) {
    auto* const transfer = static_cast<CurlTransfer*>(self);
    const std::string& body = transfer->request_.body;
    const std::size_t part = std::min(size * count, body.size() - transfer->uploaded_);
    std::memcpy(buffer, body.data() + transfer->uploaded_, part);
    transfer->uploaded_ += part;
    return part;
}

std::size_t CurlTransfer::OnHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
    return static_cast<CurlTransfer*>(self)->TakeHeaderLine(std::string_view(bytes, size * count));
}

std::size_t CurlTransfer::OnBody(char* bytes, std::size_t size, std::size_t count, void* self) {
    return static_cast<CurlTransfer*>(self)->TakeBody(bytes, size * count);
}

}  // namespace Vantix::transport
