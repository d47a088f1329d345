#include "platform/cim/cim_channel.h"

#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "support/conversation_transport.h"

namespace Vantix::cim {
namespace {

using transport::CimFailure;
using transport::ConversationTransport;
using transport::Status;

constexpr const char* kPost = "POST /cimom";

// Answers in the order of the requests; each knows the number of its message.
class CimChannelTest : public ::testing::Test {
  protected:
    std::string Answer(const std::string& content) {
        return "<CIM><MESSAGE ID=\"" + std::to_string(++message_id_) +
               "\"><SIMPLERSP><IMETHODRESPONSE>" + content +
               "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
    }
    void Knows(int instances) {
        std::string list;
        for (int n = 0; n < instances; ++n) list += "<INSTANCE CLASSNAME=\"A\"/>";
        peer_->On(kPost, Status(200, Answer("<IRETURNVALUE>" + list + "</IRETURNVALUE>")));
    }
    void Fails(int cim_status) {
        peer_->On(kPost, Status(200, Answer("<ERROR CODE=\"" + std::to_string(cim_status) +
                                            "\" DESCRIPTION=\"d\"/>")));
    }
    CimChannel& Channel() {
        if (!channel_) {
            channel_ = std::make_unique<CimChannel>(
                option_, std::unique_ptr<transport::HttpTransport>(peer_), clock_);
        }
        return *channel_;
    }
    std::vector<std::string> AskedNamespaces() const {
        std::vector<std::string> asked;
        for (const auto& request : peer_->Requests()) {
            asked.push_back(ConversationTransport::Header(request, "CIMObject"));
        }
        return asked;
    }

    transport::FakeClock clock_;
    ConversationTransport* peer_ = new ConversationTransport();  // given away in Channel()
    VantixConnection::ConnectOption option_;
    std::unique_ptr<CimChannel> channel_;
    int message_id_ = 1000;
};

TEST_F(CimChannelTest, OpeningReadsTheSystems) {
    Knows(2);

    EXPECT_FALSE(Channel().Open());
    EXPECT_EQ(Channel().Snapshot().systems.size(), 2U);
    EXPECT_EQ(Channel().Requests(), 1);
}

TEST_F(CimChannelTest, UnknownNamespaceAndClassMeanNext) {
    Fails(3);
    Fails(5);
    Knows(1);

    EXPECT_FALSE(Channel().Open());
    EXPECT_EQ(AskedNamespaces(),
              (std::vector<std::string>{"root%2Fcimv2", "root%2Finterop", "interop"}));
}

TEST_F(CimChannelTest, AnyOtherStatusIsAnError) {
    Fails(1);

    EXPECT_EQ(Channel().Open().cim_status, 1);
    EXPECT_EQ(Channel().Requests(), 1);
}

TEST_F(CimChannelTest, DeadNamespacesAreNotAskedAgain) {
    Fails(3);
    Knows(1);
    Knows(1);
    EXPECT_FALSE(Channel().Open());

    EXPECT_FALSE(Channel().Need({CimSource::kSoftware}));

    EXPECT_EQ(AskedNamespaces().back(), "root%2Finterop");
    EXPECT_EQ(Channel().Requests(), 3);
}

TEST_F(CimChannelTest, OptionalClassIsNotLookedForWhereNothingWasFound) {
    Knows(1);
    Fails(5);
    EXPECT_FALSE(Channel().Open());

    EXPECT_FALSE(Channel().Need({CimSource::kChassis}));

    EXPECT_EQ(Channel().Requests(), 2);
}

TEST_F(CimChannelTest, AssociationsAreReadWhereTheSoftwareWasFound) {
    Knows(1);
    Fails(5);
    Knows(1);
    Knows(0);
    Knows(0);
    EXPECT_FALSE(Channel().Open());

    EXPECT_FALSE(Channel().NeedSoftware());

    const auto asked = AskedNamespaces();
    ASSERT_EQ(asked.size(), 5U);
    EXPECT_EQ(asked[3], "root%2Finterop");
    EXPECT_EQ(asked[4], "root%2Finterop");
}

TEST_F(CimChannelTest, ServiceWithoutSystemsButWithSoftwareIsUsable) {
    for (int n = 0; n < 6; ++n) Fails(5);
    Knows(3);

    EXPECT_FALSE(Channel().Open());
    EXPECT_EQ(Channel().Snapshot().software.size(), 3U);
}

TEST_F(CimChannelTest, ServiceThatKnowsNothingFailsAndIsNotAskedTwice) {
    for (int n = 0; n < 12; ++n) Fails(5);

    EXPECT_TRUE(Channel().Open().IsElsewhere());
    EXPECT_TRUE(Channel().Need({CimSource::kSystems, CimSource::kSoftware}).IsElsewhere());
    EXPECT_EQ(Channel().Requests(), 12);
}

TEST_F(CimChannelTest, NamedNamespaceReplacesTheList) {
    option_.cim_namespace = "root/own";
    Fails(3);
    Fails(3);

    EXPECT_TRUE(Channel().Open().IsElsewhere());
    EXPECT_EQ(AskedNamespaces(), (std::vector<std::string>{"root%2Fown", "root%2Fown"}));
}

TEST_F(CimChannelTest, WhatWasReadIsNotReadAgain) {
    Knows(1);
    Knows(1);
    EXPECT_FALSE(Channel().Open());
    EXPECT_FALSE(Channel().Need({CimSource::kSystems, CimSource::kChassis}));
    EXPECT_FALSE(Channel().Need({CimSource::kSystems, CimSource::kChassis}));

    EXPECT_EQ(Channel().Requests(), 2);
}

TEST_F(CimChannelTest, WhatFailedIsAskedAgain) {
    Knows(1);
    Fails(1);
    Knows(1);
    EXPECT_FALSE(Channel().Open());

    EXPECT_TRUE(Channel().Need({CimSource::kOperatingSystems}));
    EXPECT_FALSE(Channel().Need({CimSource::kOperatingSystems}));
    EXPECT_EQ(Channel().Snapshot().operating_systems.size(), 1U);
}

TEST_F(CimChannelTest, SkippedInstancesAreRemembered) {
    Knows(1);
    peer_->On(kPost, Status(200, Answer("<IRETURNVALUE><INSTANCE/></IRETURNVALUE>")));
    EXPECT_FALSE(Channel().Open());

    EXPECT_FALSE(Channel().Need({CimSource::kSoftware}));
    EXPECT_EQ(Channel().Skipped(CimSource::kSoftware).size(), 1U);
}

TEST_F(CimChannelTest, CancelledRunSendsNothing) {
    option_.run->Cancel();

    const CimFailure failure = Channel().Open();

    EXPECT_EQ(failure.transport, transport::HttpErrorKind::kCancelled);
    EXPECT_TRUE(peer_->Requests().empty());
}

TEST_F(CimChannelTest, FailureIsRememberedForTheRun) {
    option_.target_address = "host";
    Fails(1);

    const TarselResult result = Channel().Remember(Channel().Open());

    EXPECT_TRUE(result == BMC_INTERNAL_ERROR);
    EXPECT_TRUE(option_.run->LastFailure() == BMC_INTERNAL_ERROR);
}

TEST_F(CimChannelTest, EachReadIsTold) {
    std::vector<std::string> told;
    option_.run->on_activity = [&told](const std::string& text) { told.push_back(text); };
    Knows(1);

    EXPECT_FALSE(Channel().Open());
    EXPECT_EQ(told, (std::vector<std::string>{"reading CIM_ComputerSystem over CIM"}));
}

TEST_F(CimChannelTest, ChannelOfAnotherKindIsNone) {
    VantixConnection::ConnectionInfo connection;
    connection.connect_case = VantixConnection::kConnectCaseRest;
    connection.channel = std::make_shared<int>(1);

    EXPECT_EQ(CimChannel::Of(connection), nullptr);
    delete peer_;
}

}  // namespace
}  // namespace Vantix::cim
