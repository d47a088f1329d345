#include "acceptance/tarsel_command_test_base.h"

#include <cstdlib>

namespace acceptance {
namespace {

// Sanitizers are told what to do by variables that the program under test must see, too.
void CopyVariable(const char* name, std::map<std::string, std::string>& environment) {
    if (const char* const value = std::getenv(name)) environment[name] = value;
}

// The built command, or another one for the same machines and the same expectations.
std::string CommandUnderTest() {
    const char* const other = std::getenv("TARSEL_COMMAND_UNDER_TEST");
    return other == nullptr ? TARSEL_COMMAND : other;
}

}  // namespace

simulators::BmcOptions TarselCommandTestBase::Bmc(const std::string& scenario) {
    simulators::BmcOptions options;
    options.scenario_dir = std::string(TARSEL_SCENARIOS) + "/" + scenario;
    options.user = kUser;
    options.password = kPassword;
    return options;
}

void TarselCommandTestBase::StartBmc(simulators::BmcOptions options) {
    bmc_ = std::make_unique<simulators::BmcSimulator>(std::move(options));
}

std::string TarselCommandTestBase::Target() const {
    return std::string(kUser) + "@127.0.0.1:" + Port();
}

std::string TarselCommandTestBase::Port() const {
    return std::to_string(bmc_->Port());
}

std::string TarselCommandTestBase::Output(const std::string& file) const {
    return folder_.Read("out/" + file);
}

test_support::ChildSetup TarselCommandTestBase::Command(const Arguments& arguments) const {
    test_support::ChildSetup setup;
    setup.arguments = {CommandUnderTest()};
    setup.arguments.insert(setup.arguments.end(), arguments.begin(), arguments.end());
    setup.environment = {{"PATH", "/usr/bin:/bin"}, {"HOME", folder_.Path("home")}};
    setup.folder = folder_.Path("");
    for (const char* const name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        CopyVariable(name, setup.environment);
    }
    return setup;
}

test_support::ChildSetup TarselCommandTestBase::UntrustingScanOf(const Arguments& target,
                                                                 const Arguments& more) const {
    Arguments arguments = {"scan", "--output", folder_.Path("out")};
    arguments.insert(arguments.end(), target.begin(), target.end());
    arguments.insert(arguments.end(), more.begin(), more.end());
    test_support::ChildSetup setup = Command(arguments);
    setup.environment["TARSEL_PASSWORD"] = kPassword;
    return setup;
}

test_support::ChildSetup TarselCommandTestBase::ScanOf(const Arguments& target,
                                                       const Arguments& more) const {
    Arguments arguments = {"--pin", bmc_->Fingerprint()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return UntrustingScanOf(target, arguments);
}

test_support::ChildSetup TarselCommandTestBase::UntrustingScan(const Arguments& more) const {
    return UntrustingScanOf({"--bmc", Target()}, more);
}

test_support::ChildSetup TarselCommandTestBase::Scan(const Arguments& more) const {
    return ScanOf({"--bmc", Target()}, more);
}

Ended TarselCommandTestBase::Run(const test_support::ChildSetup& setup) {
    test_support::ChildProcess process(setup);
    Ended ended;
    ended.exit_code = process.Wait();
    ended.output = process.Output();
    ended.errors = process.Errors();
    return ended;
}

}  // namespace acceptance
