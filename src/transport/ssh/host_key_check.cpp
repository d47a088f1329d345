#include "transport/ssh/host_key_check.h"

#include <fstream>
#include <memory>

#include "common/files/file_path.h"
#include "transport/ssh/known_hosts.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

struct KeyEnd {
    void operator()(ssh_key key) const { ssh_key_free(key); }
};
using Key = std::unique_ptr<ssh_key_struct, KeyEnd>;

// Where libssh keeps the user's own file when the target names none.
std::string KnownHostsFile(const SshLink& link) {
    if (!link.Target().known_hosts_file.empty()) return link.Target().known_hosts_file;
    char* path = nullptr;
    if (ssh_options_get(link.Session(), SSH_OPTIONS_KNOWNHOSTS, &path) != SSH_OK) return "";
    std::string file = path == nullptr ? "" : path;
    ssh_string_free_char(path);
    return file;
}

class HostKeyCheck {
  public:
    HostKeyCheck(const SshLink& link, std::vector<std::string>& notices)
        : link_(link), notices_(notices), file_(KnownHostsFile(link)) {}

    SshFailure Run() {
        ssh_key key = nullptr;
        if (ssh_get_server_publickey(link_.Session(), &key) != SSH_OK) {
            return {SshProblem::kProtocol, link_.Place() + " showed no key"};
        }
        key_.reset(key);
        fingerprint_ = KeyFingerprint(key);
        if (link_.Target().host_key == SshHostKeyRule::kOff) return PassUnchecked();
        std::ifstream file(FilePath(file_));
        const std::string name = KnownHostName(link_.Target().host, link_.Target().port);
        return Judge(FindKnownHost(file, name, key));
    }

  private:
    SshFailure PassUnchecked() {
        notices_.push_back("The key of " + link_.Place() +
                           " was not checked; anybody in between can read the password (" +
                           fingerprint_ + ").");
        return {};
    }

    SshFailure Judge(const KnownHostFinding& finding) {
        switch (finding.state) {
            case KnownHost::kSame:
                return {};
            case KnownHost::kUnknown:
                return MeetUnknown();
            case KnownHost::kRevoked:
                return {SshProblem::kHostKeyChanged,
                        "the key of " + link_.Place() + " (" + fingerprint_ +
                            ") is marked as revoked in " + Where(finding) + "; nothing was sent"};
            default:
                return Changed(finding);
        }
    }

    SshFailure MeetUnknown() {
        if (link_.Target().host_key == SshHostKeyRule::kAcceptNew) return Store();
        return {SshProblem::kHostKeyUnknown, "the key of " + link_.Place() + " (" + fingerprint_ +
                                                 ") is not known in " + CleanText(file_) +
                                                 "; nothing was sent"};
    }

    SshFailure Store() {
        if (ssh_session_update_known_hosts(link_.Session()) != SSH_OK) {
            return {SshProblem::kHostKeyUnknown, "the new key of " + link_.Place() + " (" +
                                                     fingerprint_ + ") cannot be stored in " +
                                                     CleanText(file_) + "; nothing was sent"};
        }
        notices_.push_back("The key of " + link_.Place() + " (" + fingerprint_ +
                           ") was new and is stored in " + CleanText(file_) + ".");
        return {};
    }

    SshFailure Changed(const KnownHostFinding& finding) {
        return {SshProblem::kHostKeyChanged,
                "the key of " + link_.Place() + " is not the known one: it shows " + fingerprint_ +
                    ", known is " + finding.fingerprint + " (" + Where(finding) +
                    "); nothing was sent. If the server was reinstalled, remove that line"};
    }

    [[nodiscard]] std::string Where(const KnownHostFinding& finding) const {
        return CleanText(file_) + " line " + std::to_string(finding.line);
    }

    const SshLink& link_;
    std::vector<std::string>& notices_;
    const std::string file_;
    Key key_;
    std::string fingerprint_;
};

}  // namespace

SshFailure CheckHostKey(const SshLink& link, std::vector<std::string>& notices) {
    return HostKeyCheck(link, notices).Run();
}

}  // namespace Vantix::transport
