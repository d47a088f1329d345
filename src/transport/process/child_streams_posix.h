// What a started program is given and what it says: memory files, pipes, and the reading of both
// output streams with a limit.
//
// Knows nothing of starting and ending programs. Private to the process transport.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace Vantix::transport {

/// An open file descriptor, closed with the object.
class OwnedDescriptor {
  public:
    OwnedDescriptor() = default;
    explicit OwnedDescriptor(int number) : number_(number) {}
    ~OwnedDescriptor() { Close(); }
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : number_(other.Release()) {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept;
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    [[nodiscard]] int Number() const { return number_; }
    [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
    void Close();

  private:
    int Release();
    int number_ = -1;
};

/// A file in memory that holds `text` and can be read, not changed; closed when the system gives
/// none.
[[nodiscard]] OwnedDescriptor MemoryFile(const std::string& text);

/// The same file under a number that no started program expects (64 or more), so that numbers can
/// be handed out without one overwriting another.
[[nodiscard]] OwnedDescriptor MovedUp(OwnedDescriptor descriptor);

/// One output stream of a program.
class ChildStream {
  public:
    /// False when no pipe could be made.
    [[nodiscard]] bool Open();
    [[nodiscard]] int WriteEnd() const { return write_end_.Number(); }
    void CloseWriteEnd() { write_end_.Close(); }

    [[nodiscard]] int ReadEnd() const { return read_end_.Number(); }
    [[nodiscard]] bool IsAtEnd() const { return !read_end_.IsOpen(); }
    /// Takes what is there; keeps at most `limit` bytes in all and drops the rest.
    void Drain(std::size_t limit);

    [[nodiscard]] std::string& Text() { return text_; }
    [[nodiscard]] bool IsCut() const { return is_cut_; }

  private:
    OwnedDescriptor read_end_;
    OwnedDescriptor write_end_;
    std::string text_;
    bool is_cut_ = false;
};

/// Waits for at most `wait` until one of the streams has something, and takes it.
void DrainBoth(ChildStream& first, ChildStream& second, std::size_t limit,
               std::chrono::milliseconds wait);

}  // namespace Vantix::transport
