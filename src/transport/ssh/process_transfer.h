// A remote command that is fed and read step by step, as the file transfers over commands need it.
#pragma once

#include <fstream>
#include <string>
#include <string_view>

#include "transport/ssh/file_transfer.h"
#include "transport/ssh/remote_process.h"

namespace Vantix::transport {

class ProcessTalk {
  public:
    explicit ProcessTalk(SshLink& link);
    /// A command that was given up is ended.
    ~ProcessTalk();
    ProcessTalk(const ProcessTalk&) = delete;
    ProcessTalk& operator=(const ProcessTalk&) = delete;

    [[nodiscard]] SshFailure Start(const std::string& command_line);

    /// Waits for a whole line of the standard output, without its line end.
    [[nodiscard]] SshFailure ReadLine(std::string& line);
    [[nodiscard]] SshFailure ReadByte(char& byte);
    /// Moves exactly `count` bytes of the standard output into the file.
    [[nodiscard]] SshFailure ReadInto(PartFile& file, std::uint64_t count);

    [[nodiscard]] SshFailure Send(std::string_view bytes);
    /// Sends the whole local file, which must hold exactly that many bytes.
    [[nodiscard]] SshFailure SendFile(const UploadJob& job);
    void EndInput() { process_.Channel().EndInput(); }

    /// Waits for the end, which must be an exit with 0 without another byte of output.
    [[nodiscard]] SshFailure Finish();

    /// What the command said on its error output, clean; else why it broke off.
    [[nodiscard]] std::string Words() const;

  private:
    [[nodiscard]] SshFailure More();
    [[nodiscard]] SshFailure Ended() const;

    SshLink& link_;
    StepLimit limit_;
    std::string output_;
    std::string error_output_;
    RemoteProcess process_;
};

/// Reads the size that the command prints at its end.
[[nodiscard]] SshFailure ExpectSize(ProcessTalk& talk, std::uint64_t expected);

}  // namespace Vantix::transport
