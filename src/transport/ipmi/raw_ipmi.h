// This machine's own BMC, asked by one raw request after the other: how a system's own IPMI driver
// is used, without ipmitool.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "transport/ipmi/ipmitool_command.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::transport {

class RawIpmi {
  public:
    RawIpmi() = default;
    virtual ~RawIpmi() = default;
    RawIpmi(const RawIpmi&) = delete;
    RawIpmi& operator=(const RawIpmi&) = delete;

    /// Sends one request and waits for its answer. `must_end` is asked now and then; when it is
    /// true, or the driver fails, there is no answer (completion -1). Never throws.
    [[nodiscard]] virtual RawAnswer Send(const RawRequest& request,
                                         const std::function<bool()>& must_end) = 0;
};

/// Opens the driver, to be used by the calling thread alone. Null where there is none, or it may
/// not be used; `cause` then says which.
using RawIpmiOpener = std::function<std::unique_ptr<RawIpmi>(std::string& cause)>;

/// The answer in what a driver gives that puts the completion code in front of the data:
/// the first `size` of `bytes`, of which the code, where it stands there, is no data.
[[nodiscard]] RawAnswer AnswerBehindCode(int completion, const Bytes& bytes, std::size_t size);

}  // namespace Vantix::transport
