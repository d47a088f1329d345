#include "transport/ipmi/sdr_locators.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "transport/ipmi/fru_locator.h"

namespace Vantix::transport {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

Bytes ALocator(const std::string& name, std::uint8_t fru_id, std::uint8_t entity,
               std::uint8_t logical = 0x80, std::uint8_t address = 0x20) {
    Bytes body = {address, fru_id, logical, 0, 0, 0x10, 0, entity, 1, 0};
    body.push_back(static_cast<std::uint8_t>(0xc0U | name.size()));
    body.insert(body.end(), name.begin(), name.end());
    Bytes record = {0, 0, 0x51, 0x11, static_cast<std::uint8_t>(body.size())};
    record.insert(record.end(), body.begin(), body.end());
    return record;
}

const Bytes kSensor = {0, 0, 0x51, 0x01, 0x02, 0xaa, 0xbb};

/// A repository with records of the ids 0, 10, 20, ...
class FakeRepository {
  public:
    explicit FakeRepository(std::vector<Bytes> records) : records_(std::move(records)) {}

    RawAnswer operator()(const RawRequest& request) {
        ++requests;
        if (request.command == 0x22) return Reserve();
        if (lose_reservation_at-- == 0) reservation_ = 0;
        const Bytes& data = request.data;
        if (data[0] != reservation_) return {0xc5, {}};
        const std::size_t index = static_cast<std::size_t>(data[2] | data[3] << 8) / 10;
        if (index >= records_.size()) return {0xcb, {}};
        const Bytes& record = records_[index];
        const std::size_t from = data[4];
        if (from + data[5] > record.size()) return {0xca, {}};
        const std::size_t next = index + 1 < records_.size() ? (index + 1) * 10 : last_id;
        RawAnswer answer{
            0, {static_cast<std::uint8_t>(next & 0xff), static_cast<std::uint8_t>(next >> 8)}};
        const auto first = record.begin() + static_cast<std::ptrdiff_t>(from);
        answer.data.insert(answer.data.end(), first, first + data[5]);
        return answer;
    }

    int requests = 0;
    int lose_reservation_at = -1;
    bool refuses = false;
    std::size_t last_id = 0xffff;

  private:
    RawAnswer Reserve() {
        if (refuses) return {0xc1, {}};
        return {0, {++reservation_, 0}};
    }

    std::vector<Bytes> records_;
    std::uint8_t reservation_ = 0;
};

std::vector<FruLocator> Read(FakeRepository& repository) {
    return ParseFruLocators(ReadFruLocatorText(std::ref(repository)));
}

TEST(SdrLocatorsTest, LocatorsAmongOtherRecordsAreFound) {
    FakeRepository repository(
        {kSensor, ALocator("PSU1", 3, 10), kSensor, ALocator("Backplane with 20 c", 4, 15)});
    const auto locators = Read(repository);
    ASSERT_THAT(locators, SizeIs(2));
    EXPECT_EQ(locators[0].name, "PSU1");
    EXPECT_EQ(locators[0].fru_id, 3);
    EXPECT_EQ(locators[0].entity_id, kEntityPowerSupply);
    EXPECT_EQ(locators[0].entity_instance, 1U);
    EXPECT_EQ(locators[1].name, "Backplane with 20 c");
    EXPECT_EQ(locators[1].fru_id, 4);
}

TEST(SdrLocatorsTest, ChipsOnABusAndOtherControllersAreLeftOut) {
    FakeRepository repository(
        {ALocator("EEPROM", 3, 10, 0x00), ALocator("Other", 4, 10, 0x80, 0x72)});
    EXPECT_THAT(Read(repository), IsEmpty());
}

TEST(SdrLocatorsTest, LostReservationIsTakenAnew) {
    FakeRepository repository({ALocator("PSU1", 3, 10), ALocator("PSU2", 4, 10)});
    repository.lose_reservation_at = 2;
    EXPECT_THAT(Read(repository), SizeIs(2));
}

TEST(SdrLocatorsTest, ReservationThatIsAlwaysLostEndsTheReading) {
    int requests = 0;
    const std::string text = ReadFruLocatorText([&](const RawRequest& request) {
        ++requests;
        return request.command == 0x22 ? RawAnswer{0, {1, 0}} : RawAnswer{0xc5, {}};
    });
    EXPECT_EQ(text, "");
    EXPECT_LE(requests, 20);
}

TEST(SdrLocatorsTest, ControllerWithoutRepositoryHasNone) {
    FakeRepository repository({ALocator("PSU1", 3, 10)});
    repository.refuses = true;
    EXPECT_EQ(ReadFruLocatorText(std::ref(repository)), "");
    EXPECT_EQ(repository.requests, 1);
}

TEST(SdrLocatorsTest, RecordsThatRunInACircleEnd) {
    FakeRepository repository({kSensor, ALocator("PSU1", 3, 10)});
    repository.last_id = 0;
    EXPECT_THAT(Read(repository), SizeIs(1));
    EXPECT_LE(repository.requests, 5000);
}

TEST(SdrLocatorsTest, DamagedRecordCostsOnlyItself) {
    Bytes damaged = ALocator("PSU1", 3, 10);
    damaged[4] = 200;  // tells more than there is
    Bytes cut = ALocator("PSU2", 4, 10);
    cut.resize(10);
    cut[4] = 5;
    Bytes nameless = ALocator("PSU3", 5, 10);
    nameless[15] = 0xdf;  // a name longer than the record
    FakeRepository repository({damaged, cut, nameless, ALocator("PSU4", 6, 10)});
    const auto locators = Read(repository);
    ASSERT_THAT(locators, SizeIs(2));
    EXPECT_EQ(locators[0].fru_id, 5);
    EXPECT_EQ(locators[0].name, "");
    EXPECT_EQ(locators[1].name, "PSU4");
}

TEST(SdrLocatorsTest, NameWithALineEndCannotMakeALine) {
    FakeRepository repository({ALocator("A\nB: C", 3, 10)});
    const auto locators = Read(repository);
    ASSERT_THAT(locators, SizeIs(1));
    EXPECT_EQ(locators[0].name, "A B: C");
}

TEST(SdrLocatorsTest, ShortAnswersEndTheReading) {
    EXPECT_EQ(ReadFruLocatorText([](const RawRequest&) { return RawAnswer{0, {1}}; }), "");
    EXPECT_EQ(ReadFruLocatorText([](const RawRequest&) { return RawAnswer{0, {1, 0, 2}}; }), "");
    EXPECT_EQ(ReadFruLocatorText([](const RawRequest&) { return RawAnswer{}; }), "");
}

}  // namespace
}  // namespace Vantix::transport
