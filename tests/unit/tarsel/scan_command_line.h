// What the tests of the command line do with "tarsel scan" and its arguments.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tarsel/command_line.h"

namespace tarsel {

using Arguments = std::vector<std::string>;

inline CommandLine Scan(Arguments arguments) {
    arguments.insert(arguments.begin(), "scan");
    return ParseCommandLine(arguments);
}

inline ScanArguments ScanOf(const CommandLine& command) {
    EXPECT_EQ(command.action, CommandLine::Action::kScan) << command.text;
    return command.scan;
}

inline void ExpectUsageError(const CommandLine& command, const std::string& part) {
    EXPECT_EQ(command.action, CommandLine::Action::kUsageError);
    EXPECT_THAT(command.text, testing::HasSubstr(part));
    EXPECT_THAT(command.text, testing::Not(testing::HasSubstr("\n")));
}

}  // namespace tarsel
