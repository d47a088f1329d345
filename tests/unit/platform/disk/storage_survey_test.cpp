#include "platform/disk/storage_survey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <utility>

#include "unit/platform/disk/log_lines.h"
#include "unit/platform/disk/page_builder.h"
#include "unit/platform/disk/storage_answers.h"

namespace Vantix::disk {
namespace {

using disk_test::AdapterBytes;
using disk_test::ADevice;
using disk_test::AtaPage;
using disk_test::Identifier;
using disk_test::IdentifyData;
using disk_test::LogLines;
using disk_test::NamesBytes;
using disk_test::ProtocolBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kScsi = 0x01;
constexpr int kRaid = 0x08;
constexpr int kSas = 0x0a;
constexpr int kSata = 0x0b;
constexpr int kMmc = 0x0d;
constexpr int kNvme = 0x11;

/// Answers by disk and by the query's first byte, the number of the property.
class FakeStorage : public StorageRequests {
  public:
    using Answers = std::map<int, DeviceAnswer>;

    FakeStorage& On(int disk, int property, const std::string& bytes) {
        answers_[disk][property] = {DeviceAnswer::State::kRead, bytes, {}};
        return *this;
    }
    FakeStorage& Device(int disk, const ADevice& device) { return On(disk, 0, device.Bytes()); }
    void Deny(int disk, int property) {
        answers_[disk][property] = {DeviceAnswer::State::kDenied, {}, "Windows error 5"};
    }
    FakeStorage& Page(int disk, DeviceAnswer answer) {
        pages_[disk] = std::move(answer);
        return *this;
    }

    [[nodiscard]] std::vector<int> Disks() const override {
        std::vector<int> disks;
        // Not in order, as the system may tell them.
        for (auto at = answers_.rbegin(); at != answers_.rend(); ++at) disks.push_back(at->first);
        return disks;
    }
    [[nodiscard]] DeviceAnswer Query(int disk, const std::string& query,
                                     std::size_t most_bytes) const override {
        if (on_query) on_query();
        const Answers& answers = answers_.at(disk);
        const auto found = answers.find(query.front());
        if (found == answers.end()) return {DeviceAnswer::State::kFailed, {}, "Windows error 1"};
        DeviceAnswer answer = found->second;
        answer.data.resize(std::min(answer.data.size(), most_bytes));
        return answer;
    }
    [[nodiscard]] DeviceAnswer ReadPage(int disk, std::uint8_t page,
                                        std::size_t /*most_bytes*/) const override {
        pages_read.emplace_back(disk, page);
        const auto found = pages_.find(disk);
        return found == pages_.end() ? DeviceAnswer{} : found->second;
    }

    std::function<void()> on_query;
    mutable std::vector<std::pair<int, int>> pages_read;

  private:
    std::map<int, Answers> answers_;
    std::map<int, DeviceAnswer> pages_;
};

class StorageSurveyTest : public testing::Test {
  protected:
    auto Read() { return SurveyStorage(storage_, root_, run_); }
    std::vector<std::string> Nodes() {
        std::vector<std::string> nodes;
        for (const auto& disk : Read()) nodes.push_back(disk.InstanceID);
        return nodes;
    }
    void Nvme(int disk, const std::string& driver_revision, const std::string& own_revision) {
        storage_.Device(disk,
                        {"NVMe    ", "Example NVMe 4T", driver_revision, "0011_2233.", kNvme});
        storage_.On(disk, 49,
                    ProtocolBytes(IdentifyData("NVSER0001", "Example NVMe 4T", own_revision)));
    }

    FakeStorage storage_;
    transport::SystemRoot root_{"/"};
    VantixConnection::RunContext run_;
};

TEST_F(StorageSurveyTest, NvmeDiskIsWhatItsControllerSays) {
    Nvme(0, "2.0.1", "2.0.1");
    const auto list = Read();
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].Name, "Example NVMe 4T");
    EXPECT_EQ(list[0].SoftwareID, "Example NVMe 4T");
    EXPECT_EQ(list[0].PartNumber, "Example NVMe 4T");
    EXPECT_EQ(list[0].VersionString, "2.0.1");
    EXPECT_EQ(list[0].SerialNumber, "NVSER0001");
    EXPECT_EQ(list[0].Manufacturer, "");
    EXPECT_EQ(list[0].Caption, "NVMe controller");
    EXPECT_EQ(list[0].InstanceID, "PhysicalDrive0");
    EXPECT_THAT(run_.Notices(), IsEmpty());
}

TEST_F(StorageSurveyTest, OnlineUpdateIsNoticed) {
    Nvme(0, "2.0.1", "2.0.2");
    EXPECT_EQ(Read()[0].VersionString, "2.0.2");
    ASSERT_THAT(run_.Notices(), SizeIs(1));
    EXPECT_THAT(run_.Notices()[0], HasSubstr("PhysicalDrive0 runs firmware 2.0.2"));
}

TEST_F(StorageSurveyTest, PartOfTheRevisionIsNoOldRevision) {
    Nvme(0, "B7Q1", "EXB7Q1CA");
    EXPECT_EQ(Read()[0].VersionString, "EXB7Q1CA");
    EXPECT_THAT(run_.Notices(), IsEmpty());
}

TEST_F(StorageSurveyTest, NvmeDiskThatIsNotAskedIsWhatItsDriverShows) {
    storage_.Device(0, {"NVMe", "Example NVMe 4T", "2.0.1", "0011_2233.", kNvme});
    const auto list = Read();
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].VersionString, "2.0.1");
    EXPECT_EQ(list[0].SerialNumber, "");
}

TEST_F(StorageSurveyTest, ControllerForAdministratorsIsListedAsDenied) {
    storage_.Device(0, {"NVMe", "Example NVMe 4T", "2.0.1", "0011_2233.", kNvme});
    storage_.Deny(0, 49);
    EXPECT_EQ(Read()[0].VersionString, "2.0.1");
    EXPECT_THAT(root_.DeniedPaths(), ElementsAre("\\\\.\\PhysicalDrive0"));
}

TEST_F(StorageSurveyTest, SasDiskIsWhatItsDriverShows) {
    storage_.Device(3, {"EXAMPLE ", "EXD4000 ", "B003", "DSER0001", kSas});
    const auto list = Read();
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].Name, "EXD4000");
    EXPECT_EQ(list[0].Manufacturer, "EXAMPLE");
    EXPECT_EQ(list[0].VersionString, "B003");
    EXPECT_EQ(list[0].SerialNumber, "DSER0001");
    EXPECT_EQ(list[0].Caption, "SCSI disk");
    EXPECT_EQ(list[0].InstanceID, "PhysicalDrive3");
    EXPECT_THAT(storage_.pages_read, IsEmpty());
}

TEST_F(StorageSurveyTest, SataDiskNeedsNoPage) {
    storage_.Device(0, {"", "Example SSD 900 with a long name", "EX01CB6Q", "DSER0001", kSata});
    const auto list = Read();
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].Name, "Example SSD 900 with a long name");
    EXPECT_EQ(list[0].VersionString, "EX01CB6Q");
    EXPECT_EQ(list[0].Manufacturer, "");
    EXPECT_EQ(list[0].Caption, "ATA disk");
    EXPECT_THAT(storage_.pages_read, IsEmpty());
}

TEST_F(StorageSurveyTest, AtaDiskBehindATranslationTellsItselfInItsPage) {
    storage_.Device(0, {"ATA     ", "Example SSD 900 ", "CB6Q", "DSER0001", kSas});
    storage_.Page(0, {DeviceAnswer::State::kRead,
                      AtaPage("Example SSD 900 with a long name", "EX01CB6Q", "DSER0001"),
                      {}});
    const auto list = Read();
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].Name, "Example SSD 900 with a long name");
    EXPECT_EQ(list[0].VersionString, "EX01CB6Q");
    EXPECT_EQ(list[0].Manufacturer, "");
    EXPECT_THAT(storage_.pages_read, ElementsAre(std::pair(0, 0x89)));
}

TEST_F(StorageSurveyTest, PageForAdministratorsIsListedAsDenied) {
    const LogLines log;
    storage_.Device(0, {"ATA", "Example SSD 900", "CB6Q", "DSER0001", kSas});
    storage_.Page(0, {DeviceAnswer::State::kDenied, {}, "Windows error 5"});
    EXPECT_EQ(Read()[0].VersionString, "CB6Q");
    EXPECT_THAT(root_.DeniedPaths(), ElementsAre("\\\\.\\PhysicalDrive0"));
    EXPECT_THAT(log.Text(), HasSubstr("PhysicalDrive0 is known by four characters only: CB6Q"));
}

TEST_F(StorageSurveyTest, DamagedPageCostsOnlyItself) {
    storage_.Device(0, {"ATA", "Example SSD 900", "CB6Q", "DSER0001", kSas});
    const std::string page = AtaPage("Example SSD 900 with a long name", "EX01CB6Q", "DSER0001");
    storage_.Page(0, {DeviceAnswer::State::kRead, page.substr(0, 100), {}});
    EXPECT_EQ(Read()[0].VersionString, "CB6Q");
    EXPECT_THAT(root_.DeniedPaths(), IsEmpty());
}

TEST_F(StorageSurveyTest, FlashDiskIsListed) {
    storage_.Device(0, {"", "EX4016", "0x0a", "0x1234abcd", kMmc});
    const auto list = Read();
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].Caption, "eMMC");
    EXPECT_EQ(list[0].SerialNumber, "0x1234abcd");
}

TEST_F(StorageSurveyTest, DisksOfOtherBusesAreLeftOut) {
    const LogLines log;
    const std::pair<int, const char*> buses[] = {
        {0x04, "on FireWire"},
        {0x06, "on a network (Fibre Channel)"},
        {0x07, "on USB"},
        {0x09, "on a network (iSCSI)"},
        {0x0c, "no eMMC"},
        {0x0e, "a virtual disk"},
        {0x0f, "a virtual disk"},
        {0x10, "a logical volume"},
        {0x12, "persistent memory"},
        {0x14, "on a network (NVMe)"},
    };
    int disk = 0;
    for (const auto& [bus, reason] : buses) {
        storage_.Device(disk++, {"EXAMPLE", "EXD4000", "B003", "DSER0001", bus});
    }
    EXPECT_THAT(Nodes(), IsEmpty());
    disk = 0;
    for (const auto& [bus, reason] : buses) {
        const std::string line = "PhysicalDrive" + std::to_string(disk++) + ": " + reason;
        EXPECT_THAT(log.Text(), HasSubstr(line));
    }
}

TEST_F(StorageSurveyTest, LogicalVolumesAreToldByTheirNames) {
    storage_.Device(0, {"EXRAID", "EXV1", "1.0", "V1", kRaid});
    storage_.On(0, 2, NamesBytes(1, Identifier(3, 0, "\x60\x01\x40\x50")));
    storage_.Device(1, {"EXRAID", "EXD4000", "B003", "DSER0001", kRaid});
    storage_.On(1, 2, NamesBytes(1, Identifier(3, 0, "\x50\x01\x40\x50")));
    storage_.Device(2, {"EXRAID", "Logical Volume", "1.0", "V2", kSas});
    EXPECT_THAT(Nodes(), ElementsAre("PhysicalDrive1"));
}

TEST_F(StorageSurveyTest, HypervisorsDisksAndOtherDevicesAreLeftOut) {
    storage_.Device(0, {"Msft    ", "Virtual Disk    ", "1.0 ", "", kSas});
    storage_.Device(1, {"Red Hat ", "VirtIO", "0001", "", kScsi});
    storage_.Device(2, {"QEMU    ", "QEMU HARDDISK   ", "2.5+", "", kSas});
    storage_.Device(3, {"EXAMPLE", "EXENC", "1.0", "", kSas, 13});
    EXPECT_THAT(Nodes(), IsEmpty());
}

TEST_F(StorageSurveyTest, AdapterTellsTheBusWhereTheDiskDoesNot) {
    storage_.Device(0, {"EXAMPLE", "EXD4000", "B003", "DSER0001", 0});
    storage_.On(0, 1, AdapterBytes(0x09));
    storage_.Device(1, {"EXAMPLE", "EXD4000", "B003", "DSER0002", 0});
    EXPECT_THAT(Nodes(), ElementsAre("PhysicalDrive1"));
}

TEST_F(StorageSurveyTest, DiskThatTellsNothingIsLeftOut) {
    storage_.Device(0, {"", "", "", "", kScsi});
    storage_.On(1, 1, "");
    storage_.On(2, 0, "cut");
    EXPECT_THAT(Nodes(), IsEmpty());
}

TEST_F(StorageSurveyTest, OrderIsByKindThenByNumber) {
    storage_.Device(0, {"", "EX4016", "0x0a", "1", kMmc});
    storage_.Device(2, {"EXAMPLE", "EXD4000", "B003", "DSER0002", kSas});
    Nvme(3, "2.0.1", "2.0.1");
    storage_.Device(10, {"EXAMPLE", "EXD4000", "B003", "DSER0010", kSas});
    EXPECT_THAT(Nodes(), ElementsAre("PhysicalDrive3", "PhysicalDrive2", "PhysicalDrive10",
                                     "PhysicalDrive0"));
}

TEST_F(StorageSurveyTest, DiskOnTwoWaysIsToldOnce) {
    storage_.Device(0, {"EXAMPLE", "EXD4000", "B003", "DSER0001", kSas});
    storage_.Device(1, {"EXAMPLE", "EXD4000", "B003", "DSER0001", kSas});
    EXPECT_THAT(Nodes(), ElementsAre("PhysicalDrive0"));
}

TEST_F(StorageSurveyTest, InterruptionEndsTheSurvey) {
    storage_.Device(0, {"EXAMPLE", "EXD4000", "B003", "DSER0001", kSas});
    storage_.Device(1, {"EXAMPLE", "EXD4000", "B003", "DSER0002", kSas});
    storage_.on_query = [this] { run_.Cancel(); };
    EXPECT_THAT(Nodes(), ElementsAre("PhysicalDrive0"));
}

}  // namespace
}  // namespace Vantix::disk
