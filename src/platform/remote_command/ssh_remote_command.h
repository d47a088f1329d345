// A scan on a remote machine over one SSH connection.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"
#include "platform/remote_command/patience.h"
#include "platform/remote_command/remote_command.h"
#include "platform/remote_command/remote_scripts.h"
#include "platform/remote_command/ssh_errors.h"
#include "transport/ssh/remote_shell.h"

namespace Vantix::remote {

struct RemoteSettings {
    std::string target;       ///< how messages name the machine
    std::string output_dir;   ///< existing folder
    std::string package_dir;  ///< folder of tool packages; empty: nothing is carried
    bool keeps_folder = false;
    std::string password;      ///< for sudo; empty: none
    std::string tool_version;  ///< the one wanted there
    std::uint64_t max_report_bytes = 32 * 1024 * 1024;
    std::shared_ptr<VantixConnection::RunContext> run;
    std::shared_ptr<Patience> patience;  ///< the one that `shell` asks whether to stop
};

/// The remote log's name in the output folder, where this run's own log has the other one.
inline constexpr const char* kRemoteLogName = "remote-tarsel.log";

class SshRemoteCommand : public RemoteCommandInterface {
  public:
    SshRemoteCommand(std::unique_ptr<transport::RemoteShell> shell, RemoteSettings settings);
    /// Removes the private folder, within a few seconds, unless it is to be kept; a notice tells
    /// where it is then, or when it could not be removed.
    ~SshRemoteCommand() override;
    SshRemoteCommand(const SshRemoteCommand&) = delete;
    SshRemoteCommand& operator=(const SshRemoteCommand&) = delete;

    /// Connects, logs in, makes the private folder, and carries the tool there when a package
    /// folder was given and the machine has no tool of this version. Failures: those of
    /// ResultOfSshFailure; code 41 without a fitting package; code 42 when the carried tool does
    /// not run there.
    TarselResult Setup() override;
    /// Runs the command; see RunScript for its form. A command that leaves a common result file is
    /// a success whatever its exit status is: the file holds its verdict. Code 41 when the command
    /// needs the tool and there is none; GENERIC_FAILURE for a failed command.
    TarselResult Run(const std::string& command_line) override;
    /// Fetches what the run left: report, common result, log. Files of an earlier run do not stay
    /// behind under their names: WRITE_FILE_FAILED where one cannot be removed. A file that is not
    /// there is no failure, nor is the log.
    TarselResult DownloadLogs() override;
    /// The output folder and the last part of the name; empty when that part is no file name.
    std::string GetLocalPath(const std::string& remote_file_name) override;

  private:
    TarselResult Connect();
    TarselResult ExamineMachine();
    TarselResult CarryTool();
    TarselResult Unpack();
    TarselResult MissingTool(const std::string& why) const;
    TarselResult VerdictOn(const transport::RemoteOutcome& outcome);
    TarselResult ClearLocalFiles();
    TarselResult ListFiles(RemoteFiles& files);
    TarselResult Fetch(const std::string& name, const RemoteFiles& files);
    TarselResult CleanReport();
    void FetchLog(const RemoteFiles& files);
    transport::RemoteOutcome Execute(const transport::RemoteCommand& command);
    transport::RemoteOutcome ExecuteScript(const std::string& script);
    [[nodiscard]] TarselResult ResultOf(transport::SshFailure failure, SshStep step) const;
    void RemoveFolder();

    const std::unique_ptr<transport::RemoteShell> shell_;
    const RemoteSettings settings_;
    RemoteMachine machine_;
    bool has_fitting_tool_ = false;
};

}  // namespace Vantix::remote
