#include "bmc_simulator/bmc_simulator.h"

#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/http/status.hpp>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "bmc_simulator/bmc_state.h"
#include "bmc_simulator/certificate.h"
#include "bmc_simulator/wire.h"

namespace simulators {
namespace {

using Clock = BmcState::Clock;

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

std::string HexNumber(std::size_t value) {
    std::ostringstream text;
    text << std::hex << value;
    return text.str();
}

/// RFC 9112, 7.1: chunks, the last one empty, and a trailer.
std::string InChunks(const std::string& body, std::size_t size) {
    std::string text;
    for (std::size_t at = 0; at < body.size(); at += std::max<std::size_t>(size, 1)) {
        const std::string chunk = body.substr(at, std::max<std::size_t>(size, 1));
        text += HexNumber(chunk.size()) + "\r\n" + chunk + "\r\n";
    }
    return text + "0\r\nX-Simulated-Trailer: end\r\n\r\n";
}

std::string SmallNames(const std::string& head) {
    std::string text;
    bool is_name = false;
    for (const char letter : head) {
        is_name = letter == '\n' || (is_name && letter != ':');
        const bool is_capital = letter >= 'A' && letter <= 'Z';
        text += is_name && is_capital ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return text;
}

std::string LengthHeader(const std::string& body, Fault::Kind kind) {
    if (kind == Fault::Kind::kChunked) return "Transfer-Encoding: chunked\r\n";
    const std::string zeros = kind == Fault::Kind::kOddHeaders ? "000" : "";
    return "Content-Length: " + zeros + std::to_string(body.size()) + "\r\n";
}

/// Header and body apart, since some faults send one without the other.
std::pair<std::string, std::string> Render(const ServiceRequest& request, const ServiceReply& reply,
                                           const std::optional<Fault>& fault) {
    const auto kind = fault ? fault->kind : Fault::Kind::kStatus;
    const auto reason =
        boost::beast::http::obsolete_reason(static_cast<boost::beast::http::status>(reply.status));
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " " + std::string(reason) +
                       "\r\nServer: simulated-bmc\r\nCache-Control: no-cache\r\n";
    if (reply.status != 204) {
        head += "Content-Type: " + reply.content_type + "\r\n" + LengthHeader(reply.body, kind);
    }
    for (const auto& [name, value] : reply.headers) head += name + ": " + value + "\r\n";
    if (kind == Fault::Kind::kOddHeaders) head = SmallNames(head);
    const bool has_body = reply.status != 204 && request.method != "HEAD";
    const bool is_chunked = kind == Fault::Kind::kChunked && has_body;
    std::string body = has_body ? reply.body : std::string();
    if (is_chunked) body = InChunks(body, fault->drip_bytes);
    return {head + "\r\n", std::move(body)};
}

bool IsUnanswered(const std::optional<Fault>& fault) {
    return fault && (fault->kind == Fault::Kind::kReset || fault->kind == Fault::Kind::kSilent ||
                     fault->kind == Fault::Kind::kEmptyReply);
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
    [[nodiscard]] std::string Url(const std::string& host) const;

    const bool plain_http_;
    BmcState state_;
    Certificate certificate_;
    std::string ca_file_;
    int port_ = 0;

  private:
    void Listen(const BmcOptions& options);
    [[nodiscard]] bool TryListen(unsigned short port, bool ipv6);
    void Spawn();
    asio::awaitable<void> Accept(tcp::acceptor& acceptor);
    asio::awaitable<void> Serve(tcp::socket socket, int connection);
    asio::awaitable<void> ServeRequests(Wire& wire, int connection);
    asio::awaitable<bool> ShakeHands(Wire& wire);
    asio::awaitable<bool> AnswerOne(Wire& wire, const ServiceRequest& request, int connection);
    asio::awaitable<void> EndUnanswered(Wire& wire, const BmcState::Taken& taken);
    static asio::awaitable<bool> Send(Wire& wire, const ServiceRequest& request, ServiceReply reply,
                                      const std::optional<Fault>& fault);
    static asio::awaitable<bool> Drip(Wire& wire, std::string body, const Fault& fault);

    // Used on the serving thread only.
    std::set<Wire*> wires_;
    bool stopping_ = false;

    asio::io_context io_{1};
    asio::ssl::context tls_{asio::ssl::context::tls_server};
    std::vector<tcp::acceptor> acceptors_;
    std::thread thread_;
};

BmcSimulator::Impl::Impl(BmcOptions options) : plain_http_(options.plain_http), state_(options) {
    if (!plain_http_) {
        certificate_ = ChooseCertificate(options);
        SetUpTls(tls_, options, certificate_);
    }
    Listen(options);
    if (!plain_http_) ca_file_ = WriteCaFile(certificate_.certificate_pem);
    Spawn();
}

std::string BmcSimulator::Impl::Url(const std::string& host) const {
    return (plain_http_ ? "http://" : "https://") + host + ":" + std::to_string(port_);
}

void BmcSimulator::Impl::Listen(const BmcOptions& options) {
    const bool any_port = options.port == 0;
    for (int attempt = 0; attempt < (any_port ? kPortAttempts : 1); ++attempt) {
        if (TryListen(static_cast<unsigned short>(options.port), options.listen_ipv6)) return;
    }
    throw std::runtime_error("cannot listen on loopback port " + std::to_string(options.port));
}

bool BmcSimulator::Impl::TryListen(unsigned short port, bool ipv6) {
    acceptors_.clear();
    boost::system::error_code error;
    std::vector<tcp::endpoint> endpoints = {{asio::ip::address_v4::loopback(), port}};
    if (ipv6) endpoints.emplace_back(asio::ip::address_v6::loopback(), port);
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
        const int connection = state_.TakeConnection();
        if (connection == 0) {
            socket.set_option(asio::socket_base::linger(true, 0), error);
            continue;
        }
        asio::co_spawn(io_, Serve(std::move(socket), connection), asio::detached);
    }
}

asio::awaitable<void> BmcSimulator::Impl::Serve(tcp::socket socket, int connection) {
    Wire wire(std::move(socket), tls_, plain_http_);
    wires_.insert(&wire);
    if (stopping_) wire.Close();
    const bool ready = plain_http_ || co_await ShakeHands(wire);
    if (ready) co_await ServeRequests(wire, connection);
    wire.Close();
    wires_.erase(&wire);
    state_.DropConnection();
}

asio::awaitable<bool> BmcSimulator::Impl::ShakeHands(Wire& wire) {
    const bool paced = co_await wire.PauseUntil(state_.HandshakeSlot());
    const bool completed = paced && co_await wire.Handshake();
    state_.CountHandshake(completed);
    co_return completed;
}

asio::awaitable<void> BmcSimulator::Impl::ServeRequests(Wire& wire, int connection) {
    for (bool open = true; open;) {
        std::optional<ServiceRequest> request = co_await wire.ReadRequest();
        if (!request) break;
        open = co_await AnswerOne(wire, *request, connection);
    }
    co_await wire.CloseCleanly();
}

asio::awaitable<bool> BmcSimulator::Impl::AnswerOne(Wire& wire, const ServiceRequest& request,
                                                    int connection) {
    const BmcState::Taken taken = state_.TakeRequest(request, connection);
    const bool paced = co_await wire.PauseUntil(state_.ResponseSlot(taken.fault));
    if (!paced) {
        state_.FinishRequest(taken.ordinal, 0);
        co_return false;
    }
    if (IsUnanswered(taken.fault)) {
        co_await EndUnanswered(wire, taken);
        co_return false;
    }
    ServiceReply reply = state_.Answer(request, taken.fault);
    // Before the bytes leave: whoever has read the answer must find it counted.
    state_.FinishRequest(taken.ordinal, reply.status);
    co_return co_await Send(wire, request, std::move(reply), taken.fault);
}

asio::awaitable<void> BmcSimulator::Impl::EndUnanswered(Wire& wire, const BmcState::Taken& taken) {
    if (taken.fault->kind == Fault::Kind::kSilent) co_await wire.WaitForPeerToLeave();
    // Counted before the client can notice, like an answer.
    state_.FinishRequest(taken.ordinal, 0);
    if (taken.fault->kind == Fault::Kind::kReset) wire.Reset();
}

/// True where the connection stays open for the next request.
asio::awaitable<bool> BmcSimulator::Impl::Send(Wire& wire, const ServiceRequest& request,
                                               ServiceReply reply,
                                               const std::optional<Fault>& fault) {
    const bool close = AsksToClose(request);
    if (close) reply.headers.emplace_back("Connection", "close");
    auto [head, body] = Render(request, reply, fault);
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
    return impl_->Url("127.0.0.1");
}

std::string BmcSimulator::UrlIpv6() const {
    return impl_->Url("[::1]");
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
    return impl_->state_.Counts();
}

void BmcSimulator::ResetCounts() {
    impl_->state_.ResetCounts();
}

BmcOptions BmcSimulator::Options() const {
    return impl_->state_.Options();
}

void BmcSimulator::SetOptions(BmcOptions options) {
    impl_->state_.SetOptions(std::move(options));
}

void BmcSimulator::SetFaults(std::vector<FaultRule> faults) {
    impl_->state_.SetFaults(std::move(faults));
}

void BmcSimulator::ForgetSessions() {
    impl_->state_.ForgetSessions();
}

void BmcSimulator::Stop() {
    impl_->Stop();
}

}  // namespace simulators
