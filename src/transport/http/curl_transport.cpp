#include "transport/http/curl_transport.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <utility>
#include <vector>

#include "transport/http/curl_transfer.h"
#include "transport/http/tls_trust.h"
#include "transport/http/url_text.h"

namespace Vantix::transport {
namespace {

using TimePoint = CurlTransfer::TimePoint;

// Once a process, and never undone: other parts of the process may use libcurl, too.
void InitializeLibrary() {
    static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
    static_cast<void>(initialized);
}

struct MultiDeleter {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct ShareDeleter {
    void operator()(CURLSH* share) const { curl_share_cleanup(share); }
};

std::string BaseUrl(const CurlSettings& settings) {
    return std::string(settings.use_tls ? "https://" : "http://") + UrlHost(settings.host) + ":" +
           std::to_string(settings.port);
}

HttpError CheckSettings(const CurlSettings& settings, const TlsTrust& trust) {
    if (!IsHostText(settings.host) || settings.port < 1 || settings.port > 65535) {
        return {HttpErrorKind::kBadAddress, "the host name, address or port is malformed"};
    }
    if (!trust.SetupError().empty()) {
        return {HttpErrorKind::kUntrusted, trust.SetupError()};
    }
    return {};
}

}  // namespace

class CurlTransport::Impl {
  public:
    explicit Impl(CurlSettings settings);
    ~Impl();

    void Submit(HttpRequest request, Handler handler);
    bool Step(Milliseconds max_wait);
    void SetMaxConnections(int count);
    void DropIdleConnections() { is_drop_wanted_ = true; }
    int PreferIdleConnections();
    void Abort(AbortScope scope);

  private:
    using TransferPointer = std::unique_ptr<CurlTransfer>;
    struct Finished {
        TransferPointer transfer;
        HttpOutcome outcome;
    };

    void MakeMulti();
    void StartWaiting();
    void Start(TransferPointer transfer, bool force_http1);
    void Perform();
    void CollectFinished();
    void CollectSilent();
    void EndTransfer(CURL* easy, CURLcode code);
    [[nodiscard]] TransferPointer TakeActive(CURL* easy);
    [[nodiscard]] int PollTime(Milliseconds max_wait) const;
    bool Deliver();

    CurlSettings settings_;
    TlsTrust trust_;
    HttpError setup_error_;
    std::unique_ptr<CURLSH, ShareDeleter> share_;
    std::vector<EasyHandle> spare_handles_;
    std::deque<TransferPointer> waiting_;
    std::vector<TransferPointer> active_;
    std::deque<Finished> finished_;
    std::unique_ptr<CURLM, MultiDeleter> multi_;
    bool is_drop_wanted_ = false;
    bool is_http1_only_ = false;
    bool has_http2_worked_ = false;
};

CurlTransport::Impl::Impl(CurlSettings settings)
    : settings_(std::move(settings)),
      trust_(settings_),
      setup_error_(CheckSettings(settings_, trust_)) {
    InitializeLibrary();
    share_.reset(curl_share_init());
    curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    MakeMulti();
}

CurlTransport::Impl::~Impl() {
    Abort(AbortScope::kEverything);
    // Connections refer to the trust settings, handles to the share: they go first.
    multi_.reset();
    spare_handles_.clear();
}

void CurlTransport::Impl::MakeMulti() {
    multi_.reset(curl_multi_init());
    curl_multi_setopt(multi_.get(), CURLMOPT_PIPELINING, static_cast<long>(CURLPIPE_MULTIPLEX));
    SetMaxConnections(settings_.max_connections);
    is_drop_wanted_ = false;
}

void CurlTransport::Impl::SetMaxConnections(int count) {
    settings_.max_connections = std::max(1, count);
    const long limit = settings_.max_connections;
    curl_multi_setopt(multi_.get(), CURLMOPT_MAX_TOTAL_CONNECTIONS, limit);
    curl_multi_setopt(multi_.get(), CURLMOPT_MAX_HOST_CONNECTIONS, limit);
    // A smaller cache than there are connections would throw keep-alive away.
    curl_multi_setopt(multi_.get(), CURLMOPT_MAXCONNECTS, limit + 1);
}

void CurlTransport::Impl::Submit(HttpRequest request, Handler handler) {
    waiting_.push_back(std::make_unique<CurlTransfer>(std::move(request), std::move(handler)));
}

bool CurlTransport::Impl::Step(Milliseconds max_wait) {
    if (waiting_.empty() && active_.empty() && finished_.empty()) {
        return false;
    }
    StartWaiting();
    Perform();
    if (Deliver() || active_.empty()) {
        return true;
    }
    // Only now: polling while finished transfers are unread stalls for up to a second.
    curl_multi_poll(multi_.get(), nullptr, 0, PollTime(max_wait), nullptr);
    Perform();
    Deliver();
    return true;
}

void CurlTransport::Impl::StartWaiting() {
    if (is_drop_wanted_ && active_.empty()) {
        MakeMulti();
    }
    while (!waiting_.empty()) {
        TransferPointer transfer = std::move(waiting_.front());
        waiting_.pop_front();
        if (setup_error_.kind != HttpErrorKind::kNone) {
            finished_.push_back({std::move(transfer), HttpOutcome{setup_error_, {}}});
            continue;
        }
        Start(std::move(transfer), is_http1_only_);
    }
}

void CurlTransport::Impl::Start(TransferPointer transfer, bool force_http1) {
    EasyHandle easy;
    if (spare_handles_.empty()) {
        easy.reset(curl_easy_init());
    } else {
        easy = std::move(spare_handles_.back());
        spare_handles_.pop_back();
    }
    // Others still fly, so the old connections cannot be closed yet: go round them.
    const bool force_fresh = is_drop_wanted_;
    const TransferContext context{settings_, trust_, BaseUrl(settings_), share_.get()};
    transfer->Attach(std::move(easy), context, force_http1, force_fresh);
    curl_multi_add_handle(multi_.get(), transfer->Handle());
    active_.push_back(std::move(transfer));
}

void CurlTransport::Impl::Perform() {
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    CollectFinished();
    CollectSilent();
}

void CurlTransport::Impl::CollectFinished() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
        if (message->msg == CURLMSG_DONE) {
            // The message dies with the handle's removal.
            const CURLcode code = message->data.result;
            EndTransfer(message->easy_handle, code);
        }
    }
}

void CurlTransport::Impl::EndTransfer(CURL* easy, CURLcode code) {
    TransferPointer transfer = TakeActive(easy);
    if (transfer == nullptr) {
        return;
    }
    has_http2_worked_ = has_http2_worked_ || (transfer->IsHttp2() && code == CURLE_OK);
    const bool failed_in_http2 =
        transfer->FailedInHttp2(code) || (!has_http2_worked_ && transfer->WasCutInHttp2(code));
    const bool try_http1 = !transfer->IsHttp1Forced() && failed_in_http2;
    HttpOutcome outcome;
    if (!try_http1 || transfer->Method() != HttpMethod::kGet) {
        outcome = transfer->Finish(code, trust_);
    }
    curl_multi_remove_handle(multi_.get(), easy);
    spare_handles_.push_back(transfer->Detach());
    is_http1_only_ = is_http1_only_ || try_http1;
    if (try_http1 && transfer->Method() == HttpMethod::kGet) {
        Start(std::move(transfer), true);
        return;
    }
    finished_.push_back({std::move(transfer), std::move(outcome)});
}

void CurlTransport::Impl::CollectSilent() {
    const TimePoint now = std::chrono::steady_clock::now();
    std::vector<CURL*> silent;
    for (const TransferPointer& transfer : active_) {
        if (transfer->SilentUntil() <= now) {
            silent.push_back(transfer->Handle());
        }
    }
    for (CURL* const easy : silent) {
        TransferPointer transfer = TakeActive(easy);
        HttpOutcome outcome = transfer->FinishSilent();
        curl_multi_remove_handle(multi_.get(), easy);
        spare_handles_.push_back(transfer->Detach());
        finished_.push_back({std::move(transfer), std::move(outcome)});
    }
}

CurlTransport::Impl::TransferPointer CurlTransport::Impl::TakeActive(CURL* easy) {
    const auto found = std::find_if(
        active_.begin(), active_.end(),
        [easy](const TransferPointer& transfer) { return transfer->Handle() == easy; });
    if (found == active_.end()) {
        return nullptr;
    }
    TransferPointer transfer = std::move(*found);
    active_.erase(found);
    return transfer;
}

int CurlTransport::Impl::PollTime(Milliseconds max_wait) const {
    const TimePoint now = std::chrono::steady_clock::now();
    Milliseconds wait = std::max(Milliseconds(0), max_wait);
    for (const TransferPointer& transfer : active_) {
        const TimePoint limit = transfer->SilentUntil();
        if (limit != TimePoint::max()) {
            const auto left = std::chrono::ceil<Milliseconds>(limit - now);
            wait = std::clamp(left, Milliseconds(0), wait);
        }
    }
    return static_cast<int>(std::min<Milliseconds::rep>(wait.count(), 60000));
}

bool CurlTransport::Impl::Deliver() {
    const bool has_any = !finished_.empty();
    // One by one: a handler may call Abort(), and then the rest must not be called any more.
    while (!finished_.empty()) {
        Finished item = std::move(finished_.front());
        finished_.pop_front();
        const Handler handler = item.transfer->TakeHandler();
        handler(std::move(item.outcome));
    }
    return has_any;
}

// A handle that is added anew looks for an idle connection first.
int CurlTransport::Impl::PreferIdleConnections() {
    int moved = 0;
    for (const TransferPointer& transfer : active_) {
        if (!transfer->IsConnecting()) continue;
        curl_multi_remove_handle(multi_.get(), transfer->Handle());
        curl_multi_add_handle(multi_.get(), transfer->Handle());
        ++moved;
    }
    return moved;
}

void CurlTransport::Impl::Abort(AbortScope scope) {
    const auto is_meant = [scope](const CurlTransfer& transfer) {
        return scope == AbortScope::kEverything || transfer.Method() == HttpMethod::kGet;
    };
    std::erase_if(waiting_, [&](const TransferPointer& item) { return is_meant(*item); });
    std::erase_if(finished_, [&](const Finished& item) { return is_meant(*item.transfer); });
    for (const TransferPointer& transfer : active_) {
        if (is_meant(*transfer)) {
            curl_multi_remove_handle(multi_.get(), transfer->Handle());
        }
    }
    std::erase_if(active_, [&](const TransferPointer& item) { return is_meant(*item); });
}

CurlTransport::CurlTransport(CurlSettings settings)
    : impl_(std::make_unique<Impl>(std::move(settings))) {}
CurlTransport::~CurlTransport() = default;

void CurlTransport::Submit(HttpRequest request, Handler handler) {
    impl_->Submit(std::move(request), std::move(handler));
}
bool CurlTransport::Step(Milliseconds max_wait) {
    return impl_->Step(max_wait);
}
void CurlTransport::SetMaxConnections(int count) {
    impl_->SetMaxConnections(count);
}
void CurlTransport::DropIdleConnections() {
    impl_->DropIdleConnections();
}
int CurlTransport::PreferIdleConnections() {
    return impl_->PreferIdleConnections();
}
void CurlTransport::Abort(AbortScope scope) {
    impl_->Abort(scope);
}

}  // namespace Vantix::transport
