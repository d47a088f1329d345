// File transfers with servers that break the rules: nothing wrong is taken for the file, and the
// next way is tried.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "ssh_test_base.h"
#include "support/script_file.h"

namespace Vantix::transport {
namespace {

using test_support::SshdSetup;
using test_support::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// A server of the file transfer protocol that knows one file and misbehaves as told: "short"
// answers half of what was asked for, "more" and "less" lie about the size, "shuffle" answers a
// read with the bytes of another place, "stop" ends behind the first block, "error" refuses to
// read, "deaf" says nothing behind its greeting.
constexpr const char* kSftpServer = R"(
import struct, sys
fault, path = sys.argv[1], sys.argv[2]
data = open(path, 'rb').read()
def read(count):
    got = b''
    while len(got) < count:
        more = sys.stdin.buffer.read(count - len(got))
        if not more: sys.exit(0)
        got += more
    return got
def reply(body):
    sys.stdout.buffer.write(struct.pack('>I', len(body)) + body)
    sys.stdout.buffer.flush()
def text(value): return struct.pack('>I', len(value)) + value
size = len(data) + {'more': 5, 'less': -5}.get(fault, 0)
reads = 0
while True:
    body = read(struct.unpack('>I', read(4))[0])
    kind, number = body[0], body[1:5]
    if kind == 1:
        reply(b'\x02' + struct.pack('>I', 3))
        if fault == 'deaf': read(1 << 30)
    elif kind == 3: reply(b'\x66' + number + text(b'h'))
    elif kind == 8: reply(b'\x69' + number + struct.pack('>IQ', 1, size))
    elif kind == 5:
        reads += 1
        at, count = struct.unpack('>QI', body[10:22])
        if fault == 'short': count = count // 2 + 1
        if fault == 'error': reply(b'\x65' + number + struct.pack('>I', 4) + text(b'bad disk')); continue
        if fault == 'stop' and reads > 1: sys.exit(0)
        piece = data[at:at + count]
        if fault == 'shuffle': number = struct.pack('>I', 999)
        if piece: reply(b'\x67' + number + text(piece))
        else: reply(b'\x65' + number + struct.pack('>I', 1) + text(b'end'))
    else: reply(b'\x65' + number + struct.pack('>I', 0) + text(b''))
)";

class BadTransferTest : public SshTest {
  protected:
    /// Downloads a file from a server whose SFTP misbehaves like that.
    TransferOutcome DownloadWithSftp(const std::string& fault, const std::string& content) {
        const std::string file = folder_.Write("source", content);
        const std::string script = folder_.Write("sftp.py", kSftpServer);
        SshdSetup setup;
        setup.has_sftp = false;
        setup.more_lines = {"Subsystem sftp /usr/bin/python3 " + script + " " + fault + " " + file};
        return Download(setup, file);
    }
    /// The same with any program as SFTP server.
    TransferOutcome DownloadWithProgram(const std::string& body, const std::string& content) {
        const std::string file = folder_.Write("source", content);
        const std::string program = test_support::WriteScript(folder_, "sftp", body);
        SshdSetup setup;
        setup.has_sftp = false;
        setup.more_lines = {"Subsystem sftp " + program};
        return Download(setup, file, program);
    }
    /// Downloads where an account's own "scp" is found first.
    TransferOutcome DownloadWithScp(const std::string& body, const std::string& content) {
        const std::string file = folder_.Write("source", content);
        SshdSetup setup;
        setup.has_sftp = false;
        setup.shell = "/bin/bash";
        StartServer(setup);
        server_->GiveToAccount(test_support::WriteScript(folder_, "scp", body));
        const std::string start = server_->Home() + "/.bashrc";
        std::ofstream(start) << "PATH=" << folder_.Path("") << ":/usr/bin:/bin\n";
        server_->GiveToAccount(start);
        shell_ = LoggedIn(KeyTarget());
        return shell_->Download(file, folder_.Path("data"), kMuch);
    }

    TransferOutcome Download(const SshdSetup& setup, const std::string& file,
                             const std::string& program = "") {
        StartServer(setup);
        if (!program.empty()) server_->GiveToAccount(program);
        SshTarget target = KeyTarget();
        target.limits.idle = std::chrono::milliseconds(2500);
        target.limits.keep_alive = std::chrono::milliseconds(300);
        shell_ = LoggedIn(target);
        return shell_->Download(file, folder_.Path("data"), kMuch);
    }

    static std::string Bytes(std::size_t count) {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>((i / 7) & 0xFFU);
        return bytes;
    }

    std::unique_ptr<RemoteShell> shell_;
};

TEST_F(BadTransferTest, ShortAnswersArePutTogether) {
    const std::string content = Bytes(300001);
    const auto outcome = DownloadWithSftp("short", content);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kSftp);
    EXPECT_TRUE(folder_.Read("data") == content);
}

TEST_F(BadTransferTest, WellBehavedServerOfOtherHandsWorks) {
    const std::string content = Bytes(300001);
    const auto outcome = DownloadWithSftp("none", content);
    EXPECT_EQ(outcome.way, TransferWay::kSftp) << outcome.failure.text;
    EXPECT_TRUE(folder_.Read("data") == content);
}

TEST_F(BadTransferTest, FileShorterThanItsSizeIsNotTaken) {
    const std::string content = Bytes(1000);
    const auto outcome = DownloadWithSftp("more", content);
    EXPECT_EQ(outcome.way, TransferWay::kScp) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("1000 bytes arrived instead of 1005")));
    EXPECT_TRUE(folder_.Read("data") == content);
}

TEST_F(BadTransferTest, AnswersOutOfTurnAreNotTaken) {
    const std::string content = Bytes(100000);
    const auto outcome = DownloadWithSftp("shuffle", content);
    EXPECT_EQ(outcome.way, TransferWay::kScp) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("out of turn")));
    EXPECT_TRUE(folder_.Read("data") == content);
}

TEST_F(BadTransferTest, ServerThatEndsInTheMiddleIsLeftForTheNextWay) {
    const std::string content = Bytes(100000);
    const auto outcome = DownloadWithSftp("stop", content);
    EXPECT_EQ(outcome.way, TransferWay::kScp) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP broke off")));
    EXPECT_TRUE(folder_.Read("data") == content);
}

TEST_F(BadTransferTest, RefusedReadIsToldInTheServersWords) {
    const auto outcome = DownloadWithSftp("error", Bytes(1000));
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("refused to read: bad disk (status 4)")));
}

TEST_F(BadTransferTest, DeafServerEndsWithinTheIdleLimit) {
    const auto outcome = DownloadWithSftp("deaf", Bytes(1000));
    EXPECT_EQ(outcome.failure.problem, SshProblem::kTimedOut);
    EXPECT_THAT(outcome.failure.text, HasSubstr("standstill"));
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data.part")));
}

TEST_F(BadTransferTest, ServerThatTalksInsteadOfTransferringIsLeftForTheNextWay) {
    const auto outcome = DownloadWithProgram("echo Welcome to this server", Bytes(1000));
    EXPECT_EQ(outcome.way, TransferWay::kScp) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP broke off")));
}

TEST_F(BadTransferTest, ServerThatIsNotThereIsLeftForTheNextWay) {
    const auto outcome = DownloadWithProgram("exit 127", Bytes(1000));
    EXPECT_EQ(outcome.way, TransferWay::kScp) << outcome.failure.text;
}

TEST_F(BadTransferTest, FolderInsteadOfAFileIsNotTakenFromScp) {
    const auto outcome = DownloadWithScp("printf 'D0755 0 folder\\n'; sleep 1", "right");
    EXPECT_EQ(outcome.way, TransferWay::kShell) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP"), HasSubstr("scp sent no file")));
    EXPECT_EQ(folder_.Read("data"), "right");
}

TEST_F(BadTransferTest, ScpThatEndsInTheMiddleOfTheFileIsNotTaken) {
    const auto outcome = DownloadWithScp("printf 'C0644 1000 x\\n'; printf half", "right");
    EXPECT_EQ(outcome.way, TransferWay::kShell) << outcome.failure.text;
    EXPECT_EQ(folder_.Read("data"), "right");
}

TEST_F(BadTransferTest, ScpThatFailsBehindTheFileIsNotTaken) {
    const auto outcome =
        DownloadWithScp("printf 'C0644 5 x\\nwrong\\1read error\\n'; sleep 1", "right");
    EXPECT_EQ(outcome.way, TransferWay::kShell) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP"), HasSubstr("read error")));
    EXPECT_EQ(folder_.Read("data"), "right");
}

TEST_F(BadTransferTest, NameThatScpSendsGoesNowhere) {
    const auto outcome =
        DownloadWithScp("printf 'C0644 5 ../../outside\\n12345\\0'; sleep 1", "right");
    EXPECT_EQ(outcome.way, TransferWay::kScp) << outcome.failure.text;
    EXPECT_EQ(folder_.Read("data"), "12345");
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("../../outside")));
}

TEST_F(BadTransferTest, ScpThatSendsOnBehindTheFileIsGivenUp) {
    const auto outcome =
        DownloadWithScp("printf 'C0644 5 x\\n12345\\0'; exec cat /dev/zero", "right");
    EXPECT_EQ(outcome.way, TransferWay::kShell) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP"), HasSubstr("more came than")));
    EXPECT_EQ(folder_.Read("data"), "right");
}

TEST_F(BadTransferTest, ScpThatTalksInsteadOfListeningIsGivenUp) {
    const std::string file = folder_.Write("source", Bytes(20'000'000));
    SshdSetup setup;
    setup.has_sftp = false;
    setup.shell = "/bin/bash";
    StartServer(setup);
    server_->GiveToAccount(
        test_support::WriteScript(folder_, "scp", "printf '\\0\\0'; exec cat /dev/zero"));
    const std::string start = server_->Home() + "/.bashrc";
    std::ofstream(start) << "PATH=" << folder_.Path("") << ":/usr/bin:/bin\n";
    server_->GiveToAccount(start);
    shell_ = LoggedIn(KeyTarget());
    const auto outcome = shell_->Upload(file, server_->Home() + "/data", 0600);
    EXPECT_EQ(outcome.way, TransferWay::kShell) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP"), HasSubstr("talks instead")));
}

TEST_F(BadTransferTest, ScpWithoutEndOfLineIsGivenUp) {
    const auto outcome = DownloadWithScp("head -c 100000 /dev/zero; sleep 600", "right");
    EXPECT_EQ(outcome.way, TransferWay::kShell) << outcome.failure.text;
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP"), HasSubstr("endless line")));
}

}  // namespace
}  // namespace Vantix::transport
