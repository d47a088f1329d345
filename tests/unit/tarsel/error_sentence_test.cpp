#include "tarsel/error_sentence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/log/log_settings.h"
#include "tarsel/exit_codes.h"

namespace tarsel {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

std::string Sentence(const TarselResult& result, int exit_code = kExitFailed) {
    return ErrorSentence(result, "127.0.0.1:8443", "127.0.0.1", exit_code);
}

TEST(ErrorSentenceTest, SaysWhatFailedWhereAndWhatToDo) {
    EXPECT_EQ(Sentence(TarselResult(17, "Failed to get BMC type.")),
              "The scan of 127.0.0.1:8443 failed: Failed to get BMC type (code 17); see tarsel.log "
              "for more.");
}

TEST(ErrorSentenceTest, EmptyMessageIsReplacedByTheTextOfTheCode) {
    EXPECT_THAT(Sentence(TarselResult(0x6D3, "")),
                HasSubstr("Failed to get firmware information (code 1747)"));
}

TEST(ErrorSentenceTest, MessageThatNamesTheHostIsTheSentence) {
    EXPECT_EQ(Sentence(TarselResult(13, "Nobody answers at 127.0.0.1; check its address.")),
              "Nobody answers at 127.0.0.1; check its address.");
}

TEST(ErrorSentenceTest, MessageThatNamesTheOwnBmcIsTheSentence) {
    EXPECT_EQ(ErrorSentence(TarselResult(50, "No account for this machine's BMC; run it as root."),
                            "db7", "", kExitUnreachable),
              "No account for this machine's BMC; run it as root.");
}

TEST(ErrorSentenceTest, AdviceFollowsTheKindOfFailure) {
    const TarselResult result(1, "x");
    EXPECT_THAT(Sentence(result, kExitAuthentication), EndsWith("password before you try again."));
    EXPECT_THAT(Sentence(result, kExitUnreachable), EndsWith("that the target is up."));
    EXPECT_THAT(Sentence(result, kExitTls), HasSubstr("--pin"));
    EXPECT_THAT(Sentence(result, kExitUnsupported), EndsWith("cannot be scanned this way."));
    EXPECT_THAT(Sentence(result, kExitUsage), EndsWith("check the arguments."));
}

TEST(ErrorSentenceTest, IsOneLineWithoutControlBytes) {
    const std::string sentence = Sentence(TarselResult(1, "first\nsecond\x1B[31m\n"));
    EXPECT_THAT(sentence, HasSubstr("first second [31m"));
    EXPECT_THAT(sentence, Not(HasSubstr("\n")));
}

TEST(ErrorSentenceTest, SecretsArePutOutOfSight) {
    Vantix::AddLogSecret("FakePass1");
    EXPECT_THAT(Sentence(TarselResult(1, "peer said FakePass1")), Not(HasSubstr("FakePass1")));
    Vantix::ShutdownLog();
}

}  // namespace
}  // namespace tarsel
