#include <utility>

#include "transport/ssh/file_transfer.h"
#include "transport/ssh/host_key_check.h"
#include "transport/ssh/remote_process.h"
#include "transport/ssh/remote_shell.h"
#include "transport/ssh/ssh_link.h"
#include "transport/ssh/ssh_login.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

class SshShell : public RemoteShell {
  public:
    explicit SshShell(SshTarget target) : target_(std::move(target)), link_(target_) {}

    SshFailure Connect() override {
        if (auto failure = link_.Open()) return failure;
        if (auto failure = CheckHostKey(link_, notices_)) return failure;
        auto failure = LogIn(link_);
        char* banner = ssh_get_issue_banner(link_.Session());
        banner_ = CleanText(banner == nullptr ? "" : banner);
        ssh_string_free_char(banner);
        if (!failure) link_.KeepAlive();
        return failure;
    }

    RemoteOutcome Execute(const RemoteCommand& command) override {
        return RunRemoteCommand(link_, command);
    }

    TransferOutcome Upload(const std::string& local_file, const std::string& remote_path,
                           unsigned mode) override {
        return UploadFile(link_, local_file, remote_path, mode);
    }

    TransferOutcome Download(const std::string& remote_path, const std::string& local_path,
                             std::uint64_t max_bytes) override {
        return DownloadFile(link_, remote_path, local_path, max_bytes);
    }

    std::string LoginBanner() const override { return banner_; }
    std::vector<std::string> Notices() const override { return notices_; }

  private:
    const SshTarget target_;
    SshLink link_;
    std::string banner_;
    std::vector<std::string> notices_;
};

}  // namespace

std::unique_ptr<RemoteShell> MakeSshShell(SshTarget target) {
    return std::make_unique<SshShell>(std::move(target));
}

}  // namespace Vantix::transport
