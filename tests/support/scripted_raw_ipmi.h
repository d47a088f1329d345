// A controller behind a system's own IPMI driver, as a script: the answers to its requests.
//
//   RawIpmiScript script;
//   script.On("raw 0x06 0x01", {0x20, 0x01, 0x09, 0x08});
//   RawIpmiRunner runner(script.Opener(), tool);
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "transport/ipmi/raw_ipmi.h"

namespace test_support {

class RawIpmiScript {
  public:
    using RawAnswer = Vantix::transport::RawAnswer;
    using RawRequest = Vantix::transport::RawRequest;
    using Bytes = Vantix::transport::Bytes;

    RawIpmiScript& On(const std::string& line, const Bytes& data, int completion = 0) {
        answers_[line] = {completion, data};
        return *this;
    }
    /// The driver cannot be opened.
    void Fail(const std::string& cause) { cause_ = cause; }
    /// This request waits until it must end.
    void Hang(const std::string& line) { hanging_ = line; }

    /// An unknown request is an invalid command.
    RawAnswer Answer(const RawRequest& request, const std::function<bool()>& must_end) {
        const std::string line = Vantix::transport::RawLine(request);
        lines.push_back(line);
        if (on_request) on_request(line);
        while (line == hanging_ && !must_end()) {
        }
        if (line == hanging_) return {};
        const auto found = answers_.find(line);
        return found == answers_.end() ? RawAnswer{0xc1, {}} : found->second;
    }

    Vantix::transport::RawIpmiOpener Opener() {
        return [this](std::string& cause) -> std::unique_ptr<Vantix::transport::RawIpmi> {
            ++openings;
            cause = cause_;
            if (!cause_.empty()) return nullptr;
            return std::make_unique<Device>(*this);
        };
    }

    int openings = 0;
    std::vector<std::string> lines;  ///< the requests that came
    std::function<void(const std::string&)> on_request;

  private:
    class Device : public Vantix::transport::RawIpmi {
      public:
        explicit Device(RawIpmiScript& script) : script_(script) {}
        RawAnswer Send(const RawRequest& request, const std::function<bool()>& must_end) override {
            return script_.Answer(request, must_end);
        }

      private:
        RawIpmiScript& script_;
    };

    std::map<std::string, RawAnswer> answers_;
    std::string cause_, hanging_;
};

}  // namespace test_support
