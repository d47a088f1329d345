// What the tests of the polite transport share: a scripted peer, a clock that tests set, and the
// outcomes of what they sent. Holds no expectation.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "transport/http/polite_transport.h"
#include "unit/transport/http/scripted_transport.h"

namespace Vantix::transport {

class PoliteTransportTest : public ::testing::Test {
  protected:
    PoliteTransportTest() : start_(clock_.Now()) {
        inner_.answer = [](const HttpRequest&, int) { return Status(200); };
    }

    PoliteTransport& Polite() {
        if (!polite_) {
            polite_ = std::make_unique<PoliteTransport>(inner_, clock_, settings_);
        }
        return *polite_;
    }

    void Send(const HttpRequest& request) {
        const std::string target = request.target;
        Polite().Submit(request, [this, target](HttpOutcome&& outcome) {
            calls_[target] += 1;
            outcomes_[target] = std::move(outcome);
        });
    }

    void Run() {
        while (Polite().Step(std::chrono::seconds(5))) {
        }
    }

    FakeClock clock_;
    const Clock::TimePoint start_;
    ScriptedTransport inner_{clock_};
    PoliteSettings settings_;
    std::unique_ptr<PoliteTransport> polite_;
    std::map<std::string, HttpOutcome> outcomes_;
    std::map<std::string, int> calls_;
};

}  // namespace Vantix::transport
