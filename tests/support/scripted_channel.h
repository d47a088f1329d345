// A Redfish channel whose BMC follows a script: no socket, no waiting.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/connection/connection.h"
#include "platform/redfish/redfish_channel.h"
#include "support/redfish_talk.h"

namespace Vantix::redfish {

/// Lets a transport outlive the channel that owns this.
class LentTransport : public transport::HttpTransport {
  public:
    explicit LentTransport(transport::HttpTransport& inner) : inner_(inner) {}
    void Submit(transport::HttpRequest request, Handler handler) override {
        inner_.Submit(std::move(request), std::move(handler));
    }
    bool Step(transport::Milliseconds max_wait) override { return inner_.Step(max_wait); }
    void SetMaxConnections(int count) override { inner_.SetMaxConnections(count); }
    void DropIdleConnections() override { inner_.DropIdleConnections(); }
    void Abort(transport::AbortScope scope) override { inner_.Abort(scope); }

  private:
    transport::HttpTransport& inner_;
};

/// Fixture: script the answers, Open(), ask the channel. Every case must expect the log-out.
class ScriptedChannelTest : public ::testing::Test {
  protected:
    ScriptedChannelTest() {
        option_.target_address = "192.0.2.7";
        option_.user = "scanner";
        option_.password = "invented-password";
    }

    /// The resource at `path` is read once.
    void Offer(const std::string& path, const std::string& body) {
        peer_.On("GET " + path, transport::Json(body));
    }
    void OfferRoot(const std::string& body) { Offer("/redfish/v1/", body); }
    void ExpectLogin() {
        peer_.On(transport::kLogIn, transport::SessionMade());
        peer_.On(transport::kLogOut, transport::Status(204));
    }

    RedfishChannel& Channel() {
        if (!channel_) {
            channel_ = std::make_unique<RedfishChannel>(
                option_, std::make_unique<LentTransport>(peer_), clock_);
        }
        return *channel_;
    }
    transport::RedfishFailure Open() { return Channel().Open(); }
    void Release() { channel_.reset(); }

    /// The status under which a source was reported; a failed test when it was not.
    VantixConnection::SourceStatus Source(const std::string& name) const {
        for (const auto& status : option_.run->Sources()) {
            if (status.source == name) return status;
        }
        ADD_FAILURE() << "no source " << name;
        return {};
    }
    bool HasSource(const std::string& name) const {
        for (const auto& status : option_.run->Sources()) {
            if (status.source == name) return true;
        }
        return false;
    }

    static std::vector<std::string> Paths(const std::vector<Resource>& resources) {
        std::vector<std::string> paths;
        for (const auto& resource : resources) paths.push_back(resource.path);
        return paths;
    }

    transport::FakeClock clock_;
    transport::ConversationTransport peer_{clock_};
    VantixConnection::ConnectOption option_;
    std::unique_ptr<RedfishChannel> channel_;
};

}  // namespace Vantix::redfish
