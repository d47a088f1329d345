// What a disk answered to one request, or why it did not.
#pragma once

#include <string>

namespace Vantix::disk {

struct DeviceAnswer {
    enum class State { kRead, kDenied, kFailed };
    State state = State::kFailed;
    std::string data;   ///< when read
    std::string cause;  ///< when not read
};

}  // namespace Vantix::disk
