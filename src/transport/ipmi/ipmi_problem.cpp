#include "transport/ipmi/ipmi_problem.h"

#include <algorithm>
#include <iterator>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kLongestText = 160;

struct Row {
    std::string_view words;  // as ipmitool writes them; compared ignoring letter case
    IpmiProblem problem;
};

// Order decides where a run says several things: what the BMC said of the account first, then what
// can be tried another way, silence last (a refused session often ends in silence, too).
constexpr Row kRows[] = {
    {"unauthorized name", IpmiProblem::kAuthentication},
    {"RAKP 2 HMAC is invalid", IpmiProblem::kAuthentication},
    {"RAKP 4 message has invalid integrity check value", IpmiProblem::kCipher},
    {"invalid integrity check value", IpmiProblem::kAuthentication},
    {"unauthorized role", IpmiProblem::kPrivilege},
    {"Set Session Privilege Level to", IpmiProblem::kPrivilege},
    {"Failed to set session privilege level", IpmiProblem::kPrivilege},
    {"insufficient resources", IpmiProblem::kBusy},
    {"No session slot available", IpmiProblem::kBusy},
    {"Node busy", IpmiProblem::kBusy},
    {"BMC initialization in progress", IpmiProblem::kBusy},
    {"no matching cipher suite", IpmiProblem::kCipher},
    {"Unsupported cipher suite", IpmiProblem::kCipher},
    {"invalid role", IpmiProblem::kCipher},
    {"invalid authentication algorithm", IpmiProblem::kCipher},
    {"invalid integrity algorithm", IpmiProblem::kCipher},
    {"invalid confidentiality algorithm", IpmiProblem::kCipher},
    {"no matching authentication", IpmiProblem::kCipher},
    {"no matching integrity", IpmiProblem::kCipher},
    {"Address lookup for", IpmiProblem::kNameUnknown},
    {"Could not open device at", IpmiProblem::kNoDevice},
    {kNothingToAskThrough, IpmiProblem::kNoDevice},
    {"OEM info dictionary", IpmiProblem::kToolBroken},
    {"error while loading shared libraries", IpmiProblem::kToolBroken},
    {"invalid option", IpmiProblem::kToolBroken},
    {"Error loading interface", IpmiProblem::kToolBroken},
    {"Unable to read password from file", IpmiProblem::kToolBroken},
    {"Get Auth Capabilities error", IpmiProblem::kNoAnswer},
    {"Get Channel Authentication Capabilities", IpmiProblem::kNoAnswer},
    // Whoever got that far is alive, but may not really speak this suite.
    {"no response from RAKP", IpmiProblem::kCipher},
    {"Could not open socket", IpmiProblem::kNoAnswer},
    {"Network is unreachable", IpmiProblem::kNoAnswer},
    {"No response", IpmiProblem::kNoAnswer},
};

char LowerLetter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::size_t FindIgnoringCase(std::string_view text, std::string_view words) {
    const auto found = std::search(text.begin(), text.end(), words.begin(), words.end(),
                                   [](char a, char b) { return LowerLetter(a) == LowerLetter(b); });
    return found == text.end() ? std::string_view::npos
                               : static_cast<std::size_t>(found - text.begin());
}

std::string LineAt(std::string_view text, std::size_t at) {
    const std::size_t before = text.rfind('\n', at);
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = CleanStart(text.substr(start, end - start), kLongestText);
    // The tool marks lines of some layers with an arrow.
    const std::size_t first = line.find_first_not_of("> ");
    return first == std::string::npos ? line : line.substr(first);
}

std::string LastLine(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.remove_suffix(1);
    return text.empty() ? std::string() : LineAt(text, text.size() - 1);
}

}  // namespace

IpmiFailure ClassifyIpmiErrors(std::string_view error_output) {
    for (const Row& row : kRows) {
        const std::size_t at = FindIgnoringCase(error_output, row.words);
        if (at != std::string_view::npos) return {row.problem, LineAt(error_output, at)};
    }
    std::string text = LastLine(error_output);
    return {IpmiProblem::kOther, text.empty() ? "ipmitool gave no reason" : text};
}

IpmiFailure FailureOfRun(const CommandOutcome& outcome) {
    switch (outcome.end) {
        case CommandEnd::kNotFound:
            return {IpmiProblem::kToolMissing, outcome.text};
        case CommandEnd::kNotStarted:
            return {IpmiProblem::kToolBroken, outcome.text};
        case CommandEnd::kSignalled:
            return {IpmiProblem::kToolBroken, "ipmitool crashed"};
        case CommandEnd::kCancelled:
            return {IpmiProblem::kCancelled, "interrupted"};
        case CommandEnd::kTimedOut:
            return {IpmiProblem::kTimedOut, outcome.text.empty()
                                                ? "ipmitool did not come to an end and was stopped"
                                                : outcome.text};
        case CommandEnd::kExited:
            break;
    }
    return ClassifyIpmiErrors(outcome.error_output);
}

}  // namespace Vantix::transport
