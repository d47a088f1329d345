// Stands for ipmitool and a BMC behind it: answers the lines of a session's script, and refuses raw
// commands that nobody scripted as a BMC does.
//
//   FakeIpmiTool tool;
//   tool.On("raw 0x06 0x01", " 20 01 09 08 02 9f fe ff 00 02 0f\n");
//   tool.Fru(0, AFru().Product({"Example", "DenseBox 9"}).Image());
//   tool.FailNext("> RAKP 2 HMAC is invalid\n");
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "transport/ipmi/hex_text.h"
#include "transport/process/command_runner.h"

namespace test_support {

inline constexpr const char* kDeviceIdLine = "raw 0x06 0x01";
inline constexpr const char* kDeviceIdAnswer =
    " 20 01 09 08 02 9f fe ff 00 02 0f 0a 0b 0c\n 0d\n";  // 9.08

class FakeIpmiTool : public Vantix::transport::CommandRunner {
  public:
    using Bytes = Vantix::transport::Bytes;
    using Command = Vantix::transport::Command;
    using CommandEnd = Vantix::transport::CommandEnd;
    using CommandOutcome = Vantix::transport::CommandOutcome;

    FakeIpmiTool& On(const std::string& line, const std::string& answer) {
        answers_[line] = answer;
        return *this;
    }
    FakeIpmiTool& Fru(int id, const Bytes& image, bool is_in_words = false) {
        frus_[id] = {image, is_in_words};
        return *this;
    }
    /// The completion code of raw commands that are not scripted.
    void RefuseWith(const std::string& code) { refusal_ = code; }
    /// The next run opens no session.
    FakeIpmiTool& FailNext(const std::string& error_output) {
        return EndNext(CommandEnd::kExited, error_output);
    }
    FakeIpmiTool& EndNext(CommandEnd end, const std::string& error_output = {}) {
        CommandOutcome outcome;
        outcome.end = end;
        outcome.exit_status = end == CommandEnd::kExited ? 1 : -1;
        outcome.error_output = error_output;
        failures_.push_back(outcome);
        return *this;
    }
    /// The next run ends in the middle: after `lines` answers.
    FakeIpmiTool& BreakNextAfter(std::size_t lines, CommandEnd end) {
        EndNext(end);
        failures_.back().output = "@";  // marks it for Run()
        break_after_ = lines;
        return *this;
    }

    CommandOutcome Run(const Command& command) override {
        commands.push_back(command);
        if (on_run) on_run();
        if (failures_.empty()) return Session(command, std::string::npos);
        CommandOutcome outcome = failures_.front();
        failures_.pop_front();
        if (outcome.output.empty()) return outcome;
        outcome.output = Session(command, break_after_).output;
        return outcome;
    }

    /// The lines of all sessions that were sent, marks apart.
    [[nodiscard]] std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        for (const Command& command : commands) {
            std::istringstream script(command.passed_texts.back());
            for (std::string line; std::getline(script, line);) {
                if (line.rfind("echo ", 0) != 0) lines.push_back(line);
            }
        }
        return lines;
    }
    [[nodiscard]] std::string ValueOf(std::size_t run, const std::string& option) const {
        const auto& words = commands[run].arguments;
        const auto found = std::find(words.begin(), words.end(), option);
        return found == words.end() || found + 1 == words.end() ? "" : *(found + 1);
    }

    std::vector<Command> commands;
    std::function<void()> on_run;

  private:
    struct FruDevice {
        Bytes image;
        bool is_in_words = false;
    };

    CommandOutcome Session(const Command& command, std::size_t most_answers) const {
        CommandOutcome outcome;
        outcome.end = CommandEnd::kExited;
        outcome.exit_status = 0;
        std::istringstream script(command.passed_texts.back());
        std::size_t answers = 0;
        for (std::string line; std::getline(script, line);) {
            if (line.rfind("echo ", 0) == 0) {
                if (answers > most_answers) return outcome;
                outcome.output += line.substr(5) + " \n";
            } else if (answers++ < most_answers) {
                Answer(line, outcome);
            }
        }
        return outcome;
    }

    void Answer(const std::string& line, CommandOutcome& outcome) const {
        std::string answer = FruAnswer(line);
        const auto found = answers_.find(line);
        if (found != answers_.end()) answer = found->second;
        if (!answer.empty()) {
            outcome.output += answer;
            return;
        }
        outcome.exit_status = 1;
        unsigned network_function = 0;
        unsigned number = 0;
        std::istringstream words(line.substr(std::min<std::size_t>(line.size(), 4)));
        words >> std::hex >> network_function >> number;
        std::ostringstream refusal;
        refusal << "Unable to send RAW command (channel=0x0 netfn=0x" << std::hex
                << network_function << " lun=0x0 cmd=0x" << number << " rsp=" << refusal_
                << "): refused\n";
        outcome.error_output += refusal.str();
    }

    std::string FruAnswer(const std::string& line) const {
        std::istringstream words(line.substr(std::min<std::size_t>(line.size(), 4)));
        std::vector<unsigned> bytes;
        words >> std::hex;
        for (unsigned byte = 0; words >> byte;) bytes.push_back(byte);
        if (bytes.size() < 3 || bytes[0] != 0x0a) return {};
        const auto device = frus_.find(static_cast<int>(bytes[2]));
        if (device == frus_.end()) return {};
        const auto& [image, is_in_words] = device->second;
        const std::size_t unit = is_in_words ? 2 : 1;
        if (bytes[1] == 0x10) {
            const std::size_t size = image.size() / unit;
            return HexLine({static_cast<std::uint8_t>(size & 0xff),
                            static_cast<std::uint8_t>(size >> 8), is_in_words ? Byte{1} : Byte{0}});
        }
        if (bytes[1] != 0x11 || bytes.size() < 6) return {};
        const std::size_t from = (bytes[3] + bytes[4] * 256U) * unit;
        if (from >= image.size()) return {};
        const std::size_t count = std::min<std::size_t>(bytes[5] * unit, image.size() - from);
        Bytes answer = {static_cast<std::uint8_t>(count / unit)};
        const auto first = image.begin() + static_cast<std::ptrdiff_t>(from);
        answer.insert(answer.end(), first, first + static_cast<std::ptrdiff_t>(count));
        return HexLine(answer);
    }

    using Byte = std::uint8_t;
    static std::string HexLine(const Bytes& bytes) {
        return " " + Vantix::transport::HexBytes(bytes) + "\n";
    }

    std::map<std::string, std::string> answers_;
    std::map<int, FruDevice> frus_;
    std::deque<CommandOutcome> failures_;
    std::size_t break_after_ = 0;
    std::string refusal_ = "0xc1";
};

/// What "sdr elist fru" prints of one logical device of the controller.
inline std::string LocatorText(const std::string& name, const std::string& entity,
                               const std::string& fru_id) {
    return "Device ID              : " + name + "\nEntity ID              : " + entity +
           " (Some Entity)\nDevice Access Address  : 20h\nLogical FRU Device     : " + fru_id +
           "h\nChannel Number         : 0h\n\n";
}

}  // namespace test_support
