#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "platform/log/log_settings.h"
#include "tarsel/command_line.h"
#include "tarsel/exit_codes.h"
#include "tarsel/scan_command.h"
#include "tarsel/terminal.h"

namespace {

int Run(const std::vector<std::string>& arguments) {
    const tarsel::CommandLine command = tarsel::ParseCommandLine(arguments);
    switch (command.action) {
        case tarsel::CommandLine::Action::kScan:
            return tarsel::RunScanCommand(command.scan);
        case tarsel::CommandLine::Action::kPrint:
            return tarsel::WriteStandardOutput(command.text) == tarsel::WriteState::kFailed
                       ? tarsel::kExitFailed
                       : tarsel::kExitComplete;
        case tarsel::CommandLine::Action::kUsageError:
            break;
    }
    std::cerr << "tarsel: " << command.text << " See tarsel scan --help." << std::endl;
    return tarsel::kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
    tarsel::OccupyStandardDescriptors();
    try {
        return Run(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
    } catch (const std::exception& error) {
        std::cerr << "tarsel: An unexpected error ended the command: "
                  << Vantix::MaskSecrets(error.what()) << "; see tarsel.log for more." << std::endl;
        return tarsel::kExitFailed;
    }
}
