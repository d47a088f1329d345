#include "platform/pci/vpd_reads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "pci_tree.h"
#include "platform/pci/vpd.h"

namespace {

using std::chrono::milliseconds;
using test_support::AVpd;
using Vantix::pci::PieceReader;
using Vantix::pci::ReadVpds;
using Vantix::pci::VpdLimits;
using Vantix::pci::VpdReading;

std::string AnImage() {
    return AVpd().Identifier("EX710").Field("PN", "EX-P1").Field("V0", "4.2.1").Bytes();
}

PieceReader Serving(const std::string& bytes) {
    return [bytes](std::size_t offset, std::size_t size) {
        return offset < bytes.size() ? bytes.substr(offset, size) : std::string();
    };
}

// Devices that do not answer before they are let go.
class Gate {
  public:
    ~Gate() { Open(); }
    void Open() {
        const std::lock_guard<std::mutex> lock(state_->mutex);
        state_->is_open = true;
        state_->changed.notify_all();
    }
    [[nodiscard]] PieceReader Hanging() const {
        return [state = state_](std::size_t, std::size_t) {
            std::unique_lock<std::mutex> lock(state->mutex);
            ++state->waiting;
            state->changed.wait(lock, [&] { return state->is_open; });
            return std::string();
        };
    }
    [[nodiscard]] int Waiting() const {
        const std::lock_guard<std::mutex> lock(state_->mutex);
        return state_->waiting;
    }

  private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool is_open = false;
        int waiting = 0;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

VpdReading ReadOne(PieceReader reader) {
    VpdLimits limits;
    limits.time = std::chrono::minutes(1);  // of the test's machine, not of the device
    return ReadVpds({std::move(reader)}, limits).at(0);
}

TEST(VpdReadsTest, NoReadersGiveNoReadings) {
    EXPECT_TRUE(ReadVpds({}, {}).empty());
}

TEST(VpdReadsTest, ReadingsComeInTheOrderOfTheReaders) {
    std::vector<PieceReader> readers;
    for (int i = 0; i < 40; ++i) {
        readers.push_back(Serving(AVpd().Field("SN", std::to_string(i)).Bytes()));
    }
    const auto readings = ReadVpds(std::move(readers), {});
    ASSERT_EQ(readings.size(), 40U);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        EXPECT_EQ(readings[i].state, VpdReading::State::kRead);
        EXPECT_EQ(Vantix::pci::ParseVpd(readings[i].bytes).read_only.at("SN"), std::to_string(i));
    }
}

TEST(VpdReadsTest, ReadingEndsWhereTheFieldsEnd) {
    const std::string image = AnImage();
    const VpdReading reading = ReadOne(Serving(image + std::string(30000, 'x')));
    EXPECT_EQ(reading.state, VpdReading::State::kRead);
    EXPECT_LT(reading.bytes.size(), image.size() + 16);
}

TEST(VpdReadsTest, EndlessAnswerIsCutAtTheAddressSpaceOfADevice) {
    std::atomic<int> calls = 0;
    const VpdReading reading = ReadOne([&calls](std::size_t, std::size_t size) {
        ++calls;
        std::string bytes;
        while (bytes.size() < size) bytes += std::string("\x73\x01\x02\x03", 4);
        return bytes;
    });
    EXPECT_EQ(reading.state, VpdReading::State::kRead);
    EXPECT_EQ(reading.bytes.size(), Vantix::pci::kMaxVpd);
    EXPECT_EQ(calls, 2048);
}

TEST(VpdReadsTest, AnswerLongerThanAskedForIsCut) {
    const VpdReading reading =
        ReadOne([](std::size_t, std::size_t) { return std::string(100000, 's'); });
    EXPECT_LE(reading.bytes.size(), Vantix::pci::kMaxVpd);
}

TEST(VpdReadsTest, ErrorInTheMiddleFailsThatDeviceOnly) {
    const PieceReader failing = [](std::size_t offset,
                                   std::size_t size) -> std::optional<std::string> {
        if (offset > 0) return std::nullopt;
        return AnImage().substr(0, size);
    };
    const auto readings = ReadVpds({failing, Serving(AnImage())}, {});
    EXPECT_EQ(readings.at(0).state, VpdReading::State::kFailed);
    EXPECT_EQ(readings.at(1).state, VpdReading::State::kRead);
}

TEST(VpdReadsTest, ExceptionInAReaderFailsThatDeviceOnly) {
    const PieceReader throwing = [](std::size_t, std::size_t) -> std::optional<std::string> {
        throw std::runtime_error("no memory");
    };
    EXPECT_EQ(ReadOne(throwing).state, VpdReading::State::kFailed);
}

TEST(VpdReadsTest, SilentDeviceIsGivenUpAndTheOthersAreRead) {
    const Gate gate;
    VpdLimits limits;
    limits.time = milliseconds(30);
    limits.parallel = 2;
    const auto readings = ReadVpds(
        {gate.Hanging(), Serving(AnImage()), gate.Hanging(), gate.Hanging(), Serving(AnImage())},
        limits);
    using State = VpdReading::State;
    std::vector<State> states;
    for (const VpdReading& reading : readings) states.push_back(reading.state);
    EXPECT_EQ(states, (std::vector<State>{State::kTooSlow, State::kRead, State::kTooSlow,
                                          State::kTooSlow, State::kRead}));
    EXPECT_EQ(gate.Waiting(), 3);
}

TEST(VpdReadsTest, DeviceThatWasGivenUpIsAskedNoFurther) {
    auto calls = std::make_shared<std::atomic<int>>(0);
    VpdLimits limits;
    limits.time = milliseconds(20);
    {
        const auto held = std::make_shared<std::mutex>();
        std::unique_lock<std::mutex> lock(*held);
        const PieceReader slow = [calls, held](std::size_t, std::size_t) {
            const std::lock_guard<std::mutex> wait(*held);
            ++*calls;
            return std::string("\x73\x01\x02\x03", 4);
        };
        EXPECT_EQ(ReadVpds({slow}, limits).at(0).state, VpdReading::State::kTooSlow);
        EXPECT_EQ(*calls, 0);
    }
    // The reading above cannot end before the thread is let go; from then on it may end any time.
    while (*calls == 0) std::this_thread::yield();
    EXPECT_EQ(ReadOne(Serving(AnImage())).state, VpdReading::State::kRead);
    EXPECT_EQ(*calls, 1);
}

TEST(VpdReadsTest, WishToStopEndsTheWait) {
    const Gate gate;
    VpdLimits limits;
    limits.time = milliseconds(60000);
    limits.is_cancelled = [&gate] { return gate.Waiting() > 0; };
    const auto readings = ReadVpds({gate.Hanging(), gate.Hanging()}, limits);
    EXPECT_EQ(readings.at(0).state, VpdReading::State::kCancelled);
    EXPECT_EQ(readings.at(1).state, VpdReading::State::kCancelled);
}

}  // namespace
