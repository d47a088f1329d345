#include "transport/ipmi/raw_ipmi.h"

#include <algorithm>

namespace Vantix::transport {

RawAnswer AnswerBehindCode(int completion, const Bytes& bytes, std::size_t size) {
    RawAnswer answer;
    answer.completion = completion;
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(size, bytes.size()));
    const bool has_code = bytes.begin() != end && bytes.front() == completion;
    answer.data.assign(bytes.begin() + (has_code ? 1 : 0), end);
    return answer;
}

}  // namespace Vantix::transport
