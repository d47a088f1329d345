// One accepted connection, TLS or plain, as coroutines. Includes Boost.Beast: only the server's one
// translation unit may include this. Single-threaded; knows no HTTP beyond reading one request.

#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "bmc_simulator/service_message.h"

namespace simulators {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;

class Wire {
  public:
    Wire(tcp::socket socket, asio::ssl::context& tls, bool plain)
        : stream_(std::move(socket), tls), timer_(stream_.get_executor()), plain_(plain) {
        boost::system::error_code ignored;
        // Small answers must not wait for the peer's delayed acknowledgement.
        stream_.next_layer().set_option(tcp::no_delay(true), ignored);
    }

    asio::awaitable<bool> Handshake() {
        boost::system::error_code error;
        co_await stream_.async_handshake(asio::ssl::stream_base::server,
                                         asio::redirect_error(asio::use_awaitable, error));
        co_return !error;
    }

    /// The next request; nothing at the end of the connection or of sense.
    asio::awaitable<std::optional<ServiceRequest>> ReadRequest() {
        namespace http = boost::beast::http;
        http::request_parser<http::string_body> parser;
        parser.eager(true);
        boost::system::error_code error;
        while (!parser.is_done()) {
            if (buffer_.size() > 0) {
                buffer_.consume(parser.put(buffer_.data(), error));
                if (error && error != http::error::need_more) co_return std::nullopt;
                if (parser.is_done()) break;
            }
            const std::size_t count = co_await ReadSome();
            if (count == 0) co_return std::nullopt;
        }
        co_return ToRequest(parser.get());
    }

    /// False where the peer is gone.
    asio::awaitable<bool> Write(std::string text) {
        boost::system::error_code error;
        auto token = asio::redirect_error(asio::use_awaitable, error);
        if (plain_) {
            co_await asio::async_write(stream_.next_layer(), asio::buffer(text), token);
        } else {
            co_await asio::async_write(stream_, asio::buffer(text), token);
        }
        co_return !error;
    }

    /// False where the connection was closed meanwhile by Close.
    asio::awaitable<bool> PauseUntil(std::chrono::steady_clock::time_point time) {
        boost::system::error_code error;
        if (!closed_ && time > std::chrono::steady_clock::now()) {
            timer_.expires_at(time);
            co_await timer_.async_wait(asio::redirect_error(asio::use_awaitable, error));
        }
        co_return !closed_;
    }

    /// Reads and drops until the peer gives up.
    asio::awaitable<void> WaitForPeerToLeave() {
        for (std::size_t count = 1; count > 0;) {
            buffer_.clear();
            count = co_await ReadSome();
        }
    }

    /// Says goodbye (TLS close_notify, FIN) and waits for the peer's.
    asio::awaitable<void> CloseCleanly() {
        boost::system::error_code error;
        if (!plain_) {
            co_await stream_.async_shutdown(asio::redirect_error(asio::use_awaitable, error));
        }
        Close();
    }

    /// Drops the connection with a TCP reset.
    void Reset() {
        boost::system::error_code ignored;
        stream_.next_layer().set_option(asio::socket_base::linger(true, 0), ignored);
        Close();
    }

    /// Ends every wait of this connection.
    void Close() {
        closed_ = true;
        boost::system::error_code ignored;
        timer_.cancel();
        stream_.next_layer().close(ignored);
    }

  private:
    asio::awaitable<std::size_t> ReadSome() {
        boost::system::error_code error;
        auto token = asio::redirect_error(asio::use_awaitable, error);
        const auto space = buffer_.prepare(16 * 1024);
        std::size_t count = 0;
        if (plain_) {
            count = co_await stream_.next_layer().async_read_some(space, token);
        } else {
            count = co_await stream_.async_read_some(space, token);
        }
        buffer_.commit(count);
        co_return error ? 0 : count;
    }

    template <typename Message>
    static ServiceRequest ToRequest(const Message& message) {
        ServiceRequest request;
        request.method = message.method_string();
        request.target = message.target();
        for (const auto& field : message) {
            request.headers.emplace_back(field.name_string(), field.value());
        }
        request.body = message.body();
        return request;
    }

    asio::ssl::stream<tcp::socket> stream_;
    asio::steady_timer timer_;
    boost::beast::flat_buffer buffer_;
    bool plain_;
    bool closed_ = false;
};

}  // namespace simulators
