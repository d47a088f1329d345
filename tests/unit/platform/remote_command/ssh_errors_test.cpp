#include "platform/remote_command/ssh_errors.h"

#include <gmock/gmock.h>

#include "common/result/result_codes.h"

namespace Vantix::remote {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using transport::SshFailure;
using transport::SshProblem;

struct Mapping {
    const char* name;
    SshProblem problem;
    SshStep step;
    int code;
};

class SshErrorsTest : public testing::TestWithParam<Mapping> {};

TEST_P(SshErrorsTest, HasItsCodeAndASentence) {
    const TarselResult result =
        ResultOfSshFailure({GetParam().problem, "words of the server"}, GetParam().step, "[::1]:9");
    EXPECT_EQ(result.code, GetParam().code);
    EXPECT_THAT(result.message, HasSubstr(" [::1]:9 (words of the server); "));
    EXPECT_THAT(result.message, EndsWith("."));
}

INSTANTIATE_TEST_SUITE_P(
    Talking, SshErrorsTest,
    testing::Values(
        Mapping{"NotResolved", SshProblem::kNotResolved, SshStep::kTalking, 13},
        Mapping{"Refused", SshProblem::kRefused, SshStep::kTalking, 13},
        Mapping{"TimedOut", SshProblem::kTimedOut, SshStep::kTalking, 18},
        Mapping{"HostKeyUnknown", SshProblem::kHostKeyUnknown, SshStep::kTalking, 36},
        Mapping{"HostKeyChanged", SshProblem::kHostKeyChanged, SshStep::kTalking, 36},
        Mapping{"NoCommonAlgorithm", SshProblem::kNoCommonAlgorithm, SshStep::kTalking, 42},
        Mapping{"Protocol", SshProblem::kProtocol, SshStep::kTalking, 13},
        Mapping{"AuthRefused", SshProblem::kAuthRefused, SshStep::kTalking, 12},
        Mapping{"NoUsableAuth", SshProblem::kNoUsableAuth, SshStep::kTalking, 12},
        Mapping{"PasswordMustChange", SshProblem::kPasswordMustChange, SshStep::kTalking, 54},
        Mapping{"ConnectionLost", SshProblem::kConnectionLost, SshStep::kTalking, 13},
        Mapping{"Cancelled", SshProblem::kCancelled, SshStep::kTalking, 47},
        Mapping{"Deadline", SshProblem::kDeadline, SshStep::kTalking, 18},
        Mapping{"CommandNotStarted", SshProblem::kCommandNotStarted, SshStep::kTalking, 42}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Files, SshErrorsTest,
    testing::Values(Mapping{"NothingToFetch", SshProblem::kNoSuchFile, SshStep::kDownloading, 16},
                    Mapping{"FailedFetch", SshProblem::kFileTransfer, SshStep::kDownloading, 16},
                    Mapping{"FailedSending", SshProblem::kFileTransfer, SshStep::kUploading, 15},
                    Mapping{"TooLarge", SshProblem::kFileTooLarge, SshStep::kDownloading, 16},
                    Mapping{"LocalFileToSend", SshProblem::kLocalFile, SshStep::kUploading, 10},
                    Mapping{"LocalFileToWrite", SshProblem::kLocalFile, SshStep::kDownloading, 11},
                    Mapping{"LostInFetch", SshProblem::kConnectionLost, SshStep::kDownloading, 13},
                    Mapping{"CancelledSending", SshProblem::kCancelled, SshStep::kUploading, 47}),
    [](const auto& row) { return row.param.name; });

TEST(SshErrorTextTest, NoProblemIsSuccess) {
    EXPECT_EQ(ResultOfSshFailure({}, SshStep::kTalking, "host").code, SUCCEED);
}

TEST(SshErrorTextTest, UnusableKeyFileIsNotToldAsAFetchedFile) {
    const TarselResult result = ResultOfSshFailure(
        {SshProblem::kLocalFile, "the key file id is not readable"}, SshStep::kTalking, "host");
    EXPECT_EQ(result.code, READ_FILE_FAILED);
    EXPECT_EQ(result.message,
              "The key file cannot be used to log in to host (the key file id is not readable); "
              "check its rights, that it is a private key, and its passphrase.");
}

TEST(SshErrorTextTest, EmptyWordsLeaveNoBrackets) {
    const TarselResult result =
        ResultOfSshFailure({SshProblem::kDeadline, ""}, SshStep::kTalking, "host");
    EXPECT_EQ(result.message,
              "The time for the whole scan is used up on host; allow more with --deadline.");
}

}  // namespace
}  // namespace Vantix::remote
