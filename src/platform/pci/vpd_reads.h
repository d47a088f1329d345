// Reads the vital product data of several devices within a time limit.
//
// A device answers a few bytes at a time and may take seconds, or never answer. Each is read by a
// helper thread in small pieces, several devices side by side. A thread that is too slow is left to
// itself and takes no further piece: the caller goes on without it, and the end of the process ends
// it, because the kernel gives up on a piece (a wait of 125 ms for each four bytes) and on a killed
// thread. A child process would have to be started for each device, and would have to be waited
// for. Knows nothing of files.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Vantix::pci {

/// The bytes from `offset` on, at most `size` of them, fewer or none at the end; nothing when they
/// cannot be read. Called from another thread, perhaps after the reading has been given up: what it
/// refers to must be its own.
using PieceReader = std::function<std::optional<std::string>(std::size_t offset, std::size_t size)>;

struct VpdReading {
    enum class State {
        kRead,      ///< as far as there is any
        kFailed,    ///< an error in the middle
        kTooSlow,   ///< given up after the limit
        kCancelled  ///< not tried, or given up because the run is to stop
    };
    State state = State::kCancelled;
    std::string bytes;
};

struct VpdLimits {
    std::chrono::milliseconds time{2000};  ///< for one device
    std::size_t parallel = 8;              ///< devices at one time
    std::function<bool()> is_cancelled;    ///< empty: never
};

/// One reading for each reader, in their order.
[[nodiscard]] std::vector<VpdReading> ReadVpds(std::vector<PieceReader> readers,
                                               const VpdLimits& limits);

}  // namespace Vantix::pci
