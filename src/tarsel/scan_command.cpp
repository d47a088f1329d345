#include "tarsel/scan_command.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <locale>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "common/version/version.h"
#include "platform/connection/run_context.h"
#include "platform/estimate/estimate.h"
#include "platform/log/log.h"
#include "platform/log/log_settings.h"
#include "platform/log/utc_time.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/service_update_scan.h"
#include "tarsel/common_result.h"
#include "tarsel/credentials.h"
#include "tarsel/error_sentence.h"
#include "tarsel/exit_codes.h"
#include "tarsel/interruption.h"
#include "tarsel/output_files.h"
#include "tarsel/scan_options.h"
#include "tarsel/state_folder.h"
#include "tarsel/status_block.h"
#include "tarsel/target_text.h"
#include "tarsel/terminal.h"
#include "tarsel/terminal_progress_bar.h"

namespace tarsel {
namespace {

using SystemClock = std::chrono::system_clock;
using Vantix::Log;
using Vantix::VantixConnection::RunContext;
using Vantix::VantixConnection::SourceStatus;

constexpr const char* kSource = "tarsel/scan_command";
// The key under which the scan through a BMC asks for its estimate.
constexpr const char* kEstimateKey = "None_None";
// Word for word what a CIM connection says itself, so that it is shown once: before the scan where
// CIM is sure to be used.
constexpr const char* kCimWithoutTls =
    "CIM runs without TLS: user name and password travel unprotected.";
constexpr const char* kCimWithoutLogin =
    "CIM runs without TLS: no user name and password are sent.";
constexpr int kInternalError = 17;
constexpr int kFileLevel = 3;
constexpr int kMostDetailedLevel = 4;

// One scan and what it left behind; the steps below run in the order of RunScanCommand.
class ScanRun {
  public:
    explicit ScanRun(const ScanArguments& arguments)
        : arguments_(arguments),
          target_(TargetText(arguments)),
          run_(std::make_shared<RunContext>(arguments.login_attempts)),
          interruption_(run_) {}

    int Run();

  private:
    [[nodiscard]] std::optional<int> FindSecrets(Secrets& secrets) const;
    void StartLog();
    void SayOnce(const std::string& sentence);
    void SayNotices();
    void WarnAboutSecurity();
    void Scan(const Secrets& secrets);
    void SaveScanXml();
    void PrintTables();
    void SaveCommonResult();
    void RememberDuration();
    void Tell();
    [[nodiscard]] bool HasSomethingToSave() const;
    void Fail(const std::string& sentence);

    const ScanArguments& arguments_;
    const std::string target_;
    const std::shared_ptr<RunContext> run_;
    const Interruption interruption_;
    service::UpdateScanReport report_;
    TarselResult result_{0, ""};
    SystemClock::time_point started_;
    SystemClock::time_point finished_;
    int exit_code_ = kExitFailed;
    std::string said_;
};

void PrintError(const std::string& sentence) {
    std::cerr << "tarsel: " << sentence << std::endl;
}

// What a scan path throws costs its result, not the summary that is still to be written.
TarselResult RunWithoutThrowing(service::ServiceUpdateScan& scan,
                                service::UpdateScanReport& report) {
    try {
        return scan.Run(report);
    } catch (const std::exception& error) {
        return TarselResult(kInternalError, std::string("Internal error: ") + error.what());
    }
}

bool IsCimCertain(TargetKind kind) {
    return kind == TargetKind::kChassis || kind == TargetKind::kIoSwitch ||
           kind == TargetKind::kHypervisor;
}

// What a scan path keeps to itself when it only says that it failed.
TarselResult TellingResult(const TarselResult& result, const TarselResult& last_failure) {
    return IsMute(result) && !last_failure.IsSucceed() ? last_failure : result;
}

// What the scan paths ask their estimates for; empty for those that ask for none.
std::string DurationKey(TargetKind kind, const service::UpdateScanReport& report) {
    if (kind == TargetKind::kBmc) return TimeEstimation::KeyFor(kEstimateKey, report.GetMT());
    if (kind != TargetKind::kInBand) return {};
    return TimeEstimation::KeyFor(report.GetMT() + "-" + report.GetArch(), report.GetOS());
}

bool HasAnswered(const std::vector<SourceStatus>& sources) {
    return std::any_of(sources.begin(), sources.end(),
                       [](const SourceStatus& source) { return source.items_read > 0; });
}

int ScanRun::Run() {
    if (const std::string error = PrepareOutputFolder(arguments_.output_dir); !error.empty()) {
        PrintError(error);
        return kExitFailed;
    }
    Secrets secrets;
    if (const auto exit_code = FindSecrets(secrets)) return *exit_code;
    StartLog();
    WarnAboutSecurity();
    TimeEstimation::getInstance()->UseFile(DurationFile());
    Scan(secrets);
    WipeText(secrets.password);
    WipeText(secrets.ssh_key_passphrase);
    const std::int32_t code =
        TellingCode(result_, run_->LastFailure().code, HasAnswered(run_->Sources()));
    exit_code_ = ExitCodeFor(code, run_->IsPartial(), Interruption::Signal());
    SaveScanXml();
    PrintTables();
    SaveCommonResult();
    RememberDuration();
    Tell();
    Vantix::ShutdownLog();
    return exit_code_;
}

// The exit code to end with when there is nothing to log in with.
std::optional<int> ScanRun::FindSecrets(Secrets& secrets) const {
    const auto is_interrupted = [] { return Interruption::Signal() != 0; };
    for (const bool is_password : {true, false}) {
        PasswordResult found = is_password ? FindPassword(arguments_, is_interrupted)
                                           : FindPassphrase(arguments_, is_interrupted);
        if (!found.is_found) {
            PrintError(found.error);
            return found.is_interrupted ? kExitSignalBase + Interruption::Signal() : kExitUsage;
        }
        Vantix::AddLogSecret(found.password);
        (is_password ? secrets.password : secrets.ssh_key_passphrase) = std::move(found.password);
    }
    return std::nullopt;
}

void ScanRun::StartLog() {
    Vantix::LogSettings settings;
    settings.file = FileIn(arguments_.output_dir, kLogName);
    settings.console_level =
        arguments_.verbosity == 0
            ? 0
            : std::min(kFileLevel + arguments_.verbosity - 1, kMostDetailedLevel);
    settings.file_level = std::max(kFileLevel, settings.console_level);
    if (const std::string error = Vantix::ConfigureLog(settings); !error.empty()) SayOnce(error);
}

void ScanRun::SayOnce(const std::string& sentence) {
    if (said_.find("\n" + sentence + "\n") != std::string::npos) return;
    said_ += "\n" + sentence + "\n";
    Log(2, kSource, __LINE__).Stream() << sentence;
    if (!arguments_.is_quiet) PrintError(Vantix::MaskSecrets(sentence));
}

void ScanRun::WarnAboutSecurity() {
    if (arguments_.is_insecure) {
        SayOnce("The certificate of " + PeerText(arguments_) +
                " is not checked (--insecure); anybody in between can read the password.");
    }
    if (arguments_.is_tls_legacy) {
        SayOnce("Weak TLS versions and keys are accepted from " + PeerText(arguments_) +
                " (--tls-legacy).");
    }
    if (arguments_.is_cim_http && IsCimCertain(arguments_.kind)) {
        SayOnce(arguments_.is_insecure ? kCimWithoutTls : kCimWithoutLogin);
    }
}

void ScanRun::Scan(const Secrets& secrets) {
    // With -v the log itself shows the progress; two writers would garble the terminal.
    const bool has_bar =
        !arguments_.is_quiet && arguments_.verbosity == 0 && IsErrorOutputInteractive();
    TerminalProgressBar bar(std::cerr, has_bar, [] { return Interruption::Signal() != 0; });
    run_->on_activity = [&bar](const std::string& text) { bar.ShowActivity(text); };
    started_ = SystemClock::now();
    Log(3, kSource, __LINE__).Stream() << "tarsel " << TarselVersion() << " scan of " << target_
                                       << " started at " << Vantix::UtcSecondsText(started_);
    {
        service::ServiceUpdateScan scan(ScanOptionFor(arguments_, secrets, run_));
        scan.SetProgressBar(&bar);
        result_ = RunWithoutThrowing(scan, report_);
    }
    run_->on_activity = nullptr;
    finished_ = SystemClock::now();
    Log(3, kSource, __LINE__).Stream()
        << "scan of " << target_ << " finished at " << Vantix::UtcSecondsText(finished_)
        << " with result " << result_;
}

bool ScanRun::HasSomethingToSave() const {
    return result_.IsSucceed() || !report_.GetScanResults().empty();
}

void ScanRun::Fail(const std::string& sentence) {
    Log(1, kSource, __LINE__).Stream() << sentence;
    PrintError(sentence);
    if (exit_code_ == kExitComplete || exit_code_ == kExitPartial) exit_code_ = kExitFailed;
}

void ScanRun::SaveScanXml() {
    const std::string file = FileIn(arguments_.output_dir, kScanXmlName);
    if (!HasSomethingToSave()) {
        // First what came in this run, so that it does not take the place of the earlier one.
        if (arguments_.kind == TargetKind::kRemoteOs &&
            SetAsideFetchedScanXml(arguments_.output_dir, started_)) {
            SayOnce("The scan file that came from " + target_ + " was renamed to " + file +
                    ".remote.");
        }
        if (SetAsideOldScanXml(arguments_.output_dir)) {
            SayOnce("The scan file of an earlier run was renamed to " + file + ".old.");
        }
        return;
    }
    if (service::SerializeScanReport::SaveToXml(report_, file) != 0) {
        Fail("The scan file " + file + " cannot be written; check rights and free space there.");
    }
}

void ScanRun::PrintTables() {
    if (!HasSomethingToSave()) return;
    std::ostringstream tables;
    tables.imbue(std::locale::classic());
    service::SerializeScanReport::PrintResult(report_, tables, TableScopeFor(arguments_.scan_type));
    if (WriteStandardOutput(tables.str()) == WriteState::kFailed) {
        Fail("The tables cannot be written to the standard output; the scan file has them.");
    }
}

void ScanRun::SaveCommonResult() {
    CommonResult summary;
    summary.code = result_.code;
    const TarselResult telling = TellingResult(result_, run_->LastFailure());
    summary.message = Vantix::MaskSecrets(telling.message.empty() ? GetResultMessage(telling.code)
                                                                  : telling.message);
    summary.exit_code = exit_code_;
    summary.target = target_;
    summary.version = TarselVersion();
    summary.started = started_;
    summary.finished = finished_;
    summary.sources = run_->Sources();
    for (auto& source : summary.sources) source.detail = Vantix::MaskSecrets(source.detail);
    const std::string file = FileIn(arguments_.output_dir, kCommonResultName);
    if (!WriteFileAtomically(file, CommonResultXml(summary))) {
        Fail("The summary " + file + " cannot be written; check rights and free space there.");
    }
}

void ScanRun::RememberDuration() {
    const std::string key = DurationKey(arguments_.kind, report_);
    if (key.empty()) return;
    if (!result_.IsSucceed() || arguments_.is_info_only || run_->IsPartial()) return;
    const auto elapsed = std::chrono::ceil<std::chrono::seconds>(finished_ - started_);
    TimeEstimation::getInstance()->RememberScan(key, static_cast<int>(elapsed.count()));
}

// Of a scan that failed they are what explains it, so that a quiet run shows them, too.
void ScanRun::SayNotices() {
    for (const std::string& notice : run_->Notices()) {
        SayOnce(notice);
        if (arguments_.is_quiet && !result_.IsSucceed()) PrintError(Vantix::MaskSecrets(notice));
    }
    if (arguments_.kind == TargetKind::kLocal && arguments_.scan_type == "dd") {
        SayOnce("A scan with --local reads no device drivers; --inband does.");
    }
    if (arguments_.kind == TargetKind::kRemoteOs && arguments_.scan_type == "dd" &&
        arguments_.remote.command.empty()) {
        SayOnce(
            "The scan there reads no device drivers unless it is made with --remote-command "
            "\"{tarsel} scan --inband --scantype dd --output {folder}\".");
    }
}

void ScanRun::Tell() {
    SayNotices();
    const auto sources = run_->Sources();
    const std::string block = StatusBlock(target_, sources);
    // The block sends readers to the log for what it leaves out.
    if (!block.empty()) {
        Log(3, kSource, __LINE__).Stream() << StatusBlock(target_, sources, kAllIssues);
    }
    if (!arguments_.is_quiet) std::cerr << Vantix::MaskSecrets(block) << std::flush;
    if (!result_.IsSucceed()) {
        PrintError(ErrorSentence(TellingResult(result_, run_->LastFailure()), target_,
                                 arguments_.host, exit_code_));
    } else if (arguments_.is_quiet && exit_code_ == kExitPartial) {
        PrintError(GapSentence(target_, sources));
    }
}

}  // namespace

int RunScanCommand(const ScanArguments& arguments) {
    return ScanRun(arguments).Run();
}

}  // namespace tarsel
