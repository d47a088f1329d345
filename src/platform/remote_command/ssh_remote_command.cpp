#include "platform/remote_command/ssh_remote_command.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "common/files/file_path.h"
#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "platform/remote_command/remote_summary.h"
#include "platform/remote_command/root_rights.h"
#include "platform/remote_command/scan_file_cleaning.h"
#include "platform/remote_command/tool_package.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

using transport::CleanStart;
using transport::CleanText;
using transport::RemoteCommand;
using transport::RemoteOutcome;
using transport::SshFailure;
using transport::SshProblem;
using transport::TransferOutcome;

constexpr const char* kSource = "platform/remote_command/ssh_remote_command";
constexpr const char* kReportName = "Tarsel-update-scan.xml";
constexpr const char* kResultName = "common_result.xml";
constexpr const char* kLogName = "tarsel.log";
constexpr std::uint64_t kMostResultBytes = 4 * 1024 * 1024;
constexpr std::uint64_t kMostLogBytes = 16 * 1024 * 1024;
constexpr std::chrono::seconds kCleaningLimit{10};
constexpr std::size_t kShownOfOutput = 2000;
constexpr unsigned kPrivateFile = 0600;

TarselResult Success() {
    return TarselResult(SUCCEED, "");
}

std::string EndText(const RemoteOutcome& outcome) {
    return outcome.exit_status >= 0 ? "with the exit code " + std::to_string(outcome.exit_status)
                                    : "by the signal " + CleanText(outcome.exit_signal);
}

std::string WordsIn(const RemoteOutcome& outcome) {
    const std::string words = LastWords(outcome.error_output);
    return words.empty() ? "" : " (" + words + ")";
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The report of an earlier run is kept under another name: it may be the only one there is.
void SetAside(const std::string& path) {
    std::error_code ignored;
    fs::rename(FilePath(path), FilePath(path + ".old"), ignored);
}

void Remove(const std::string& path) {
    std::error_code ignored;
    fs::remove(FilePath(path), ignored);
}

bool IsStillThere(const std::string& path) {
    std::error_code ignored;
    return fs::is_regular_file(FilePath(path), ignored);
}

}  // namespace

SshRemoteCommand::SshRemoteCommand(std::unique_ptr<transport::RemoteShell> shell,
                                   RemoteSettings settings)
    : shell_(std::move(shell)), settings_(std::move(settings)) {}

SshRemoteCommand::~SshRemoteCommand() {
    try {
        RemoveFolder();
    } catch (...) {  // nothing more can be done for it
    }
}

// ---- setup --------------------------------------------------------------------------------------

TarselResult SshRemoteCommand::Setup() {
    Remove(GetLocalPath(kRemoteLogName));
    if (const TarselResult result = Connect(); result != SUCCEED) return result;
    if (const TarselResult result = ExamineMachine(); result != SUCCEED) return result;
    has_fitting_tool_ = !machine_.tool.empty() && machine_.tool_version == settings_.tool_version;
    if (has_fitting_tool_ || settings_.package_dir.empty()) return Success();
    return CarryTool();
}

TarselResult SshRemoteCommand::Connect() {
    settings_.run->Activity("logging in to " + settings_.target);
    const SshFailure failure = shell_->Connect();
    for (const std::string& notice : shell_->Notices()) settings_.run->AddNotice(notice);
    if (const std::string banner = CleanStart(shell_->LoginBanner()); !banner.empty()) {
        Log(3, kSource, __LINE__).Stream() << settings_.target << " greets with: " << banner;
    }
    return ResultOf(failure, SshStep::kTalking);
}

TarselResult SshRemoteCommand::ExamineMachine() {
    const RemoteOutcome outcome = ExecuteScript(SetupScript());
    // An interrupted script may have made the folder, which must be known to be removed.
    machine_ = ParseSetupAnswer(outcome.output);
    if (outcome.failure) return ResultOf(outcome.failure, SshStep::kTalking);
    Log(3, kSource, __LINE__).Stream()
        << settings_.target << " is a " << machine_.system << " " << machine_.machine
        << ", folder \"" << CleanText(machine_.folder) << "\", tool \"" << CleanText(machine_.tool)
        << "\" " << machine_.tool_version;
    if (!machine_.folder.empty()) return Success();
    return TarselResult(REMOTE_MACHINE_NOT_SUPPORTED,
                        "No private folder could be made on " + settings_.target +
                            WordsIn(outcome) +
                            "; the account needs a POSIX shell, mktemp and a folder below TMPDIR, "
                            "/tmp, /var/tmp or its home where programs may run.");
}

TarselResult SshRemoteCommand::MissingTool(const std::string& why) const {
    return TarselResult(NO_MATCHING_TOOL_PACKAGE,
                        GetResultMessage(NO_MATCHING_TOOL_PACKAGE) + " " + settings_.target +
                            " is a " + machine_.system + " " + machine_.machine + ". " + why);
}

TarselResult SshRemoteCommand::CarryTool() {
    const ToolPackage package = FindToolPackage(settings_.package_dir, settings_.tool_version,
                                                machine_.system, machine_.machine);
    if (package.file.empty()) return MissingTool(package.error);
    settings_.run->Activity("sending the tool to " + settings_.target);
    const TransferOutcome sent =
        shell_->Upload(package.file, PackagePath(machine_.folder), kPrivateFile);
    for (const std::string& issue : sent.issues) Log(2, kSource, __LINE__).Stream() << issue;
    if (sent.failure) return ResultOf(sent.failure, SshStep::kUploading);
    Log(3, kSource, __LINE__).Stream() << package.file << " was sent to " << settings_.target
                                       << " over " << transport::TransferWayText(sent.way);
    return Unpack();
}

TarselResult SshRemoteCommand::Unpack() {
    const RemoteOutcome outcome = ExecuteScript(UnpackScript(machine_.folder));
    if (outcome.failure) return ResultOf(outcome.failure, SshStep::kUploading);
    const RemoteMachine unpacked = ParseSetupAnswer(outcome.output);
    if (!outcome.Succeeded() || unpacked.tool.empty()) {
        return TarselResult(REMOTE_MACHINE_NOT_SUPPORTED,
                            "The tool package does not work on " + settings_.target +
                                WordsIn(outcome) +
                                "; make one for that system with scripts/package.sh.");
    }
    if (unpacked.tool_version != settings_.tool_version) {
        return MissingTool("The package holds version " + unpacked.tool_version + " instead of " +
                           settings_.tool_version + ".");
    }
    machine_.tool = unpacked.tool;
    machine_.tool_version = unpacked.tool_version;
    has_fitting_tool_ = true;
    return Success();
}

// ---- run ----------------------------------------------------------------------------------------

TarselResult SshRemoteCommand::Run(const std::string& command_line) {
    RootRights rights;
    if (NeedsTool(command_line)) {
        if (!has_fitting_tool_) {
            return MissingTool("tarsel " + settings_.tool_version +
                               " is not installed there and no folder with packages was given "
                               "(--package-dir).");
        }
        rights = FindRootRights(*shell_, machine_, settings_.password);
        if (rights.failure) return ResultOf(rights.failure, SshStep::kTalking);
        if (!rights.notice.empty()) settings_.run->AddNotice(rights.notice);
    }
    settings_.run->Activity("scanning on " + settings_.target);
    RemoteCommand command;
    command.command_line = RunScript(command_line, machine_.folder, rights.call);
    command.input = rights.input;
    command.end_prefix = rights.end_prefix;
    command.end_input = rights.end_input;
    const RemoteOutcome outcome = Execute(command);
    if (outcome.failure) return ResultOf(outcome.failure, SshStep::kTalking);
    return outcome.exit_status == 0 ? Success() : VerdictOn(outcome);
}

TarselResult SshRemoteCommand::VerdictOn(const RemoteOutcome& outcome) {
    RemoteFiles files;
    if (const TarselResult listed = ListFiles(files); listed != SUCCEED) return listed;
    if (Contains(files.regular, kResultName)) return Success();
    Log(2, kSource, __LINE__).Stream() << "the command on " << settings_.target << " said \""
                                       << CleanStart(outcome.error_output, kShownOfOutput) << "\"";
    FetchLog(files);
    return TarselResult(GENERIC_FAILURE, "The command on " + settings_.target + " ended " +
                                             EndText(outcome) + " and left no result" +
                                             WordsIn(outcome) + "; see " + kLogName + " for more.");
}

// ---- download -----------------------------------------------------------------------------------

TarselResult SshRemoteCommand::DownloadLogs() {
    settings_.run->Activity("fetching the files from " + settings_.target);
    if (const TarselResult cleared = ClearLocalFiles(); cleared != SUCCEED) return cleared;
    RemoteFiles files;
    if (const TarselResult listed = ListFiles(files); listed != SUCCEED) return listed;
    for (const char* const name : {kReportName, kResultName}) {
        const TarselResult fetched = Fetch(name, files);
        if (fetched != SUCCEED) return fetched;
    }
    FetchLog(files);
    for (auto& source : ReadSources(GetLocalPath(kResultName))) {
        settings_.run->ReportSource(std::move(source));
    }
    return Success();
}

// In a folder that others write to, a file may be somebody else's: it must not pass for this run's.
TarselResult SshRemoteCommand::ClearLocalFiles() {
    SetAside(GetLocalPath(kReportName));
    Remove(GetLocalPath(kResultName));
    Remove(GetLocalPath(kRemoteLogName));
    for (const char* const name : {kReportName, kResultName}) {
        const std::string path = GetLocalPath(name);
        if (!IsStillThere(path)) continue;
        return TarselResult(WRITE_FILE_FAILED, "The file " + path +
                                                   " of an earlier run cannot be removed; nothing "
                                                   "was fetched from " +
                                                   settings_.target + ".");
    }
    return Success();
}

TarselResult SshRemoteCommand::ListFiles(RemoteFiles& files) {
    const std::vector<std::string> names = {kReportName, kResultName, kLogName};
    const RemoteOutcome outcome = ExecuteScript(ListFilesScript(machine_.folder, names));
    if (outcome.failure) return ResultOf(outcome.failure, SshStep::kDownloading);
    files = ParseListAnswer(outcome.output, names);
    if (outcome.Succeeded()) return Success();
    return TarselResult(DOWNLOAD_FAILED, "The private folder is gone from " + settings_.target +
                                             "; look there for what became of it.");
}

TarselResult SshRemoteCommand::Fetch(const std::string& name, const RemoteFiles& files) {
    if (Contains(files.other, name)) {
        return TarselResult(DOWNLOAD_FAILED, name + " on " + settings_.target +
                                                 " is no regular file and is not fetched; look "
                                                 "there for what became of it.");
    }
    if (!Contains(files.regular, name)) {
        Log(2, kSource, __LINE__).Stream() << settings_.target << " has left no " << name;
        return Success();
    }
    const std::uint64_t limit = name == kResultName ? kMostResultBytes : settings_.max_report_bytes;
    const TransferOutcome fetched =
        shell_->Download(machine_.folder + "/" + name, GetLocalPath(name), limit);
    for (const std::string& issue : fetched.issues) Log(2, kSource, __LINE__).Stream() << issue;
    if (fetched.failure) return ResultOf(fetched.failure, SshStep::kDownloading);
    Log(3, kSource, __LINE__).Stream() << name << ", " << fetched.bytes << " bytes, was fetched"
                                       << " over " << transport::TransferWayText(fetched.way);
    return name == kReportName ? CleanReport() : Success();
}

TarselResult SshRemoteCommand::CleanReport() {
    const std::string path = GetLocalPath(kReportName);
    switch (CleanScanFile(path)) {
        case ScanFileState::kClean:
            return Success();
        case ScanFileState::kExcessive:
            return TarselResult(INVALID_FILE, "The scan file from " + settings_.target +
                                                  " holds more than any scan writes and is not "
                                                  "read; look there for what made it.");
        case ScanFileState::kNotWritten:
            break;
    }
    return TarselResult(WRITE_FILE_FAILED, "The file " + path + " from " + settings_.target +
                                               " cannot be written; check rights and free space.");
}

void SshRemoteCommand::FetchLog(const RemoteFiles& files) {
    if (!Contains(files.regular, kLogName)) return;
    const std::string path = GetLocalPath(kRemoteLogName);
    const TransferOutcome fetched =
        shell_->Download(machine_.folder + "/" + kLogName, path, kMostLogBytes);
    if (!fetched.failure && CleanLogFile(path)) return;
    Log(2, kSource, __LINE__).Stream()
        << "The log on " << settings_.target << " could not be fetched: " << fetched.failure.text;
}

std::string SshRemoteCommand::GetLocalPath(const std::string& remote_file_name) {
    const std::size_t last = remote_file_name.find_last_of("/\\");
    const std::string name =
        last == std::string::npos ? remote_file_name : remote_file_name.substr(last + 1);
    const bool is_file_name =
        !name.empty() && name != "." && name != ".." && name.find('\0') == std::string::npos;
    return is_file_name ? FileName(FilePath(settings_.output_dir) / FilePath(name)) : std::string();
}

// ---- shell --------------------------------------------------------------------------------------

RemoteOutcome SshRemoteCommand::Execute(const RemoteCommand& command) {
    RemoteOutcome outcome = shell_->Execute(command);
    if (outcome.noise_bytes > 0) {
        Log(2, kSource, __LINE__).Stream()
            << outcome.noise_bytes << " bytes that the start files of the account on "
            << settings_.target << " print were left out";
    }
    Log(4, kSource, __LINE__).Stream()
        << "the command on " << settings_.target << " ended " << EndText(outcome) << ", said \""
        << CleanStart(outcome.output, kShownOfOutput) << "\" and \""
        << CleanStart(outcome.error_output, kShownOfOutput) << "\"";
    return outcome;
}

RemoteOutcome SshRemoteCommand::ExecuteScript(const std::string& script) {
    RemoteCommand command;
    command.command_line = script;
    return Execute(command);
}

// The shell knows of one reason to stop; the user must be told which one it was.
TarselResult SshRemoteCommand::ResultOf(SshFailure failure, SshStep step) const {
    if (failure.problem == SshProblem::kCancelled && settings_.patience->IsOutOfTime()) {
        failure.problem = SshProblem::kDeadline;
        failure.text.clear();
    }
    return ResultOfSshFailure(failure, step, settings_.target);
}

void SshRemoteCommand::RemoveFolder() {
    if (machine_.folder.empty()) return;
    const std::string place = CleanText(machine_.folder) + " on " + settings_.target;
    if (settings_.keeps_folder) {
        settings_.run->AddNotice("The remote folder was kept: " + place + ".");
        return;
    }
    settings_.patience->GrantCleaning(kCleaningLimit);
    if (ExecuteScript(RemoveFolderScript(machine_.folder)).Succeeded()) return;
    settings_.run->AddNotice("The remote folder could not be removed: " + place + ".");
}

}  // namespace Vantix::remote
