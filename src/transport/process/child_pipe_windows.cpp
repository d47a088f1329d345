#include "transport/process/child_pipe_windows.h"

#include <algorithm>
#include <array>

namespace Vantix::transport {

void OwnedHandle::Close() {
    if (IsOpen()) CloseHandle(handle_);
    handle_ = nullptr;
}

bool ChildPipe::Open() {
    SECURITY_ATTRIBUTES inherited{};
    inherited.nLength = sizeof(inherited);
    inherited.bInheritHandle = TRUE;
    return CreatePipe(read_end_.Slot(), write_end_.Slot(), &inherited, 0) != 0 &&
           SetHandleInformation(read_end_.Get(), HANDLE_FLAG_INHERIT, 0) != 0;
}

bool ChildPipe::Drain(std::size_t limit) {
    if (IsAtEnd()) return false;
    bool is_any = false;
    std::array<char, 65536> bytes;
    while (true) {
        DWORD waiting = 0;
        if (PeekNamedPipe(read_end_.Get(), nullptr, 0, nullptr, &waiting, nullptr) == 0) {
            read_end_.Close();
            return is_any;
        }
        if (waiting == 0) return is_any;
        DWORD count = 0;
        const DWORD wanted = std::min<DWORD>(waiting, static_cast<DWORD>(bytes.size()));
        if (ReadFile(read_end_.Get(), bytes.data(), wanted, &count, nullptr) == 0) {
            read_end_.Close();
            return is_any;
        }
        is_any = true;
        const std::size_t kept =
            std::min<std::size_t>(count, limit - std::min(limit, text_.size()));
        text_.append(bytes.data(), kept);
        is_cut_ = is_cut_ || kept < count;
    }
}

}  // namespace Vantix::transport
