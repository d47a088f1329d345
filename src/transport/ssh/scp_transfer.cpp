#include <string>

#include "transport/ssh/process_transfer.h"
#include "transport/ssh/remote_shell.h"
#include "transport/ssh/scp_line.h"

namespace Vantix::transport {
namespace {

constexpr char kGo = '\0';

SshFailure ExpectGo(ProcessTalk& talk) {
    char byte = kGo;
    if (auto failure = talk.ReadByte(byte)) return failure;
    if (byte == kGo) return {};
    std::string rest;
    if (auto failure = talk.ReadLine(rest)) return failure;
    const ScpLine line = ParseScpLine(byte + rest);
    return BrokenTransfer(line.words.empty() ? "scp answered out of turn" : line.words);
}

SshFailure Go(ProcessTalk& talk) {
    return talk.Send(std::string_view(&kGo, 1));
}

}  // namespace

SshFailure DownloadByScp(SshLink& link, const std::string& remote_path, PartFile& file) {
    ProcessTalk talk(link);
    const std::string command = "LC_ALL=C scp -f " + QuotePathForShell(remote_path);
    if (auto failure = talk.Start(command)) return failure;
    if (auto failure = Go(talk)) return failure;
    std::string text;
    if (auto failure = talk.ReadLine(text)) return failure;
    const ScpLine line = ParseScpLine(text);
    if (line.kind == ScpLine::Kind::kError) {
        const bool is_missing = line.words.find("No such file") != std::string::npos;
        return is_missing ? NoSuchFile(remote_path) : BrokenTransfer(line.words);
    }
    if (line.kind != ScpLine::Kind::kFile) return BrokenTransfer("scp sent no file");
    if (line.size > file.MaxBytes()) return TooLarge(file.MaxBytes());
    if (auto failure = Go(talk)) return failure;
    if (auto failure = talk.ReadInto(file, line.size)) return failure;
    if (auto failure = ExpectGo(talk)) return failure;
    if (auto failure = Go(talk)) return failure;
    talk.EndInput();
    return talk.Finish();
}

// A file that is there keeps its mode: it is set before any byte comes, and the size asked for at
// the end.
SshFailure UploadByScp(SshLink& link, const UploadJob& job) {
    ProcessTalk talk(link);
    const std::string path = QuotePathForShell(job.remote_path);
    if (auto failure = talk.Start("umask 077; LC_ALL=C scp -t " + path + " && chmod " +
                                  OctalMode(job.mode) + " " + path + " && wc -c < " + path)) {
        return failure;
    }
    if (auto failure = ExpectGo(talk)) return failure;
    if (auto failure = talk.Send(ScpFileLine(job.mode, job.size, job.remote_path))) return failure;
    if (auto failure = ExpectGo(talk)) return failure;
    if (auto failure = talk.SendFile(job)) return failure;
    if (auto failure = Go(talk)) return failure;
    if (auto failure = ExpectGo(talk)) return failure;
    talk.EndInput();
    return ExpectSize(talk, job.size);
}

}  // namespace Vantix::transport
