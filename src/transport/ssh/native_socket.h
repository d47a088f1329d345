// The step from a socket of Boost.Asio to one of the operating system.
#pragma once

#include <boost/asio/ip/tcp.hpp>

#include "transport/ssh/tcp_dial.h"

namespace Vantix::transport {

/// The connection of `socket`, which is closed afterwards; the caller's to close (CloseSocket). Of
/// no meaning with an error.
[[nodiscard]] NativeSocket TakeOver(boost::asio::ip::tcp::socket& socket,
                                    boost::system::error_code& error);

}  // namespace Vantix::transport
