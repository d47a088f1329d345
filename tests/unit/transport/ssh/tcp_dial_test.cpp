#include "transport/ssh/tcp_dial.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <string>

namespace Vantix::transport {
namespace {

using boost::asio::ip::tcp;
using std::chrono::milliseconds;
using testing::AllOf;
using testing::HasSubstr;

class TcpDialTest : public testing::Test {
  protected:
    Dialed Dial(const std::string& host, int port, milliseconds limit = milliseconds(10000)) {
        const StepLimit step = StepLimit::In(limit, SshProblem::kTimedOut, "too long");
        return DialTcp(host, port, step, [this] { return stop_; });
    }
    /// A listener on a free port of that address.
    tcp::acceptor Listen(const std::string& address) {
        const tcp::endpoint endpoint(boost::asio::ip::make_address(address), 0);
        return {context_, endpoint};
    }
    int ClosedPort() { return Listen("127.0.0.1").local_endpoint().port(); }

    boost::asio::io_context context_;
    SshFailure stop_;
};

TEST_F(TcpDialTest, AddressIsConnectedTo) {
    tcp::acceptor listener = Listen("127.0.0.1");
    const Dialed dialed = Dial("127.0.0.1", listener.local_endpoint().port());
    ASSERT_FALSE(dialed.failure) << dialed.failure.text;
    tcp::socket accepted = listener.accept();
    CloseSocket(dialed.socket);
    char byte = 0;
    boost::system::error_code error;
    accepted.read_some(boost::asio::buffer(&byte, 1), error);
    EXPECT_EQ(error, boost::asio::error::eof);
}

TEST_F(TcpDialTest, SixthVersionsAddressIsConnectedTo) {
    boost::system::error_code missing;
    tcp::acceptor listener(context_);
    listener.open(tcp::v6());
    listener.bind(tcp::endpoint(boost::asio::ip::address_v6::loopback(), 0), missing);
    if (missing) GTEST_SKIP() << "this machine has no loopback address of IPv6";
    listener.listen();
    const Dialed dialed = Dial("::1", listener.local_endpoint().port());
    ASSERT_FALSE(dialed.failure) << dialed.failure.text;
    CloseSocket(dialed.socket);
}

TEST_F(TcpDialTest, NameWhoseFirstAddressRefusesIsStillReached) {
    tcp::acceptor listener = Listen("127.0.0.1");
    const Dialed dialed = Dial("localhost", listener.local_endpoint().port());
    ASSERT_FALSE(dialed.failure) << dialed.failure.text;
    CloseSocket(dialed.socket);
}

TEST_F(TcpDialTest, ClosedPortIsRefused) {
    const int port = ClosedPort();
    const Dialed dialed = Dial("127.0.0.1", port);
    EXPECT_EQ(dialed.failure.problem, SshProblem::kRefused);
    EXPECT_THAT(dialed.failure.text,
                AllOf(HasSubstr("127.0.0.1 port " + std::to_string(port)), HasSubstr("refused")));
}

TEST_F(TcpDialTest, UnknownNameIsToldAsSuch) {
    const Dialed dialed = Dial("no-such-host.invalid", 22);
    EXPECT_EQ(dialed.failure.problem, SshProblem::kNotResolved);
    EXPECT_THAT(dialed.failure.text, HasSubstr("no-such-host.invalid"));
}

TEST_F(TcpDialTest, NameIsShownClean) {
    EXPECT_THAT(Dial("bad\x1b[31m\nname.invalid", 22).failure.text,
                HasSubstr("bad [31m name.invalid"));
}

TEST_F(TcpDialTest, FullQueueOfAListenerEndsAtTheLimit) {
    // Two connections fill the queue; the next one gets no answer from the system.
    tcp::acceptor listener(context_, tcp::endpoint(tcp::v4(), 0), false);
    listener.listen(0);
    const int port = listener.local_endpoint().port();
    for (int i = 0; i < 4; ++i) {
        const Dialed dialed = Dial("127.0.0.1", port, milliseconds(300));
        if (!dialed.failure) continue;
        EXPECT_EQ(dialed.failure.problem, SshProblem::kTimedOut);
        EXPECT_THAT(dialed.failure.text, HasSubstr("no answer from 127.0.0.1"));
        return;
    }
    GTEST_SKIP() << "this system queues more connections than it was asked to";
}

TEST_F(TcpDialTest, WishToStopEndsTheWaitForAConnection) {
    tcp::acceptor listener = Listen("127.0.0.1");
    stop_ = {SshProblem::kCancelled, "stop"};
    const Dialed dialed = Dial("127.0.0.1", listener.local_endpoint().port());
    EXPECT_EQ(dialed.failure.problem, SshProblem::kCancelled);
    EXPECT_EQ(dialed.failure.text, "stop");
}

}  // namespace
}  // namespace Vantix::transport
