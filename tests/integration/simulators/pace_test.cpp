// Latency, handshake delay and the order of a service that works on one request at a time. Times
// are only compared with what the simulator was told to wait at least; nothing here can be too
// slow.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using std::chrono::milliseconds;

/// Requests from `clients` threads at once, one each; how long all took.
milliseconds AskAtOnce(const BmcSimulator& bmc, int clients) {
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> threads;
    for (int i = 0; i < clients; ++i) {
        threads.emplace_back([&bmc] { EXPECT_EQ(TestClient(bmc).Get(kRoot).status, 200); });
    }
    for (std::thread& thread : threads) thread.join();
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
}

TEST(BmcSimulatorPaceTest, LatencyDelaysEachResponse) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.latency = milliseconds(30);
    BmcSimulator bmc(options);
    EXPECT_GE(AskAtOnce(bmc, 1), milliseconds(30));
}

TEST(BmcSimulatorPaceTest, ParallelRequestsAreSeenInFlightTogether) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    // Long enough for all three to arrive before the first is answered, on any machine.
    options.latency = milliseconds(1500);
    BmcSimulator bmc(options);
    AskAtOnce(bmc, 3);
    EXPECT_EQ(bmc.Counts().most_in_flight, 3);
    EXPECT_EQ(bmc.Counts().most_connections, 3);
    EXPECT_EQ(bmc.Counts().in_flight, 0);
}

TEST(BmcSimulatorPaceTest, SerializedServiceTakesTheSumOfItsLatencies) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.latency = milliseconds(40);
    options.serialize = true;
    BmcSimulator bmc(options);
    EXPECT_GE(AskAtOnce(bmc, 4), milliseconds(160));
}

TEST(BmcSimulatorPaceTest, HandshakesQueueUpBehindOneAnother) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.handshake_delay = milliseconds(40);
    BmcSimulator bmc(options);
    EXPECT_GE(AskAtOnce(bmc, 3), milliseconds(120));
    EXPECT_EQ(bmc.Counts().handshakes, 3);
}

TEST(BmcSimulatorPaceTest, PaceCanChangeAtRunTime) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    BmcOptions options = bmc.Options();
    options.latency = milliseconds(30);
    bmc.SetOptions(options);
    EXPECT_GE(AskAtOnce(bmc, 1), milliseconds(30));
}

}  // namespace
}  // namespace simulator_test
