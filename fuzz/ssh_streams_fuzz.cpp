// Any bytes as what an SSH server sends over its channels: file transfer packets, lines of scp, the
// beginning of a command's output. Read without a crash or an endless loop, and no byte is
// invented.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "transport/ssh/command_wrapper.h"
#include "transport/ssh/scp_line.h"
#include "transport/ssh/sftp_codec.h"

namespace {

using namespace Vantix::transport;

void ReadPackets(std::string bytes) {
    SftpReply reply;
    for (std::size_t before = bytes.size() + 1; bytes.size() < before;) {
        before = bytes.size();
        const SftpTake taken = TakeSftpReply(bytes, reply);
        if (taken != SftpTake::kReply) return;
        if (reply.text.size() > before) std::abort();
    }
    std::abort();  // a packet that takes nothing
}

void ReadLine(const std::string& bytes) {
    const ScpLine line = ParseScpLine(bytes.substr(0, bytes.find('\n')));
    if (line.kind != ScpLine::Kind::kError && !line.words.empty()) std::abort();
}

void ReadStream(const std::string& bytes) {
    StreamStart whole("mark");
    const std::string at_once = whole.Pass(bytes);
    StreamStart single("mark");
    std::string one_by_one;
    for (const char byte : bytes) one_by_one += single.Pass(std::string(1, byte));
    if (at_once != one_by_one || whole.Word() != single.Word()) std::abort();
    if (at_once.size() > bytes.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    ReadPackets(bytes);
    ReadLine(bytes);
    if (size < 4096) ReadStream(bytes);  // longer noise is dropped in other portions
    return 0;
}
