#include "tarsel/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "common/version/version.h"
#include "platform/connection/target_address.h"
#include "tarsel/exit_codes.h"
#include "tarsel/mode_table.h"
#include "tarsel/option_declarations.h"
#include "tarsel/option_rules.h"

namespace tarsel {
namespace {

constexpr const char* kPasswordHint =
    "A password is not accepted as an argument, because every user of this machine could read it "
    "there; use the prompt, the environment variable TARSEL_PASSWORD, --password-file, "
    "--password-fd or --password-stdin.";

bool IsPasswordArgument(const std::string& argument) {
    return argument == "--password" || argument.starts_with("--password=") ||
           argument == "--passwd" || argument.starts_with("--passwd=");
}

CommandLine UsageError(const std::string& sentence) {
    CommandLine result;
    result.action = CommandLine::Action::kUsageError;
    result.text = sentence;
    return result;
}

CommandLine Text(const std::string& text) {
    CommandLine result;
    result.action = CommandLine::Action::kPrint;
    result.text = text;
    return result;
}

// A misplaced password must not be repeated: of what was not expected only option names are shown.
std::string UnexpectedArgument(const std::vector<std::string>& remaining) {
    constexpr std::size_t kShortOption = 2;
    for (const std::string& argument : remaining) {
        if (argument.starts_with("--")) {
            return "There is no option " + argument.substr(0, argument.find('=')) + ".";
        }
        if (argument.starts_with("-")) {
            return "There is no option " + argument.substr(0, kShortOption) + ".";
        }
    }
    return "There is an argument too many.";
}

// The library's texts begin with the option's name; make them a sentence.
std::string Sentence(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
    return text + ".";
}

std::string ApplyAddress(const char* option, const std::string& text, ScanArguments& arguments) {
    const auto parsed = Vantix::VantixConnection::ParseTargetAddress(text);
    if (!parsed.address) return std::string(option) + ": " + parsed.error + ".";
    arguments.host = parsed.address->host;
    arguments.port = parsed.address->port;
    if (parsed.address->user.empty()) return {};
    if (!arguments.user.empty() && arguments.user != parsed.address->user) {
        return std::string("--user and ") + option +
               " name different users; give the user name once.";
    }
    arguments.user = parsed.address->user;
    return {};
}

// Exactly one of the targets; a switch is one of the chassis that it sits in.
std::string ApplyTarget(const CLI::App& scan, const TargetTexts& targets,
                        ScanArguments& arguments) {
    struct Row {
        const std::optional<std::string>& text;
        const char* option;
        TargetKind kind;
    };
    const std::optional<std::string> local =
        targets.is_local ? std::optional<std::string>("") : std::nullopt;
    const std::array rows = {
        Row{targets.bmc, "--bmc", TargetKind::kBmc},
        Row{targets.tolv, "--tolv",
            arguments.bay > 0 ? TargetKind::kIoSwitch : TargetKind::kChassis},
        Row{targets.esxi, "--esxi", TargetKind::kHypervisor},
        Row{targets.vesk, "--vesk", TargetKind::kEnclosure},
        Row{targets.remoteos, "--remoteos", TargetKind::kRemoteOs},
        Row{targets.inband, "--inband", TargetKind::kInBand},
        Row{targets.amd, "--amd", TargetKind::kAmd},
        Row{local, "--local", TargetKind::kLocal},
    };
    const auto is_given = [](const Row& row) { return row.text.has_value(); };
    if (std::count_if(rows.begin(), rows.end(), is_given) != 1) {
        return "Give exactly one target: --bmc, --tolv, --esxi, --vesk, --remoteos, "
               "--inband, --amd or --local.";
    }
    const auto& row = *std::find_if(rows.begin(), rows.end(), is_given);
    arguments.kind = row.kind;
    if (std::string error = MisplacedOption(scan, row.kind, row.option); !error.empty()) {
        return error;
    }
    const bool may_be_found = IsOwnMachine(row.kind) && row.text->empty();
    return may_be_found ? "" : ApplyAddress(row.option, *row.text, arguments);
}

// This machine's BMC can be asked without a user: with an account that it makes for its host, or
// through its system interface.
std::string CheckUser(const ScanArguments& arguments) {
    if (!arguments.user.empty()) return {};
    // Over SSH the user of this machine is the default.
    if (arguments.kind == TargetKind::kRemoteOs) return {};
    if (!IsOwnMachine(arguments.kind)) {
        return "No user name was given; write USER@ before the host or add --user NAME.";
    }
    return IsPasswordSourceGiven(arguments.password)
               ? "A password needs a user name; write USER@ before the host or add --user NAME."
               : "";
}

CommandLine FinishScan(const CLI::App& scan, const TargetTexts& targets, CommandLine result) {
    if (const std::string error = ApplyTarget(scan, targets, result.scan); !error.empty()) {
        return UsageError(error);
    }
    if (const std::string error = CheckUser(result.scan); !error.empty()) {
        return UsageError(error);
    }
    result.action = CommandLine::Action::kScan;
    return result;
}

CommandLine Parse(std::vector<std::string> arguments) {
    CommandLine result;
    TargetTexts targets;
    CLI::App app("Finds out which firmware and software is installed on servers.", "tarsel");
    app.set_version_flag("--version", std::string("tarsel ") + TarselVersion());
    app.footer("\n" + ModeTable() + "\n" + ExitCodeTable());
    app.require_subcommand(1);
    CLI::App* scan = app.add_subcommand("scan", "Scan a target and list its firmware");
    scan->footer(
        "\n" + ModeTable() +
        "\nThe user's password is asked for on the terminal, unless the environment "
        "variable\nTARSEL_PASSWORD or one of the password options gives it. Without a user "
        "nothing is asked.\n\n" +
        ExitCodeTable());
    DeclareScanOptions(*scan, targets, result.scan);
    std::reverse(arguments.begin(), arguments.end());  // the library takes them from the back
    try {
        app.parse(arguments);
    } catch (const CLI::CallForHelp&) {
        return Text(app.help());
    } catch (const CLI::CallForVersion& version) {
        return Text(std::string(version.what()) + "\n");
    } catch (const CLI::ExtrasError&) {
        return UsageError(UnexpectedArgument(app.remaining(true)));
    } catch (const CLI::ParseError& error) {
        return UsageError(Sentence(error.what()));
    }
    return FinishScan(*scan, targets, std::move(result));
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    if (std::any_of(arguments.begin(), arguments.end(), IsPasswordArgument)) {
        return UsageError(kPasswordHint);
    }
    return Parse(arguments);
}

}  // namespace tarsel
