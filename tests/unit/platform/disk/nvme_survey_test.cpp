#include "platform/disk/nvme_survey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/system_tree.h"
#include "unit/platform/disk/log_lines.h"
#include "unit/platform/disk/page_builder.h"

namespace Vantix::disk {
namespace {

using disk_test::IdentifyData;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using transport::SystemRoot;
using State = DeviceAnswer::State;

/// Gives one answer and keeps what it was asked.
class ScriptedAdmin : public NvmeAdmin {
  public:
    explicit ScriptedAdmin(DeviceAnswer answer) : answer_(std::move(answer)) {}
    DeviceAnswer IdentifyController(const std::string& node,
                                    const std::string& number) const override {
        asked.push_back(node + " " + number);
        return answer_;
    }
    mutable std::vector<std::string> asked;

  private:
    DeviceAnswer answer_;
};

class NvmeSurveyTest : public testing::Test {
  protected:
    void Controller(const std::string& name, const std::string& firmware) {
        const std::string folder = "/sys/class/nvme/" + name;
        tree_.File(folder + "/model", "Example NVMe 960GB                      \n")
            .File(folder + "/serial", "NVSER0001           \n")
            .File(folder + "/firmware_rev", firmware)
            .File(folder + "/transport", "pcie\n")
            .File(folder + "/state", "live\n")
            .File(folder + "/dev", "239:0\n");
    }
    std::vector<DiskFacts> Survey(const NvmeAdmin* admin = nullptr) {
        const SystemRoot root(tree_.Root());
        auto disks = SurveyNvmeDisks(root, DiskPlaces(root), admin, run_);
        denied_ = root.DeniedPaths();
        return disks;
    }

    SystemTree tree_;
    VantixConnection::RunContext run_;
    std::vector<std::string> denied_;
};

TEST_F(NvmeSurveyTest, PaddedTextsOfTheKernelAreTrimmed) {
    Controller("nvme0", "2.0.1   \n");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].node, "nvme0");
    EXPECT_EQ(disks[0].source, "NVMe controller");
    EXPECT_EQ(disks[0].model, "Example NVMe 960GB");
    EXPECT_EQ(disks[0].serial, "NVSER0001");
    EXPECT_EQ(disks[0].firmware, "2.0.1");
}

TEST_F(NvmeSurveyTest, TextsPaddedWithNulBytesAreCutThere) {
    Controller("nvme0", std::string("2.0.1   ") + std::string(4088, '\0'));
    EXPECT_EQ(Survey()[0].firmware, "2.0.1");
}

TEST_F(NvmeSurveyTest, NumbersInNamesGiveTheOrder) {
    Controller("nvme10", "3\n");
    Controller("nvme2", "2\n");
    Controller("nvme0", "1\n");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 3u);
    EXPECT_EQ(disks[0].node, "nvme0");
    EXPECT_EQ(disks[1].node, "nvme2");
    EXPECT_EQ(disks[2].node, "nvme10");
}

TEST_F(NvmeSurveyTest, EntryMayBeALinkIntoTheDeviceTree) {
    const std::string device = "/sys/devices/pci0000:00/0000:03:00.0";
    tree_.File(device + "/nvme/nvme0/model", "Example NVMe\n")
        .File(device + "/nvme/nvme0/firmware_rev", "2.0.1\n")
        .Link(device + "/nvme/nvme0/device", "../../../0000:03:00.0")
        .Link("/sys/class/nvme/nvme0", "../../devices/pci0000:00/0000:03:00.0/nvme/nvme0")
        .File("/sys/bus/pci/slots/11/address", "0000:03:00\n");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].slot, (redfish::Slot{"11", redfish::kSlotPcie}));
}

TEST_F(NvmeSurveyTest, SlotComesFromTheAddressWhereThereIsNoDeviceLink) {
    Controller("nvme0", "2.0.1\n");
    tree_.File("/sys/class/nvme/nvme0/address", "052e:78:00.0\n")
        .File("/sys/bus/pci/slots/7/address", "052e:78:00\n");
    EXPECT_EQ(Survey()[0].slot.number, "7");
}

TEST_F(NvmeSurveyTest, RevisionOfTheControllerWinsAndIsToldAsNotice) {
    Controller("nvme0", "2.0.1\n");
    const ScriptedAdmin admin(
        {State::kRead, IdentifyData("NVSER0001", "Example NVMe", "2.1.0"), {}});
    const disk_test::LogLines log;
    EXPECT_EQ(Survey(&admin)[0].firmware, "2.1.0");
    EXPECT_THAT(admin.asked, ElementsAre("/dev/nvme0 239:0"));
    EXPECT_THAT(run_.Notices(),
                ElementsAre("The disk nvme0 runs firmware 2.1.0, but the system still shows 2.0.1 "
                            "from before an update; the scan reports 2.1.0."));
    EXPECT_THAT(log.Text(), HasSubstr("[2] nvme_survey"));
}

TEST_F(NvmeSurveyTest, SameRevisionWithOtherPaddingIsNoNews) {
    Controller("nvme0", "2.1.0   \n");
    const ScriptedAdmin admin(
        {State::kRead, IdentifyData("NVSER0001", "Example NVMe", "2.1.0"), {}});
    EXPECT_EQ(Survey(&admin)[0].firmware, "2.1.0");
    EXPECT_THAT(run_.Notices(), IsEmpty());
}

TEST_F(NvmeSurveyTest, ControllerFillsInWhatTheKernelDoesNotTell) {
    tree_.Folder("/sys/class/nvme/nvme0");
    const ScriptedAdmin admin(
        {State::kRead, IdentifyData("NVSER0001", "Example NVMe", "2.1.0"), {}});
    const auto disks = Survey(&admin);
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].model, "Example NVMe");
    EXPECT_EQ(disks[0].serial, "NVSER0001");
    EXPECT_THAT(run_.Notices(), IsEmpty());
}

TEST_F(NvmeSurveyTest, RefusedNodeIsListedAndTheKernelsRevisionStands) {
    Controller("nvme0", "2.0.1\n");
    const ScriptedAdmin admin({State::kDenied, {}, "Permission denied"});
    const disk_test::LogLines log;
    EXPECT_EQ(Survey(&admin)[0].firmware, "2.0.1");
    EXPECT_THAT(denied_, ElementsAre("/dev/nvme0"));
    EXPECT_THAT(log.Text(), HasSubstr("nvme0 is as of driver start, it was not asked: Permission"));
}

TEST_F(NvmeSurveyTest, FailedCommandCostsOnlyTheCheck) {
    Controller("nvme0", "2.0.1\n");
    const ScriptedAdmin admin({State::kFailed, {}, "NVMe status 2"});
    EXPECT_EQ(Survey(&admin)[0].firmware, "2.0.1");
    EXPECT_THAT(denied_, IsEmpty());
    EXPECT_THAT(run_.Notices(), IsEmpty());
}

TEST_F(NvmeSurveyTest, EmptyAnswerOfTheControllerChangesNothing) {
    Controller("nvme0", "2.0.1\n");
    const ScriptedAdmin admin({State::kRead, std::string(4096, '\0'), {}});
    EXPECT_EQ(Survey(&admin)[0].firmware, "2.0.1");
}

TEST_F(NvmeSurveyTest, ControllerThatIsNotLiveIsNotAsked) {
    Controller("nvme0", "2.0.1\n");
    tree_.File("/sys/class/nvme/nvme0/state", "resetting\n");
    const ScriptedAdmin admin({State::kRead, IdentifyData("X", "Y", "Z"), {}});
    EXPECT_EQ(Survey(&admin)[0].firmware, "2.0.1");
    EXPECT_THAT(admin.asked, IsEmpty());
}

TEST_F(NvmeSurveyTest, ControllersElsewhereAreLeftOutAndNotAsked) {
    const ScriptedAdmin admin({State::kRead, IdentifyData("X", "Y", "Z"), {}});
    const disk_test::LogLines log;
    for (const char* transport : {"tcp", "rdma", "fc", "loop"}) {
        Controller("nvme0", "2.0.1\n");
        tree_.File("/sys/class/nvme/nvme0/transport", std::string(transport) + "\n");
        EXPECT_THAT(Survey(&admin), IsEmpty()) << transport;
    }
    EXPECT_THAT(admin.asked, IsEmpty());
    EXPECT_THAT(log.Text(), HasSubstr("left out nvme0: not in this machine"));
}

TEST_F(NvmeSurveyTest, PlaceholderSerialNumberIsUnknown) {
    Controller("nvme0", "2.0.1\n");
    tree_.File("/sys/class/nvme/nvme0/serial", "00000000000000000000\n");
    EXPECT_EQ(Survey()[0].serial, "");
}

TEST_F(NvmeSurveyTest, DamagedEntriesCostOnlyThemselves) {
    Controller("nvme3", "2.0.1\n");
    tree_.Link("/sys/class/nvme/nvme0", "nvme0")
        .Link("/sys/class/nvme/nvme1", "../../devices/gone")
        .File("/sys/class/nvme/nvme2", "a file")
        .Folder("/sys/class/nvme/nvme4/model")
        .File("/sys/class/nvme/nvme5/model", std::string(100000, 'M'))
        .File("/sys/class/nvme/nvme6/model", "\xff\xff\xff")
        .Folder("/sys/class/nvme/nvme-fabrics");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].node, "nvme3");
}

TEST_F(NvmeSurveyTest, CancelledRunReadsNoFurtherController) {
    Controller("nvme0", "2.0.1\n");
    run_.Cancel();
    EXPECT_THAT(Survey(), IsEmpty());
}

}  // namespace
}  // namespace Vantix::disk
