#include "transport/ipmi/raw_ipmi_runner.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <sstream>
#include <utility>

#include "transport/ipmi/fru_locator.h"
#include "transport/ipmi/ipmi_problem.h"
#include "transport/ipmi/sdr_locators.h"

namespace Vantix::transport {
namespace {

using SteadyClock = std::chrono::steady_clock;

const std::vector<std::string> kLocalInterface = {"-I", "open"};

auto FindLocalInterface(const std::vector<std::string>& arguments) {
    return std::search(arguments.begin(), arguments.end(), kLocalInterface.begin(),
                       kLocalInterface.end());
}

std::optional<std::uint8_t> ParseByte(const std::string& word) {
    if (word.rfind("0x", 0) != 0) return std::nullopt;
    const auto number = ParseHex(std::string_view(word).substr(2), 0xff);
    if (!number) return std::nullopt;
    return static_cast<std::uint8_t>(*number);
}

/// "raw 0x06 0x01"; nothing for any other line.
std::optional<RawRequest> ParseRawLine(const std::string& line) {
    std::istringstream words(line);
    std::string word;
    Bytes bytes;
    if (!(words >> word) || word != "raw") return std::nullopt;
    while (words >> word) {
        const auto byte = ParseByte(word);
        if (!byte) return std::nullopt;
        bytes.push_back(*byte);
    }
    if (bytes.size() < 2) return std::nullopt;
    return RawRequest{bytes[0], bytes[1], {bytes.begin() + 2, bytes.end()}};
}

std::string RefusalLine(const RawRequest& request, int completion) {
    std::string line = "Unable to send RAW command (channel=0x0 netfn=0x" +
                       HexByte(request.network_function) + " lun=0x0 cmd=0x" +
                       HexByte(request.command);
    if (completion >= 0) line += " rsp=0x" + HexByte(static_cast<std::uint8_t>(completion));
    return line + ")\n";
}

/// One session: the lines of a script, one after the other.
class Session {
  public:
    Session(RawIpmi& device, const Command& command)
        : device_(device), command_(command), deadline_(SteadyClock::now() + command.time_limit) {}

    CommandOutcome Run() {
        outcome_.end = CommandEnd::kExited;
        outcome_.exit_status = 0;
        std::istringstream script(command_.passed_texts.back());
        for (std::string line; !is_over_ && std::getline(script, line);) Carry(line);
        // Marks alone would look like a session that was opened.
        if (is_over_ && !has_answer_) outcome_.output.clear();
        return std::move(outcome_);
    }

  private:
    void Carry(const std::string& line);
    [[nodiscard]] RawAnswer Send(const RawRequest& request);
    [[nodiscard]] bool IsCancelled() const {
        return command_.is_cancelled && command_.is_cancelled();
    }

    RawIpmi& device_;
    const Command& command_;
    const SteadyClock::time_point deadline_;
    CommandOutcome outcome_;
    bool is_over_ = false;
    bool has_answer_ = false;
};

void Session::Carry(const std::string& line) {
    constexpr std::string_view kEcho = "echo ";
    if (line.rfind(kEcho, 0) == 0) {
        outcome_.output += line.substr(kEcho.size()) + "\n";
        return;
    }
    if (line == kFruLocatorLine) {
        outcome_.output +=
            ReadFruLocatorText([this](const RawRequest& request) { return Send(request); });
        return;
    }
    const auto request = ParseRawLine(line);
    if (!request) {
        outcome_.exit_status = 1;
        outcome_.error_output += "Invalid command\n";
        return;
    }
    const RawAnswer answer = Send(*request);
    if (answer.IsOk()) {
        outcome_.output += " " + HexBytes(answer.data) + "\n";
        return;
    }
    outcome_.exit_status = 1;
    outcome_.error_output += RefusalLine(*request, answer.completion);
}

RawAnswer Session::Send(const RawRequest& request) {
    const auto must_end = [this] { return IsCancelled() || SteadyClock::now() >= deadline_; };
    RawAnswer answer;
    if (!must_end()) answer = device_.Send(request, must_end);
    has_answer_ = has_answer_ || answer.completion >= 0;
    if (answer.completion < 0 && must_end()) {
        is_over_ = true;
        outcome_.end = IsCancelled() ? CommandEnd::kCancelled : CommandEnd::kTimedOut;
        outcome_.exit_status = -1;
        outcome_.text = "the IPMI driver gave no answer in time";
    }
    return answer;
}

}  // namespace

RawIpmiRunner::RawIpmiRunner(RawIpmiOpener open, CommandRunner& tool)
    : open_(std::move(open)), tool_(tool) {}

CommandOutcome RawIpmiRunner::Run(const Command& command) {
    const bool is_local = FindLocalInterface(command.arguments) != command.arguments.end();
    if (!is_local || command.passed_texts.empty()) return tool_.Run(command);
    std::string cause;
    const std::unique_ptr<RawIpmi> device = open_(cause);
    return device == nullptr ? RunTool(command, cause) : Session(*device, command).Run();
}

CommandOutcome RawIpmiRunner::RunTool(const Command& command, const std::string& cause) {
    Command plain = command;
    const auto at = std::distance(command.arguments.begin(), FindLocalInterface(command.arguments));
    plain.arguments.erase(plain.arguments.begin() + at, plain.arguments.begin() + at + 2);
    CommandOutcome outcome = tool_.Run(plain);
    if (outcome.end != CommandEnd::kNotFound) {
        // The tool's own words stay the last ones, by which its failures are told.
        outcome.error_output.insert(0, "No IPMI driver: " + cause + "\n");
        return outcome;
    }
    outcome.end = CommandEnd::kExited;
    outcome.exit_status = 1;
    outcome.error_output = std::string(kNothingToAskThrough) + ": " + cause + "\n";
    return outcome;
}

}  // namespace Vantix::transport
