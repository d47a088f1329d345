#include "transport/arcconf/arcconf_problem.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

CommandOutcome Said(const std::string& output, int exit_status = 0,
                    const std::string& error_output = "") {
    CommandOutcome outcome;
    outcome.end = CommandEnd::kExited;
    outcome.exit_status = exit_status;
    outcome.output = output;
    outcome.error_output = error_output;
    return outcome;
}

CommandOutcome Ended(CommandEnd end) {
    CommandOutcome outcome;
    outcome.end = end;
    return outcome;
}

TEST(ClassifyArcconfTest, WaysOfEndingAreToldApart) {
    EXPECT_EQ(ClassifyArcconf(Ended(CommandEnd::kNotFound)), ArcconfProblem::kNotInstalled);
    EXPECT_EQ(ClassifyArcconf(Ended(CommandEnd::kNotStarted)), ArcconfProblem::kNotStarted);
    EXPECT_EQ(ClassifyArcconf(Ended(CommandEnd::kSignalled)), ArcconfProblem::kNotStarted);
    EXPECT_EQ(ClassifyArcconf(Ended(CommandEnd::kTimedOut)), ArcconfProblem::kTimedOut);
    EXPECT_EQ(ClassifyArcconf(Ended(CommandEnd::kCancelled)), ArcconfProblem::kCancelled);
}

TEST(ClassifyArcconfTest, AnswerWithAControllerIsFine) {
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 1\n...")), ArcconfProblem::kNone);
}

TEST(ClassifyArcconfTest, UnknownExitStatusIsFineWithAnAnswer) {
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 1\n", -1)), ArcconfProblem::kNone);
}

TEST(ClassifyArcconfTest, ExitStatusOfAnAnswerIsARefusal) {
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 1\nCommand aborted.", 2)),
              ArcconfProblem::kRefused);
}

TEST(ClassifyArcconfTest, NoControllerIsAProblemOfItsOwn) {
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 0\nCommand completed successfully.")),
              ArcconfProblem::kNoController);
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 0\n", 1)), ArcconfProblem::kNoController);
}

TEST(ClassifyArcconfTest, WishForAnAdministratorIsHeardOnEitherStream) {
    EXPECT_EQ(ClassifyArcconf(Said("", 1, "You must be ROOT to run this")),
              ArcconfProblem::kNoRights);
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 0\nInsufficient privileges\n", 1)),
              ArcconfProblem::kNoRights);
}

TEST(ClassifyArcconfTest, WordRootInAGoodAnswerIsNoWish) {
    EXPECT_EQ(ClassifyArcconf(Said("Controllers found: 1\nMount Point(s) : /root\n")),
              ArcconfProblem::kNone);
}

TEST(ClassifyArcconfTest, AnythingElseIsNotItsWords) {
    EXPECT_EQ(ClassifyArcconf(Said("")), ArcconfProblem::kNotItsWords);
    EXPECT_EQ(ClassifyArcconf(Said("", 127, "cannot open shared object file")),
              ArcconfProblem::kNotItsWords);
}

TEST(ArcconfWordsTest, ErrorStreamComesFirstAndIsCleanAndShort) {
    EXPECT_EQ(ArcconfWords(Said("out", 1, "no\nlibrary")), "no library");
    EXPECT_EQ(ArcconfWords(Said("out\x01put")), "out put");
    EXPECT_LE(ArcconfWords(Said(std::string(5000, 'x'))).size(), 80U);
    EXPECT_EQ(ArcconfWords(Said("")), "");
}

TEST(ArcconfWordsTest, WordsOfTheSystemAreTakenWhereItDidNotStart) {
    CommandOutcome outcome = Ended(CommandEnd::kNotStarted);
    outcome.text = "start: Exec format error";
    EXPECT_EQ(ArcconfWords(outcome), "start: Exec format error");
}

}  // namespace
}  // namespace Vantix::transport
