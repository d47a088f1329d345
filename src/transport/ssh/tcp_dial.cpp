#include "transport/ssh/tcp_dial.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "transport/ssh/native_socket.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;
using std::chrono::milliseconds;
using Time = StepLimit::Clock::time_point;
using Endpoints = std::vector<tcp::endpoint>;

constexpr milliseconds kLookAgain(20);

// The system's look-up cannot be interrupted: it runs in a thread that may outlive the call and
// shares nothing else with it.
struct Lookup {
    std::mutex mutex;
    std::condition_variable ended;
    bool is_done = false;
    error_code error;
    Endpoints endpoints;
};

void LookUp(const std::shared_ptr<Lookup>& lookup, const std::string& host, int port) {
    boost::asio::io_context context;
    tcp::resolver resolver(context);
    error_code error;
    const auto found = resolver.resolve(host, std::to_string(port), error);
    const std::lock_guard lock(lookup->mutex);
    lookup->error = error;
    for (const auto& entry : found) lookup->endpoints.push_back(entry.endpoint());
    lookup->is_done = true;
    lookup->ended.notify_all();
}

SshFailure NotResolved(const std::string& host, const std::string& why) {
    return {SshProblem::kNotResolved,
            "the host name " + CleanText(host) + " is not known (" + CleanText(why) + ")"};
}

SshFailure Resolve(const std::string& host, int port, const StepLimit& limit,
                   const StopQuestion& must_stop, Endpoints& endpoints) {
    error_code no_literal;
    const auto address = boost::asio::ip::make_address(host, no_literal);
    if (!no_literal) {
        endpoints = {tcp::endpoint(address, static_cast<unsigned short>(port))};
        return {};
    }
    auto lookup = std::make_shared<Lookup>();
    std::thread(LookUp, lookup, host, port).detach();
    std::unique_lock lock(lookup->mutex);
    while (!lookup->ended.wait_for(lock, kLookAgain, [&] { return lookup->is_done; })) {
        if (auto stop = must_stop()) return stop;
        if (StepLimit::Clock::now() >= limit.until) {
            return NotResolved(host, "no answer from the name service");
        }
    }
    if (lookup->error) return NotResolved(host, lookup->error.message());
    endpoints = lookup->endpoints;
    return {};
}

// The error of the attempt, none when it worked, nothing when its time was over.
std::optional<error_code> Try(boost::asio::io_context& context, tcp::socket& socket,
                              const tcp::endpoint& endpoint, Time until,
                              const StopQuestion& must_stop) {
    std::optional<error_code> outcome;
    socket.async_connect(endpoint, [&outcome](const error_code& error) { outcome = error; });
    context.restart();
    while (!outcome && StepLimit::Clock::now() < until && !must_stop()) {
        context.run_one_for(kLookAgain);
    }
    if (!outcome) {
        error_code ignored;
        socket.close(ignored);
        context.restart();
        context.run();  // the handler, which must not outlive this call
        return std::nullopt;
    }
    return outcome;
}

Time ShareOfTime(Time until, std::size_t addresses_left) {
    const Time now = StepLimit::Clock::now();
    if (until == Time::max() || until <= now) return until;
    return now + (until - now) / static_cast<long>(std::max<std::size_t>(addresses_left, 1));
}

SshFailure NotConnected(const std::string& place, const std::optional<error_code>& error) {
    if (!error) return {SshProblem::kTimedOut, "no answer from " + place + " within the limit"};
    const bool has_timed_out = *error == boost::asio::error::timed_out;
    return {has_timed_out ? SshProblem::kTimedOut : SshProblem::kRefused,
            "no connection to " + place + ": " + CleanText(error->message())};
}

Dialed HandOver(tcp::socket& socket) {
    error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    // A blocking socket could hold up a large write for ever.
    socket.native_non_blocking(true, ignored);
    error_code error;
    const NativeSocket native = TakeOver(socket, error);
    if (error) return {{SshProblem::kRefused, CleanText(error.message())}, {}};
    return {{}, native};
}

}  // namespace

Dialed DialTcp(const std::string& host, int port, const StepLimit& limit,
               const StopQuestion& must_stop) {
    Endpoints endpoints;
    if (auto failure = Resolve(host, port, limit, must_stop, endpoints)) return {failure, {}};
    const std::string place = CleanText(host) + " port " + std::to_string(port);
    boost::asio::io_context context;
    SshFailure last = NotResolved(host, "no address");
    for (std::size_t i = 0; i < endpoints.size(); ++i) {
        const auto& endpoint = endpoints[i];
        tcp::socket socket(context);
        const Time until = ShareOfTime(limit.until, endpoints.size() - i);
        const auto error = Try(context, socket, endpoint, until, must_stop);
        if (error && !*error) return HandOver(socket);
        if (auto stop = must_stop()) return {stop, {}};
        last = NotConnected(place, error);
    }
    return {last, {}};
}

}  // namespace Vantix::transport
