// A CommandRunner that answers as arcconf would, question by question.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "transport/process/command_runner.h"

namespace test_support {

class FakeArcconf : public Vantix::transport::CommandRunner {
  public:
    using Command = Vantix::transport::Command;
    using CommandEnd = Vantix::transport::CommandEnd;
    using CommandOutcome = Vantix::transport::CommandOutcome;

    /// `question` is the arguments with blanks between them ("getconfig 1 AD").
    FakeArcconf& Answer(const std::string& question, const std::string& output,
                        int exit_status = 0) {
        CommandOutcome outcome;
        outcome.end = CommandEnd::kExited;
        outcome.exit_status = exit_status;
        outcome.output = output;
        answers_[question] = outcome;
        return *this;
    }
    FakeArcconf& End(const std::string& question, CommandEnd end, const std::string& text = "") {
        CommandOutcome outcome;
        outcome.end = end;
        outcome.text = text;
        answers_[question] = outcome;
        return *this;
    }
    /// Only this path is the program; every other one does not exist.
    FakeArcconf& InstallAt(const std::string& program) {
        program_ = program;
        return *this;
    }

    CommandOutcome Run(const Command& command) override {
        CommandOutcome missing;
        missing.end = CommandEnd::kNotFound;
        tried.push_back(command.program);
        if (!program_.empty() && command.program != program_) return missing;
        std::string question;
        for (const std::string& argument : command.arguments) {
            question += (question.empty() ? "" : " ") + argument;
        }
        questions.push_back(question);
        const auto found = answers_.find(question);
        return found == answers_.end() ? missing : found->second;
    }

    std::vector<std::string> tried;      ///< programs, in order
    std::vector<std::string> questions;  ///< of those that exist

  private:
    std::map<std::string, CommandOutcome> answers_;
    std::string program_;
};

}  // namespace test_support
