#include "bmc_simulator/bmc_simulator.h"

#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/http/status.hpp>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <set>
#include <stdexcept>
#include <thread>

#include "bmc_simulator/bmc_service.h"
#include "bmc_simulator/certificate.h"
#include "bmc_simulator/fault_plan.h"
#include "bmc_simulator/fault_reply.h"
#include "bmc_simulator/wire.h"

namespace simulators {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPortAttempts = 50;

int ProtocolNumber(TlsVersion version) {
    switch (version) {
        case TlsVersion::kTls10:
            return TLS1_VERSION;
        case TlsVersion::kTls11:
            return TLS1_1_VERSION;
        case TlsVersion::kTls12:
            return TLS1_2_VERSION;
        case TlsVersion::kTls13:
            return TLS1_3_VERSION;
        case TlsVersion::kDefault:
            break;
    }
    return 0;
}

void SetUpTls(asio::ssl::context& tls, const BmcOptions& options, const Certificate& own) {
    SSL_CTX* context = tls.native_handle();
    const bool old_version =
        options.tls_max == TlsVersion::kTls10 || options.tls_max == TlsVersion::kTls11;
    if (old_version || options.key_kind == KeyKind::kRsa1024) {
        // OpenSSL 3 serves neither at its usual security level.
        SSL_CTX_set_cipher_list(context, "DEFAULT:@SECLEVEL=0");
    }
    if (options.tls_min != TlsVersion::kDefault || old_version) {
        SSL_CTX_set_min_proto_version(context, ProtocolNumber(options.tls_min));
    }
    SSL_CTX_set_max_proto_version(context, ProtocolNumber(options.tls_max));
    tls.use_certificate_chain(asio::buffer(own.certificate_pem));
    tls.use_private_key(asio::buffer(own.private_key_pem), asio::ssl::context::pem);
}

Certificate ChooseCertificate(const BmcOptions& options) {
    if (options.certificate_pem.empty()) {
        return MakeCertificate(options.key_kind, options.certificate_names,
                               options.certificate_expired);
    }
    return {options.certificate_pem, options.private_key_pem,
            FingerprintOf(options.certificate_pem)};
}

std::string WriteCaFile(const std::string& pem) {
    std::random_device device;
    const std::string name =
        "bmc-simulator-" + std::to_string(device()) + std::to_string(device()) + ".pem";
    const std::filesystem::path file = std::filesystem::temp_directory_path() / name;
    std::ofstream stream(file, std::ios::binary);
    stream << pem << std::flush;
    if (!stream) throw std::runtime_error("cannot write " + file.string());
    return file.string();
}

/// Header and body apart, since some faults send one without the other.
std::pair<std::string, std::string> Render(const ServiceRequest& request,
                                           const ServiceReply& reply) {
    const auto reason =
        boost::beast::http::obsolete_reason(static_cast<boost::beast::http::status>(reply.status));
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " " + std::string(reason) +
                       "\r\nServer: simulated-bmc\r\nCache-Control: no-cache\r\n";
    if (reply.status != 204) {
        head += "Content-Type: " + reply.content_type +
                "\r\nContent-Length: " + std::to_string(reply.body.size()) + "\r\n";
    }
    for (const auto& [name, value] : reply.headers) head += name + ": " + value + "\r\n";
    const bool has_body = reply.status != 204 && request.method != "HEAD";
    return {head + "\r\n", has_body ? reply.body : std::string()};
}

bool AsksToClose(const ServiceRequest& request) {
    const std::string* connection = FindHeader(request.headers, "Connection");
    return connection && (*connection == "close" || *connection == "Close");
}

}  // namespace

class BmcSimulator::Impl {
  public:
    explicit Impl(BmcOptions options);
    ~Impl() { Stop(); }
    void Stop();

    mutable std::mutex mutex_;  ///< guards options_, counts_, service_, plan_, log_start_
    BmcOptions options_;
    const bool plain_http_;  ///< cannot change while connections are open
    BmcCounts counts_;
    BmcService service_;
    FaultPlan plan_;
    int log_start_ = 0;  ///< requests whose records were cleared away
    Certificate certificate_;
    std::string ca_file_;
    int port_ = 0;

  private:
    void Listen();
    bool TryListen(unsigned short port);
    void Spawn();
    asio::awaitable<void> Accept(tcp::acceptor& acceptor);
    asio::awaitable<void> Serve(tcp::socket socket, int connection);
    asio::awaitable<void> ServeRequests(Wire& wire, int connection);
    asio::awaitable<bool> AnswerOne(Wire& wire, const ServiceRequest& request, int connection);
    asio::awaitable<bool> Misbehave(Wire& wire, Fault::Kind kind);
    asio::awaitable<bool> Send(Wire& wire, const ServiceRequest& request, ServiceReply reply,
                               const std::optional<Fault>& fault);
    asio::awaitable<bool> Drip(Wire& wire, std::string body, const Fault& fault);
    Clock::time_point HandshakeSlot();
    Clock::time_point ResponseSlot(const std::optional<Fault>& fault);
    int TakeConnection();
    std::pair<int, std::optional<Fault>> TakeRequest(const ServiceRequest& request, int connection);
    void FinishRequest(int ordinal, int status);
    ServiceReply Answer(const ServiceRequest& request, const std::optional<Fault>& fault);

    template <typename Change>
    void Count(Change change) {
        const std::lock_guard lock(mutex_);
        change(counts_);
    }

    // Used on the serving thread only.
    std::set<Wire*> wires_;
    Clock::time_point handshakes_done_;
    Clock::time_point responses_done_;
    bool stopping_ = false;

    asio::io_context io_{1};
    asio::ssl::context tls_{asio::ssl::context::tls_server};
    std::vector<tcp::acceptor> acceptors_;
    std::thread thread_;
};

BmcSimulator::Impl::Impl(BmcOptions options)
    : options_(std::move(options)),
      plain_http_(options_.plain_http),
      service_(options_, counts_),
      plan_(options_.faults) {
    if (!plain_http_) {
        certificate_ = ChooseCertificate(options_);
        SetUpTls(tls_, options_, certificate_);
    }
    Listen();
    if (!plain_http_) ca_file_ = WriteCaFile(certificate_.certificate_pem);
    Spawn();
}

void BmcSimulator::Impl::Listen() {
    const bool any_port = options_.port == 0;
    for (int attempt = 0; attempt < (any_port ? kPortAttempts : 1); ++attempt) {
        if (TryListen(static_cast<unsigned short>(options_.port))) return;
    }
    throw std::runtime_error("cannot listen on loopback port " + std::to_string(options_.port));
}

bool BmcSimulator::Impl::TryListen(unsigned short port) {
    acceptors_.clear();
    boost::system::error_code error;
    std::vector<tcp::endpoint> endpoints = {{asio::ip::address_v4::loopback(), port}};
    if (options_.listen_ipv6) endpoints.emplace_back(asio::ip::address_v6::loopback(), port);
    for (tcp::endpoint endpoint : endpoints) {
        // The second address takes the port that the first one got.
        if (!acceptors_.empty()) endpoint.port(static_cast<unsigned short>(port_));
        tcp::acceptor acceptor(io_);
        acceptor.open(endpoint.protocol(), error);
        if (!error) acceptor.set_option(asio::socket_base::reuse_address(true), error);
        if (!error) acceptor.bind(endpoint, error);
        if (!error) acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error) return false;
        port_ = acceptor.local_endpoint().port();
        acceptors_.push_back(std::move(acceptor));
    }
    return true;
}

void BmcSimulator::Impl::Spawn() {
    for (tcp::acceptor& acceptor : acceptors_) {
        asio::co_spawn(io_, Accept(acceptor), asio::detached);
    }
    thread_ = std::thread([this] { io_.run(); });
}

void BmcSimulator::Impl::Stop() {
    if (!thread_.joinable()) return;
    asio::post(io_, [this] {
        stopping_ = true;
        boost::system::error_code ignored;
        for (tcp::acceptor& acceptor : acceptors_) acceptor.close(ignored);
        for (Wire* wire : wires_) wire->Close();
    });
    thread_.join();
    std::error_code ignored;
    if (!ca_file_.empty()) std::filesystem::remove(ca_file_, ignored);
}

asio::awaitable<void> BmcSimulator::Impl::Accept(tcp::acceptor& acceptor) {
    while (!stopping_) {
        boost::system::error_code error;
        tcp::socket socket =
            co_await acceptor.async_accept(asio::redirect_error(asio::use_awaitable, error));
        if (error == asio::error::operation_aborted) co_return;
        if (error) continue;
        const int connection = TakeConnection();
        if (connection == 0) {
            socket.set_option(asio::socket_base::linger(true, 0), error);
            continue;
        }
        asio::co_spawn(io_, Serve(std::move(socket), connection), asio::detached);
    }
}

int BmcSimulator::Impl::TakeConnection() {
    const std::lock_guard lock(mutex_);
    if (options_.max_connections > 0 && counts_.connections_open >= options_.max_connections) {
        ++counts_.connections_refused;
        return 0;
    }
    ++counts_.connections_open;
    counts_.most_connections = std::max(counts_.most_connections, counts_.connections_open);
    return ++counts_.connections;
}

asio::awaitable<void> BmcSimulator::Impl::Serve(tcp::socket socket, int connection) {
    Wire wire(std::move(socket), tls_, plain_http_);
    wires_.insert(&wire);
    if (stopping_) wire.Close();
    const bool paced = co_await wire.PauseUntil(HandshakeSlot());
    const bool shaken = paced && co_await wire.Handshake();
    Count([&](BmcCounts& counts) {
        if (shaken && !plain_http_) ++counts.handshakes;
        if (!shaken) ++counts.handshakes_failed;
    });
    if (shaken) co_await ServeRequests(wire, connection);
    wire.Close();
    wires_.erase(&wire);
    Count([](BmcCounts& counts) { --counts.connections_open; });
}

asio::awaitable<void> BmcSimulator::Impl::ServeRequests(Wire& wire, int connection) {
    for (bool open = true; open;) {
        std::optional<ServiceRequest> request = co_await wire.ReadRequest();
        if (!request) break;
        open = co_await AnswerOne(wire, *request, connection);
    }
    co_await wire.CloseCleanly();
}

Clock::time_point BmcSimulator::Impl::HandshakeSlot() {
    const std::lock_guard lock(mutex_);
    if (plain_http_ || options_.handshake_delay.count() == 0) return {};
    // A small processor does its public-key work one handshake after the other.
    handshakes_done_ = std::max(handshakes_done_, Clock::now()) + options_.handshake_delay;
    return handshakes_done_;
}

Clock::time_point BmcSimulator::Impl::ResponseSlot(const std::optional<Fault>& fault) {
    const std::lock_guard lock(mutex_);
    auto pace = options_.latency;
    if (fault && fault->kind == Fault::Kind::kDelay) pace += fault->delay;
    if (pace.count() == 0) return {};
    if (!options_.serialize) return Clock::now() + pace;
    responses_done_ = std::max(responses_done_, Clock::now()) + pace;
    return responses_done_;
}

std::pair<int, std::optional<Fault>> BmcSimulator::Impl::TakeRequest(const ServiceRequest& request,
                                                                     int connection) {
    const std::lock_guard lock(mutex_);
    ++counts_.requests;
    ++counts_.in_flight;
    counts_.most_in_flight = std::max(counts_.most_in_flight, counts_.in_flight);
    if (FindHeader(request.headers, "Authorization")) ++counts_.authorization_headers_seen;
    counts_.log.push_back({request.method, request.target, request.headers, connection, 0});
    return {log_start_ + counts_.requests,
            plan_.Next(request.method, request.target, counts_.requests)};
}

void BmcSimulator::Impl::FinishRequest(int ordinal, int status) {
    const std::lock_guard lock(mutex_);
    --counts_.in_flight;
    const int index = ordinal - log_start_ - 1;
    if (index >= 0 && index < static_cast<int>(counts_.log.size())) {
        counts_.log[static_cast<std::size_t>(index)].status = status;
    }
}

ServiceReply BmcSimulator::Impl::Answer(const ServiceRequest& request,
                                        const std::optional<Fault>& fault) {
    const std::lock_guard lock(mutex_);
    ServiceReply reply = service_.Answer(request);
    return fault ? ApplyFault(*fault, std::move(reply)) : reply;
}

asio::awaitable<bool> BmcSimulator::Impl::AnswerOne(Wire& wire, const ServiceRequest& request,
                                                    int connection) {
    const auto [ordinal, fault] = TakeRequest(request, connection);
    const bool paced = co_await wire.PauseUntil(ResponseSlot(fault));
    const bool refused = paced && fault && co_await Misbehave(wire, fault->kind);
    if (!paced || refused) {
        FinishRequest(ordinal, 0);
        co_return false;
    }
    ServiceReply reply = Answer(request, fault);
    const int status = reply.status;
    // Before the bytes leave: whoever has read the answer must find it counted.
    FinishRequest(ordinal, status);
    co_return co_await Send(wire, request, std::move(reply), fault);
}

/// True where the fault is to give no answer at all.
asio::awaitable<bool> BmcSimulator::Impl::Misbehave(Wire& wire, Fault::Kind kind) {
    if (kind == Fault::Kind::kReset) {
        wire.Reset();
    } else if (kind == Fault::Kind::kSilent) {
        co_await wire.WaitForPeerToLeave();
    } else if (kind != Fault::Kind::kEmptyReply) {
        co_return false;
    }
    co_return true;
}

/// True where the connection stays open for the next request.
asio::awaitable<bool> BmcSimulator::Impl::Send(Wire& wire, const ServiceRequest& request,
                                               ServiceReply reply,
                                               const std::optional<Fault>& fault) {
    const bool close = AsksToClose(request);
    if (close) reply.headers.emplace_back("Connection", "close");
    auto [head, body] = Render(request, reply);
    const auto kind = fault ? fault->kind : Fault::Kind::kStatus;
    if (kind == Fault::Kind::kTruncate) body.resize(body.size() / 2);
    if (kind == Fault::Kind::kSlowDrip) {
        const bool written = co_await wire.Write(std::move(head));
        co_return written&& co_await Drip(wire, std::move(body), *fault) && !close;
    }
    const bool written = co_await wire.Write(head + body);
    co_return written && !close && kind != Fault::Kind::kTruncate &&
        kind != Fault::Kind::kCloseAfterReply;
}

asio::awaitable<bool> BmcSimulator::Impl::Drip(Wire& wire, std::string body, const Fault& fault) {
    const std::size_t step = std::max<std::size_t>(fault.drip_bytes, 1);
    for (std::size_t done = 0; done < body.size(); done += step) {
        const bool open = co_await wire.PauseUntil(Clock::now() + fault.drip_interval);
        const bool written = open && co_await wire.Write(body.substr(done, step));
        if (!written) co_return false;
    }
    co_return true;
}

BmcSimulator::BmcSimulator(BmcOptions options)
    : impl_(std::make_unique<Impl>(std::move(options))) {}

BmcSimulator::~BmcSimulator() = default;

int BmcSimulator::Port() const {
    return impl_->port_;
}

std::string BmcSimulator::Url() const {
    const std::string scheme = impl_->plain_http_ ? "http" : "https";
    return scheme + "://127.0.0.1:" + std::to_string(impl_->port_);
}

std::string BmcSimulator::UrlIpv6() const {
    const std::string scheme = impl_->plain_http_ ? "http" : "https";
    return scheme + "://[::1]:" + std::to_string(impl_->port_);
}

const std::string& BmcSimulator::CertificatePem() const {
    return impl_->certificate_.certificate_pem;
}

const std::string& BmcSimulator::Fingerprint() const {
    return impl_->certificate_.fingerprint;
}

const std::string& BmcSimulator::CaFile() const {
    return impl_->ca_file_;
}

BmcCounts BmcSimulator::Counts() const {
    const std::lock_guard lock(impl_->mutex_);
    return impl_->counts_;
}

void BmcSimulator::ResetCounts() {
    const std::lock_guard lock(impl_->mutex_);
    BmcCounts fresh;
    fresh.connections_open = impl_->counts_.connections_open;
    fresh.in_flight = impl_->counts_.in_flight;
    fresh.sessions_open = impl_->counts_.sessions_open;
    impl_->log_start_ += impl_->counts_.requests;
    impl_->counts_ = fresh;
}

BmcOptions BmcSimulator::Options() const {
    const std::lock_guard lock(impl_->mutex_);
    return impl_->options_;
}

void BmcSimulator::SetOptions(BmcOptions options) {
    const std::lock_guard lock(impl_->mutex_);
    options.plain_http = impl_->plain_http_;
    impl_->options_ = std::move(options);
    impl_->plan_ = FaultPlan(impl_->options_.faults);
    impl_->service_.ReloadReplacedBodies();
}

void BmcSimulator::SetFaults(std::vector<FaultRule> faults) {
    const std::lock_guard lock(impl_->mutex_);
    impl_->options_.faults = faults;
    impl_->plan_ = FaultPlan(std::move(faults));
}

void BmcSimulator::ForgetSessions() {
    const std::lock_guard lock(impl_->mutex_);
    impl_->service_.ForgetSessions();
}

void BmcSimulator::Stop() {
    impl_->Stop();
}

}  // namespace simulators
