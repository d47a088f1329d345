// The real calls. An emulated Windows shows disks that tell nothing of themselves, so no answer of
// one is expected here; what counts is that every call comes back.
#include <gtest/gtest.h>

#include "platform/disk/storage_queries.h"
#include "platform/disk/storage_requests.h"
#include "platform/disk/storage_survey.h"

namespace Vantix::disk {
namespace {

constexpr int kNoDisk = 9999;

TEST(StorageRequestsWindowsTest, SystemHasRequests) {
    ASSERT_NE(SystemStorage(), nullptr);
    for (const int disk : SystemStorage()->Disks()) EXPECT_GE(disk, 0);
}

TEST(StorageRequestsWindowsTest, MissingDiskIsAFailureWithACause) {
    const DeviceAnswer answer = SystemStorage()->Query(kNoDisk, DeviceQuery(), 4096);
    EXPECT_EQ(answer.state, DeviceAnswer::State::kFailed);
    EXPECT_EQ(answer.cause, "Windows error 2");
    EXPECT_EQ(SystemStorage()->ReadPage(kNoDisk, 0x89, 4096).state, DeviceAnswer::State::kFailed);
}

TEST(StorageRequestsWindowsTest, EveryQueryOfEveryDiskComesBack) {
    for (const int disk : SystemStorage()->Disks()) {
        for (const std::string& query :
             {DeviceQuery(), AdapterQuery(), NamesQuery(), IdentifyQuery()}) {
            const DeviceAnswer answer = SystemStorage()->Query(disk, query, 8192);
            EXPECT_LE(answer.data.size(), 8192U);
            EXPECT_EQ(answer.state == DeviceAnswer::State::kRead, answer.cause.empty());
        }
        (void)SystemStorage()->ReadPage(disk, 0x89, 4096);
    }
}

TEST(StorageRequestsWindowsTest, ThisMachineIsSurveyedWithoutHarm) {
    VantixConnection::RunContext run;
    for (const auto& disk : SurveyStorage(*SystemStorage(), transport::SystemRoot(), run)) {
        EXPECT_NE(disk.Name, "");
    }
}

}  // namespace
}  // namespace Vantix::disk
