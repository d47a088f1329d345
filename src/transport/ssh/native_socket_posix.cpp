#include "transport/ssh/native_socket.h"

#include <unistd.h>

namespace Vantix::transport {

NativeSocket TakeOver(boost::asio::ip::tcp::socket& socket, boost::system::error_code& error) {
    return socket.release(error);
}

void CloseSocket(NativeSocket socket) {
    ::close(socket);
}

}  // namespace Vantix::transport
