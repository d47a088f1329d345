#include "service/update_scan_service/detail/remote_os_scan.h"

#include <boost/filesystem/operations.hpp>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "common/files/file_path.h"
#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "platform/remote_command/remote_command.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/serialize_update_scan.h"

namespace service::detail {
namespace {

std::optional<Vantix::Uri> ParseTarget(const std::string& text) {
    try {
        return Vantix::Uri(text, false);
    } catch (const std::exception& error) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to parse uri " << text << "with error is " << error.what();
        return std::nullopt;
    }
}

TarselResult RunRemotely(RemoteCommandInterface& remote, const std::string& command) {
    TarselResult result = remote.Setup();
    if (result != SUCCEED) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to setup remote environment with error is " << result;
        return result;
    }
    result = remote.Run(command);
    if (result != SUCCEED) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to run remote scan command with " << command << ", error is " << result;
        return result;
    }
    result = remote.DownloadLogs();
    if (result != SUCCEED) {
        Vantix::Log(2, kScanLogSource, __LINE__).Stream()
            << "Failed to download remote scan logs with error is " << result;
    }
    return result;
}

// Without the test the reader would complain about a file that a remote run need not leave.
TarselResult LoadReport(const std::string& path, UpdateScanReport& report) {
    const boost::filesystem::path file(Vantix::FilePath(path).native());
    boost::system::error_code ignored;
    if (!boost::filesystem::is_regular_file(file, ignored)) return TarselResult(SUCCEED, "");
    TarselResult result(SerializeScanReport::LoadFromXml(path, report));
    if (result != SUCCEED) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Failed to load scan xml " << path;
    }
    return result;
}

TarselResult RemoteVerdict(const std::string& path) {
    int code = 0;
    std::string message;
    if (!SummaryReport::ExtractSummaryResult(path, code, message)) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to extract result from " << path;
        return TarselResult(GENERIC_FAILURE, "Failed to extract remote common result");
    }
    return TarselResult(code, message);
}

TarselResult ScanThrough(RemoteCommandInterface& remote, const std::string& command,
                         UpdateScanReport& report) {
    const TarselResult run = RunRemotely(remote, command);
    if (run != SUCCEED) return run;
    const TarselResult loaded = LoadReport(remote.GetLocalPath("Tarsel-update-scan.xml"), report);
    if (loaded != SUCCEED) return loaded;
    return RemoteVerdict(remote.GetLocalPath("common_result.xml"));
}

TarselResult UnexpectedFailure(const std::string& reason) {
    Vantix::Log(1, kScanLogSource, __LINE__).Stream()
        << "Failed to scan remote OS with error is " << reason;
    return TarselResult(GENERIC_FAILURE, reason);
}

TarselResult Scan(const UpdateScanOption& option, UpdateScanReport& report) {
    const std::optional<Vantix::Uri> uri =
        ParseTarget("ssh://" + option.connect_option.target_address);
    if (!uri) return TarselResult(CONNECTION_FAILED, "Failed to parse uri");
    std::shared_ptr<RemoteCommandInterface> remote;
    try {
        remote = RemoteCommandFactory::create(*uri, option.output_dir, option.package_dir,
                                              option.remote_flag);
    } catch (const std::exception& error) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to create remote controller with error info is " << error.what();
        return TarselResult(REMOTE_MACHINE_NOT_SUPPORTED, error.what());
    }
    return ScanThrough(*remote, option.remote_command, report);
}

}  // namespace

TarselResult RemoteOsScan(const UpdateScanOption& option, UpdateScanReport& report,
                          DynamicProgressBar* /*progress_bar*/) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start remote OS inventorying...";
    try {
        return Scan(option, report);
    } catch (const std::exception& error) {
        return UnexpectedFailure(error.what());
    } catch (...) {
        return UnexpectedFailure("unknown exception");
    }
}

}  // namespace service::detail
