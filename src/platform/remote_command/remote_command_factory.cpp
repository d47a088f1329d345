#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "common/files/file_path.h"
#include "platform/connection/connection.h"
#include "platform/connection/target_address.h"
#include "platform/log/log_settings.h"
#include "platform/remote_command/ssh_remote_command.h"

namespace {

namespace fs = std::filesystem;

using Vantix::Uri;
using Vantix::remote::Patience;
using Vantix::remote::RemoteSettings;
using Vantix::transport::SshHostKeyRule;
using Vantix::transport::SshLimits;
using Vantix::transport::SshTarget;
using Vantix::VantixConnection::ConnectOption;
using Vantix::VantixConnection::SshHostKeyPolicy;

constexpr int kSshPort = 22;

SshHostKeyRule RuleFor(SshHostKeyPolicy policy) {
    switch (policy) {
        case SshHostKeyPolicy::kAcceptNew:
            return SshHostKeyRule::kAcceptNew;
        case SshHostKeyPolicy::kOff:
            return SshHostKeyRule::kOff;
        case SshHostKeyPolicy::kStrict:
            break;
    }
    return SshHostKeyRule::kStrict;
}

int PortOf(const Uri& uri, const ConnectOption& option) {
    if (uri.Port() != 0) return uri.Port();
    return option.port != 0 ? option.port : kSshPort;
}

// The deadline is Patience's affair, so that cleaning up may still happen behind it.
SshLimits LimitsFor(const ConnectOption& option) {
    SshLimits limits;
    if (option.connect_timeout_seconds > 0) {
        limits.connect = std::chrono::seconds(option.connect_timeout_seconds);
    }
    // A server shows a sign of life several times within this time; one request may take as long
    // without any.
    if (option.timeout_seconds > 0) limits.idle = 2 * std::chrono::seconds(option.timeout_seconds);
    return limits;
}

SshTarget TargetFor(const Uri& uri, const ConnectOption& option) {
    SshTarget target;
    target.host = uri.Host();
    target.port = PortOf(uri, option);
    target.user = uri.User().empty() ? option.user : uri.User();
    target.password = option.password;
    target.key_file = option.ssh_key_file;
    target.key_passphrase = option.ssh_key_passphrase;
    target.host_key = RuleFor(option.ssh_host_key);
    target.known_hosts_file = option.ssh_known_hosts;
    target.is_legacy_allowed = option.legacy_ssh;
    target.limits = LimitsFor(option);
    return target;
}

std::string TargetText(const SshTarget& target) {
    const std::string port = target.port == kSshPort ? "" : ":" + std::to_string(target.port);
    return Vantix::VantixConnection::HostForUrl(target.host) + port;
}

void RequireFolder(const std::string& folder, const std::string& what) {
    std::error_code error;
    if (fs::is_directory(Vantix::FilePath(folder), error)) return;
    throw std::runtime_error("The " + what + " \"" + folder + "\" is no folder.");
}

void RequireUsableOptions(const Uri& uri, const RemoteSettings& settings) {
    if (uri.Scheme() != "ssh") {
        throw std::runtime_error("Remote machines are reached over SSH only, not over " +
                                 uri.Scheme() + ".");
    }
    RequireFolder(settings.output_dir, "output folder");
    if (!settings.package_dir.empty()) RequireFolder(settings.package_dir, "package folder");
}

}  // namespace

std::shared_ptr<RemoteCommandInterface> RemoteCommandFactory::create(const Uri& uri,
                                                                     const std::string& output_dir,
                                                                     const std::string& package_dir,
                                                                     bool remote_flag) {
    const ConnectOption& option = Vantix::VantixConnection::ActiveRun::Option();
    SshTarget target = TargetFor(uri, option);
    RemoteSettings settings;
    settings.target = TargetText(target);
    settings.output_dir = output_dir.empty() ? "." : output_dir;
    settings.package_dir = package_dir;
    settings.keeps_folder = remote_flag;
    settings.password = option.password;
    settings.tool_version = TARSEL_VERSION_TEXT;
    settings.max_report_bytes = option.max_body_bytes;
    settings.run = option.run;
    settings.patience =
        std::make_shared<Patience>(option.run, std::chrono::seconds(option.deadline_seconds));
    RequireUsableOptions(uri, settings);
    Vantix::AddLogSecret(option.password);
    Vantix::AddLogSecret(option.ssh_key_passphrase);
    target.is_cancelled = [patience = settings.patience] { return patience->IsOver(); };
    target.may_try_login = [run = option.run] { return run->MayTryLogin(); };
    target.login_refused = [run = option.run](const std::string& what) { run->LoginRefused(what); };
    return std::make_shared<Vantix::remote::SshRemoteCommand>(
        Vantix::transport::MakeSshShell(std::move(target)), std::move(settings));
}
