// One exchange on a libcurl easy handle: sets the handle up, collects the answer, and turns
// libcurl's result into ours.
//
// Does not drive the handle and does not decide about repetition; CurlTransport does.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <string>

#include "transport/http/curl_transport.h"
#include "transport/http/tls_trust.h"

namespace Vantix::transport {

struct EasyHandleDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
using EasyHandle = std::unique_ptr<CURL, EasyHandleDeleter>;

/// What is the same for all exchanges of a transport.
struct TransferContext {
    const CurlSettings& settings;
    TlsTrust& trust;
    std::string base_url;     ///< scheme, host and port, no slash at the end
    CURLSH* share = nullptr;  ///< TLS sessions, so that later handshakes are short
};

class CurlTransfer {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    CurlTransfer(HttpRequest request, HttpTransport::Handler handler);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    /// Puts the exchange on `easy`, from the start. `force_http1` offers HTTP/1.1 only,
    /// `force_fresh` asks for a new connection.
    void Attach(EasyHandle easy, const TransferContext& context, bool force_http1,
                bool force_fresh);
    [[nodiscard]] CURL* Handle() const { return easy_.get(); }
    /// The handle, for the next exchange; this one keeps only what was received.
    [[nodiscard]] EasyHandle Detach();

    /// When the peer will have been silent for too long; the far future while still connecting.
    [[nodiscard]] TimePoint SilentUntil() const;

    /// The outcome after libcurl ended with `code`. Call it once, before Detach().
    [[nodiscard]] HttpOutcome Finish(CURLcode code, const TlsTrust& trust);
    /// The outcome of an exchange that was given up because the peer kept silent.
    [[nodiscard]] HttpOutcome FinishSilent();

    /// True when it failed in the HTTP/2 layer, so that HTTP/1.1 may still work.
    [[nodiscard]] bool FailedInHttp2(CURLcode code) const;
    /// True when the peer hung up on an HTTP/2 connection before anything came: a sign that it does
    /// not speak HTTP/2 unless it did so before.
    [[nodiscard]] bool WasCutInHttp2(CURLcode code) const;
    [[nodiscard]] bool IsHttp2() const { return is_http2_; }
    [[nodiscard]] bool IsHttp1Forced() const { return is_http1_forced_; }

    /// Nothing was sent yet: its connection is still being opened.
    [[nodiscard]] bool IsConnecting() const { return !is_connected_; }

    [[nodiscard]] HttpMethod Method() const { return request_.method; }
    [[nodiscard]] HttpTransport::Handler TakeHandler() { return std::move(handler_); }

  private:
    struct ListDeleter {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    void SetRequestOptions(const TransferContext& context);
    void SetConnectionOptions(const TransferContext& context);
    void SetHeaders();
    void ReadFacts();
    [[nodiscard]] std::size_t TakeHeaderLine(std::string_view line);
    [[nodiscard]] std::size_t TakeBody(const char* bytes, std::size_t size);

    static int OnRequestAboutToBeSent(void* self, char*, char*, int, int);
    static std::size_t OnUpload(char* buffer, std::size_t size, std::size_t count, void* self);
    static std::size_t OnHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* bytes, std::size_t size, std::size_t count, void* self);

    HttpRequest request_;
    HttpTransport::Handler handler_;
    EasyHandle easy_;
    std::unique_ptr<curl_slist, ListDeleter> headers_;
    char error_text_[CURL_ERROR_SIZE] = "";
    HttpResponse response_;
    TimePoint last_sign_of_life_;
    std::size_t uploaded_ = 0;
    std::size_t header_bytes_ = 0;
    std::size_t max_body_bytes_ = 0;
    bool is_connected_ = false;
    bool is_http2_ = false;
    bool is_http1_forced_ = false;
    bool is_too_large_ = false;
    bool is_lost_on_reuse_ = false;
};

}  // namespace Vantix::transport
