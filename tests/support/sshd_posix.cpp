#include "support/sshd_posix.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace test_support {
namespace {

constexpr const char* kServer = "/usr/sbin/sshd";
constexpr const char* kKeyMaker = "/usr/bin/ssh-keygen";
constexpr const char* kWrapper = "libnss_wrapper.so";
constexpr int kPortsToTry = 5;
constexpr int kLooks = 500;
constexpr std::chrono::milliseconds kPause(10);
// Of the invented account when root runs the test; nobody else's number on a usual machine.
constexpr uid_t kInventedId = 64242;

uid_t AccountId() {
    return geteuid() == 0 ? kInventedId : geteuid();
}
gid_t AccountGroup() {
    return geteuid() == 0 ? kInventedId : getegid();
}

bool HasWrapper() {
    for (const char* folder : {"/usr/lib/x86_64-linux-gnu/", "/usr/lib/aarch64-linux-gnu/",
                               "/usr/lib64/", "/usr/lib/"}) {
        if (std::filesystem::exists(std::string(folder) + kWrapper)) return true;
    }
    return false;
}

void Run(const std::vector<std::string>& arguments) {
    ChildSetup setup;
    setup.arguments = arguments;
    setup.environment = {{"PATH", "/usr/bin:/bin"}};
    ChildProcess process(setup);
    if (process.Wait() != 0) throw std::runtime_error(arguments[0] + ": " + process.Errors());
}

std::string Crypted(const std::string& password) {
    ChildSetup setup;
    setup.arguments = {"/usr/bin/openssl", "passwd", "-6", "-stdin"};
    setup.environment = {{"PATH", "/usr/bin:/bin"}};
    setup.input = password + "\n";
    ChildProcess process(setup);
    if (process.Wait() != 0) throw std::runtime_error("openssl passwd: " + process.Errors());
    const std::string text = process.Output();
    return text.substr(0, text.find('\n'));
}

const char* YesNo(bool value) {
    return value ? "yes" : "no";
}

}  // namespace

void MakeSshKey(const std::string& path, const std::string& type, const std::string& passphrase) {
    Run({kKeyMaker, "-q", "-t", type, "-N", passphrase, "-C", "invented", "-f", path});
}

int FreeTcpPort() {
    const int probe = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    const bool is_bound = bind(probe, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                          getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(probe);
    if (!is_bound) throw std::runtime_error("no TCP port of the loopback address is free");
    return ntohs(address.sin_port);
}

std::string Sshd::Missing() {
    if (!std::filesystem::exists(kServer)) return "sshd is not installed (openssh-server)";
    if (!std::filesystem::exists(kKeyMaker)) return "ssh-keygen is not installed (openssh-client)";
    if (!HasWrapper()) return "nss_wrapper is not installed (libnss-wrapper)";
    return "";
}

Sshd::Sshd(const SshdSetup& setup) {
    MakeSshKey(folder_.Path("hostkey"));
    if (setup.has_rsa_key) MakeSshKey(folder_.Path("hostkey_rsa"), "rsa");
    MakeSshKey(folder_.Path("id"));
    MakeSshKey(strange_.Path("id"));
    folder_.Write("authorized_keys", folder_.Read("id.pub"));
    WriteAccount(setup);
    for (int i = 0; i < kPortsToTry; ++i) {
        if (Start(setup)) return;
    }
    throw std::runtime_error("sshd does not start: " + Log());
}

// An empty message of the day and no start files: nothing prints that the test did not ask for.
void Sshd::WriteAccount(const SshdSetup& setup) const {
    const std::string id = std::to_string(AccountId());
    const std::string group = std::to_string(AccountGroup());
    const std::string name = kSshUser;
    std::filesystem::create_directories(Home());
    folder_.Write("passwd", name + ":x:" + id + ":" + group + ":invented:" + Home() + ":" +
                                setup.shell +
                                "\nsshd:x:64243:65534::/run/sshd:/usr/sbin/nologin\n");
    folder_.Write("group", name + ":x:" + group + ":\n");
    const std::string last_change = setup.is_password_expired ? "0" : "19000";
    folder_.Write("shadow",
                  name + ":" + Crypted(kSshPassword) + ":" + last_change + ":0:99999:7:::\n");
    if (geteuid() != 0) return;
    Run({"/bin/chown", "-R", id + ":" + group, folder_.Path(".")});
}

void Sshd::GiveToAccount(const std::string& path) const {
    if (geteuid() == 0 && chown(path.c_str(), AccountId(), AccountGroup()) != 0) {
        throw std::runtime_error("chown " + path);
    }
}

std::map<std::string, std::string> Sshd::Wrapper() const {
    return {{"LD_PRELOAD", kWrapper},
            {"NSS_WRAPPER_PASSWD", folder_.Path("passwd")},
            {"NSS_WRAPPER_GROUP", folder_.Path("group")},
            {"NSS_WRAPPER_SHADOW", folder_.Path("shadow")}};
}

std::string Sshd::Configuration(const SshdSetup& setup) const {
    std::ostringstream text;
    for (const auto& line : setup.more_lines) text << line << '\n';
    text << "ListenAddress 127.0.0.1\nPort " << port_ << "\nHostKey " << folder_.Path("hostkey")
         << "\nPidFile none\nAuthorizedKeysFile " << folder_.Path("authorized_keys")
         << "\nStrictModes no\nUsePAM no\nPubkeyAuthentication " << YesNo(setup.takes_key)
         << "\nPasswordAuthentication " << YesNo(setup.takes_password)
         << "\nKbdInteractiveAuthentication no\nAllowUsers " << kSshUser
         << "\nUseDNS no\nPrintMotd no\nPrintLastLog no\nLogLevel VERBOSE\n";
    if (setup.has_rsa_key) text << "HostKey " << folder_.Path("hostkey_rsa") << '\n';
    // The account's commands know it, too: scp asks for its own name.
    text << "SetEnv";
    for (const auto& [name, value] : Wrapper()) text << ' ' << name << '=' << value;
    text << '\n';
    if (setup.has_sftp) text << "Subsystem sftp internal-sftp\n";
    return text.str();
}

bool Sshd::Start(const SshdSetup& setup) {
    port_ = FreeTcpPort();
    ChildSetup child;
    // Its sessions inherit its streams and would keep them open behind its end.
    child.arguments = {"/bin/sh", "-c", "exec \"$@\" >/dev/null 2>&1", "sh"};
    if (geteuid() == 0) {
        const std::string id = std::to_string(kInventedId);
        for (const auto& word : {std::string("/usr/bin/setpriv"), "--reuid=" + id, "--regid=" + id,
                                 std::string("--clear-groups")}) {
            child.arguments.push_back(word);
        }
    }
    const std::string configuration = folder_.Write("sshd_config", Configuration(setup));
    child.arguments.insert(child.arguments.end(),
                           {kServer, "-D", "-E", LogFile(), "-f", configuration});
    child.environment = Wrapper();
    child.environment["PATH"] = "/usr/sbin:/usr/bin:/sbin:/bin";
    process_ = std::make_unique<ChildProcess>(child);
    return WaitForLog("Server listening on 127.0.0.1");
}

std::string Sshd::KnownHostsLine(int port) const {
    const std::string key = folder_.Read("hostkey.pub");
    const std::string type_and_key = key.substr(0, key.rfind(' '));
    return "[127.0.0.1]:" + std::to_string(port == 0 ? port_ : port) + " " + type_and_key + "\n";
}

bool Sshd::WaitForLog(const std::string& text) const {
    for (int i = 0; i < kLooks; ++i) {
        if (Log().find(text) != std::string::npos) return true;
        std::this_thread::sleep_for(kPause);
    }
    return false;
}

int Sshd::CountInLog(const std::string& text) const {
    if (!WaitForLog(text)) return 0;
    const std::string log = Log();
    int count = 0;
    for (std::size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) {
        ++count;
    }
    return count;
}

}  // namespace test_support
