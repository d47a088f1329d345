// One output stream of a started program, read without waiting and with a limit.
//
// Knows nothing of starting and ending programs. Private to the process transport.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace Vantix::transport {

/// An open handle, closed with the object.
class OwnedHandle {
  public:
    OwnedHandle() = default;
    explicit OwnedHandle(HANDLE handle) : handle_(handle) {}
    ~OwnedHandle() { Close(); }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;

    [[nodiscard]] HANDLE Get() const { return handle_; }
    [[nodiscard]] HANDLE* Slot() { return &handle_; }
    [[nodiscard]] bool IsOpen() const {
        return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE;
    }
    void Close();

  private:
    HANDLE handle_ = nullptr;
};

class ChildPipe {
  public:
    /// False when no pipe could be made. The write end can be inherited, the read end cannot.
    [[nodiscard]] bool Open();
    [[nodiscard]] HANDLE WriteEnd() const { return write_end_.Get(); }
    void CloseWriteEnd() { write_end_.Close(); }

    [[nodiscard]] bool IsAtEnd() const { return !read_end_.IsOpen(); }
    /// Takes what is there; keeps at most `limit` bytes in all and drops the rest. True when there
    /// was something.
    bool Drain(std::size_t limit);

    [[nodiscard]] std::string& Text() { return text_; }
    [[nodiscard]] bool IsCut() const { return is_cut_; }

  private:
    OwnedHandle read_end_;
    OwnedHandle write_end_;
    std::string text_;
    bool is_cut_ = false;
};

}  // namespace Vantix::transport
