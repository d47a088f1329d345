// One file below a root, read piece by piece: for files of which only a few bytes matter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "transport/sysroot/system_root.h"

namespace Vantix::transport {

class RootFile {
  public:
    /// Opens `path` ("/lib/modules/..."). Only a regular file that lies below the root, with all
    /// links followed, is opened.
    RootFile(const SystemRoot& root, std::string_view path);
    ~RootFile();
    RootFile(const RootFile&) = delete;
    RootFile& operator=(const RootFile&) = delete;

    [[nodiscard]] bool IsOpen() const { return handle_ >= 0; }

    /// The bytes from `offset` on, `size` of them or as many as there are; empty when they cannot
    /// be read.
    [[nodiscard]] std::string Read(std::uint64_t offset, std::size_t size) const;

  private:
    int handle_ = -1;
};

}  // namespace Vantix::transport
