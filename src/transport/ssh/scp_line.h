// The lines of the old copy protocol that scp speaks with its other half. Pure.
#pragma once

#include <cstdint>
#include <string>

namespace Vantix::transport {

struct ScpLine {
    enum class Kind {
        kFile,   ///< "C0644 SIZE NAME"
        kError,  ///< byte 1 or 2, then words
        kOther   ///< a folder, or nothing of this protocol
    };
    Kind kind = Kind::kOther;
    std::uint64_t size = 0;
    std::string words;  ///< of an error, clean
};

/// `line` without its line end. The name in it is the other side's affair and not handed on.
[[nodiscard]] ScpLine ParseScpLine(const std::string& line);

/// Four octal digits: "0700".
[[nodiscard]] std::string OctalMode(unsigned mode);

/// The line that announces a file, with its line end.
[[nodiscard]] std::string ScpFileLine(unsigned mode, std::uint64_t size, const std::string& path);

}  // namespace Vantix::transport
