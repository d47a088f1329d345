// A local file that appears under its name only when it is complete.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

#include "transport/ssh/ssh_problem.h"

namespace Vantix::transport {

class PartFile {
  public:
    /// Refuses more than `max_bytes`.
    PartFile(std::string path, std::uint64_t max_bytes);
    /// Removes what was not committed.
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// Begins anew, whatever was written before.
    [[nodiscard]] SshFailure Begin();
    [[nodiscard]] SshFailure Append(std::string_view bytes);
    [[nodiscard]] SshFailure Commit();
    [[nodiscard]] std::uint64_t Size() const { return size_; }
    [[nodiscard]] std::uint64_t MaxBytes() const { return max_bytes_; }

  private:
    const std::string path_;
    const std::string part_path_;
    const std::uint64_t max_bytes_;
    std::uint64_t size_ = 0;
    std::ofstream file_;
};

[[nodiscard]] SshFailure TooLarge(std::uint64_t max_bytes);

}  // namespace Vantix::transport
