#include "transport/ssh/native_socket.h"

#include <winsock2.h>

namespace Vantix::transport {

// Asio can release a socket only where the system lets it leave its completion port, which not
// every one does (Wine); a second handle of the connection can be made everywhere.
NativeSocket TakeOver(boost::asio::ip::tcp::socket& socket, boost::system::error_code& error) {
    WSAPROTOCOL_INFOW connection{};
    NativeSocket copy = INVALID_SOCKET;
    if (WSADuplicateSocketW(socket.native_handle(), GetCurrentProcessId(), &connection) == 0) {
        copy = WSASocketW(FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO, &connection,
                          0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    }
    if (copy == INVALID_SOCKET) {
        error.assign(WSAGetLastError(), boost::system::system_category());
        return copy;
    }
    boost::system::error_code ignored;
    socket.close(ignored);
    return copy;
}

void CloseSocket(NativeSocket socket) {
    closesocket(socket);
}

}  // namespace Vantix::transport
