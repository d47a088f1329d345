// Reads what a Linux kernel tells about its machine (sysfs, procfs, device tree) below one root
// folder, "/" by default, so that a recorded tree can stand for a machine.
//
// Every attribute on its own: what is missing, forbidden, endless or no regular file costs only
// itself. Each file is read at most once an object; what was forbidden is kept for the summary.
// Knows nothing of what the attributes mean.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport {

class SystemRoot {
  public:
    /// `folder` stands for "/"; empty means "/" itself.
    explicit SystemRoot(const std::string& folder = "/");

    /// True for "/": only then do device nodes and programs belong to the tree that is read.
    [[nodiscard]] bool IsThisMachine() const { return folder_.empty(); }

    /// Where `path` ("/sys/...") is for the operating system.
    [[nodiscard]] std::string HostPath(std::string_view path) const;

    /// The file's bytes, at most `max_bytes` of them; nothing when it cannot be read, is no regular
    /// file, or is a link out of a recorded tree. Never waits for a writer.
    [[nodiscard]] std::optional<std::string> ReadBytes(std::string_view path,
                                                       std::size_t max_bytes = kMaxAttribute) const;

    /// The file's clean text (see CleanText); empty when it cannot be read.
    [[nodiscard]] std::string ReadText(std::string_view path) const;

    /// The names in a folder, numbers in them compared as numbers (nvme2 before nvme10); empty when
    /// it cannot be read. At most kMaxNames.
    [[nodiscard]] std::vector<std::string> List(std::string_view path) const;

    [[nodiscard]] bool Exists(std::string_view path) const;

    /// The last name of what a symbolic link points to ("../../bus/pci/drivers/nvme": nvme), also
    /// where that is missing; empty when `path` is no link.
    [[nodiscard]] std::string LinkName(std::string_view path) const;

    /// `path` with all links followed, below the root; empty when it leads nowhere, out of the root
    /// or in a circle.
    [[nodiscard]] std::string Resolve(std::string_view path) const;

    /// The files that this user may not read, sorted.
    [[nodiscard]] std::vector<std::string> DeniedPaths() const;
    /// Adds to DeniedPaths what could not be read by other means (a device node, say).
    void AddDenied(std::string_view path) const;

    /// Makes known what was read of a file by other means (piece by piece, say), so that
    /// ReadBytes() answers with it; nothing where it could not be read. The first one counts.
    void AddRead(std::string_view path, std::optional<std::string> bytes) const;
    /// Whether ReadBytes() has its answer already.
    [[nodiscard]] bool WasRead(std::string_view path) const;

    static constexpr std::size_t kMaxAttribute = 64 * 1024;
    static constexpr std::size_t kMaxNames = 65536;

  private:
    /// Where below the root `path` is read; empty where it must not be.
    [[nodiscard]] std::string PlaceOf(std::string_view path) const;

    std::string folder_;  ///< without final slash; empty for "/"
    mutable std::mutex mutex_;
    mutable std::map<std::string, std::optional<std::string>, std::less<>> read_;
    mutable std::set<std::string, std::less<>> denied_;
};

/// Compares names with the numbers in them taken as numbers.
[[nodiscard]] bool NaturalLess(std::string_view left, std::string_view right);

}  // namespace Vantix::transport
