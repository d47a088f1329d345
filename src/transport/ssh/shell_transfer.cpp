#include <charconv>
#include <string>

#include "transport/ssh/process_transfer.h"
#include "transport/ssh/remote_shell.h"
#include "transport/ssh/scp_line.h"

namespace Vantix::transport {
namespace {

// An exit status that no usual command has.
constexpr int kMissing = 44;

// wc pads its number with blanks on some systems.
bool ReadCount(const std::string& line, std::uint64_t& count) {
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string::npos) return false;
    const char* const last = line.data() + line.size();
    const auto [end, error] = std::from_chars(line.data() + first, last, count);
    return error == std::errc() && (end == last || *end == ' ');
}

}  // namespace

SshFailure ExpectSize(ProcessTalk& talk, std::uint64_t expected) {
    std::string line;
    if (auto failure = talk.ReadLine(line)) return failure;
    std::uint64_t size = 0;
    if (!ReadCount(line, size)) return BrokenTransfer("no size came");
    if (size != expected) return SizeDiffers(expected, size);
    return talk.Finish();
}

SshFailure DownloadByShell(SshLink& link, const std::string& remote_path, PartFile& file) {
    ProcessTalk talk(link);
    const std::string path = QuotePathForShell(remote_path);
    if (auto failure =
            talk.Start("if [ ! -e " + path + " ]; then echo missing; exit " +
                       std::to_string(kMissing) + "; fi; wc -c < " + path + " && cat < " + path)) {
        return failure;
    }
    talk.EndInput();
    std::string line;
    if (auto failure = talk.ReadLine(line)) return failure;
    if (line == "missing") return NoSuchFile(remote_path);
    std::uint64_t size = 0;
    if (!ReadCount(line, size)) return BrokenTransfer("no size came");
    if (size > file.MaxBytes()) return TooLarge(file.MaxBytes());
    if (auto failure = talk.ReadInto(file, size)) return failure;
    return talk.Finish();
}

SshFailure UploadByShell(SshLink& link, const UploadJob& job) {
    ProcessTalk talk(link);
    const std::string path = QuotePathForShell(job.remote_path);
    if (auto failure = talk.Start("umask 077; cat > " + path + " && chmod " + OctalMode(job.mode) +
                                  " " + path + " && wc -c < " + path)) {
        return failure;
    }
    if (auto failure = talk.SendFile(job)) return failure;
    talk.EndInput();
    return ExpectSize(talk, job.size);
}

}  // namespace Vantix::transport
