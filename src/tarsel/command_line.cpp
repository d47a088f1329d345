#include "tarsel/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <string_view>

#include "common/version/version.h"
#include "platform/connection/target_address.h"
#include "tarsel/exit_codes.h"

namespace tarsel {
namespace {

constexpr int kLongestSeconds = 24 * 60 * 60;
constexpr const char* kPasswordHint =
    "A password is not accepted as an argument, because every user of this machine could read it "
    "there; use the prompt, the environment variable TARSEL_PASSWORD, --password-file, "
    "--password-fd or --password-stdin.";

bool IsPasswordArgument(const std::string& argument) {
    return argument == "--password" || argument.starts_with("--password=") ||
           argument == "--passwd" || argument.starts_with("--passwd=");
}

// 64 hexadecimal digits, colons between them allowed.
std::string CheckFingerprint(const std::string& text) {
    const auto is_hexadecimal = [](char letter) {
        return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f') ||
               (letter >= 'A' && letter <= 'F');
    };
    const auto digits = std::count_if(text.begin(), text.end(), is_hexadecimal);
    const auto colons = std::count(text.begin(), text.end(), ':');
    const bool is_good = digits == 64 && static_cast<std::size_t>(digits + colons) == text.size();
    return is_good ? "" : "not a SHA-256 fingerprint (64 hexadecimal digits)";
}

std::string CheckProxy(const std::string& text) {
    return text.find('@') == std::string::npos
               ? ""
               : "a proxy URL must not carry user information on the command line";
}

void AddCredentialOptions(CLI::App& scan, ScanArguments& arguments) {
    scan.add_option("--user", arguments.user, "User name, if not given with --bmc")
        ->type_name("NAME");
    auto* file = scan.add_option("--password-file", arguments.password.file,
                                 "File whose first line is the password; only its owner may have "
                                 "access to it")
                     ->type_name("FILE");
    auto* descriptor = scan.add_option("--password-fd", arguments.password.descriptor,
                                       "Open file descriptor whose first line is the password")
                           ->type_name("N")
                           ->check(CLI::Range(0, 1 << 20));
    auto* standard_input = scan.add_flag("--password-stdin", arguments.password.is_stdin,
                                         "Read the password from the standard input");
    file->excludes(descriptor)->excludes(standard_input);
    descriptor->excludes(standard_input);
}

void AddOutputOptions(CLI::App& scan, ScanArguments& arguments) {
    scan.add_option("--scantype", arguments.scan_type,
                    "What to scan: fw firmware, dd device drivers, all both")
        ->check(CLI::IsMember({"fw", "dd", "all"}))
        ->capture_default_str();
    scan.add_option("--output", arguments.output_dir,
                    "Folder for Tarsel-update-scan.xml, common_result.xml and tarsel.log; made if "
                    "missing (default: the current folder)")
        ->type_name("DIR");
    scan.add_flag("-q,--quiet", arguments.is_quiet, "Print the tables and errors only");
    scan.add_flag("-v", arguments.verbosity,
                  "Show the log on the standard error output (-vv: with all details)");
}

void AddSeconds(CLI::App& scan, const std::string& name, int& value, const std::string& text) {
    scan.add_option(name, value, text)
        ->type_name("SECONDS")
        ->check(CLI::Range(1, kLongestSeconds))
        ->capture_default_str();
}

void AddPatienceOptions(CLI::App& scan, ScanArguments& arguments) {
    AddSeconds(scan, "--timeout", arguments.timeout_seconds, "Limit for one request");
    AddSeconds(scan, "--connect-timeout", arguments.connect_timeout_seconds,
               "Limit for opening a connection");
    AddSeconds(scan, "--inventory-timeout", arguments.inventory_timeout_seconds,
               "Limit for the firmware collection");
    AddSeconds(scan, "--deadline", arguments.deadline_seconds, "Limit for the whole scan");
    scan.add_option("--per-target-parallel", arguments.max_parallel,
                    "Requests in flight at the target at most")
        ->type_name("N")
        ->check(CLI::Range(1, 16))
        ->capture_default_str();
    scan.add_option("--login-attempts", arguments.login_attempts,
                    "Refused logins this scan may cause; more may lock the account")
        ->type_name("N")
        ->check(CLI::Range(1, 10))
        ->capture_default_str();
    scan.add_option("--max-body", arguments.max_body_mib, "Largest answer accepted")
        ->type_name("MIB")
        ->check(CLI::Range(1, 1024))
        ->capture_default_str();
}

void AddConnectionOptions(CLI::App& scan, ScanArguments& arguments) {
    auto* ca_file = scan.add_option("--ca-file", arguments.ca_file,
                                    "Trust the certificates of this PEM file instead of the "
                                    "system's")
                        ->type_name("FILE")
                        ->check(CLI::ExistingFile);
    auto* pin = scan.add_option("--pin", arguments.fingerprint,
                                "Trust the one certificate with this SHA-256 fingerprint")
                    ->type_name("SHA256")
                    ->check(CheckFingerprint);
    scan.add_flag("--insecure", arguments.is_insecure,
                  "Do not check the certificate: anybody in between can read the password")
        ->excludes(ca_file)
        ->excludes(pin);
    scan.add_flag("--tls-legacy", arguments.is_tls_legacy,
                  "Accept TLS 1.0 and 1.1 and weak keys of old controllers");
    auto* proxy = scan.add_option("--proxy", arguments.proxy,
                                  "Connect through this proxy (default: directly)")
                      ->type_name("URL")
                      ->check(CheckProxy);
    scan.add_flag("--use-env-proxy", arguments.use_environment_proxy,
                  "Honour http_proxy and its kin")
        ->excludes(proxy);
    scan.add_option("--auth", arguments.auth,
                    "Login method; auto is a session, or Basic where the service has no sessions")
        ->check(CLI::IsMember({"auto", "session", "basic"}))
        ->capture_default_str();
}

void AddTargetOptions(CLI::App& scan, std::string& bmc, ScanArguments& arguments) {
    scan.add_option("--bmc", bmc,
                    "Scan a server through its BMC: [USER@]HOST[:PORT], an IPv6 address with a "
                    "port in brackets")
        ->type_name("TARGET")
        ->required();
    scan.add_flag("--info-only", arguments.is_info_only,
                  "Read machine type and serial number only");
    scan.add_option("--system-id", arguments.system_id,
                    "Id of the computer system to read (default: the one the BMC manages)")
        ->type_name("ID");
    scan.add_flag("--zelvar", arguments.is_zelvar, "The management suite drives this scan");
    scan.add_flag("--cfc", arguments.is_cfc_system, "The target is a CFC-class system");
    scan.add_flag("--csp", arguments.is_csp_system, "The target is a CSP-class system");
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

std::string ApplyTarget(const std::string& bmc, ScanArguments& arguments) {
    const auto parsed = Vantix::VantixConnection::ParseTargetAddress(bmc);
    if (!parsed.address) return "--bmc: " + parsed.error + ".";
    arguments.host = parsed.address->host;
    arguments.port = parsed.address->port;
    if (parsed.address->user.empty()) return {};
    if (!arguments.user.empty() && arguments.user != parsed.address->user) {
        return "--user and --bmc name different users; give the user name once.";
    }
    arguments.user = parsed.address->user;
    return {};
}

CommandLine FinishScan(const std::string& bmc, CommandLine result) {
    if (const std::string error = ApplyTarget(bmc, result.scan); !error.empty()) {
        return UsageError(error);
    }
    if (result.scan.user.empty()) {
        return UsageError("No user name was given; write --bmc USER@HOST or add --user NAME.");
    }
    result.action = CommandLine::Action::kScan;
    return result;
}

CommandLine Parse(std::vector<std::string> arguments) {
    CommandLine result;
    std::string bmc;
    CLI::App app("Finds out which firmware and software is installed on servers.", "tarsel");
    app.set_version_flag("--version", std::string("tarsel ") + TarselVersion());
    app.footer("\n" + ExitCodeTable());
    app.require_subcommand(1);
    CLI::App* scan = app.add_subcommand("scan", "Scan a server and list its firmware");
    scan->footer(
        "\nThe user's password is asked for on the terminal, unless the environment "
        "variable\nTARSEL_PASSWORD or one of the password options gives it.\n\n" +
        ExitCodeTable());
    AddTargetOptions(*scan, bmc, result.scan);
    AddCredentialOptions(*scan, result.scan);
    AddOutputOptions(*scan, result.scan);
    AddPatienceOptions(*scan, result.scan);
    AddConnectionOptions(*scan, result.scan);
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
    return FinishScan(bmc, std::move(result));
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    if (std::any_of(arguments.begin(), arguments.end(), IsPasswordArgument)) {
        return UsageError(kPasswordHint);
    }
    return Parse(arguments);
}

std::string TargetText(const ScanArguments& arguments) {
    const std::string host = Vantix::VantixConnection::HostForUrl(arguments.host);
    return arguments.port == 0 ? arguments.host : host + ":" + std::to_string(arguments.port);
}

}  // namespace tarsel
