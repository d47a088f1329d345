// The step from a socket of Boost.Asio to one of the operating system.
#pragma once

#include <boost/asio/ip/tcp.hpp>

#include "transport/ssh/tcp_dial.h"

#if defined(_WIN32) && !defined(BOOST_ASIO_DISABLE_IOCP)
#error "define BOOST_ASIO_DISABLE_IOCP for every source that uses Asio: transport_ssh does"
#endif

namespace Vantix::transport {

/// The connection of `socket`, which is closed afterwards; the caller's to close (CloseSocket). Of
/// no meaning with an error.
[[nodiscard]] NativeSocket TakeOver(boost::asio::ip::tcp::socket& socket,
                                    boost::system::error_code& error);

}  // namespace Vantix::transport
