#include "platform/disk/udev_record.h"

#include <gtest/gtest.h>

namespace Vantix::disk {
namespace {

TEST(UdevRecordTest, PropertyIsFoundAmongOthers) {
    const char* record =
        "S:disk/by-id/x\nW:1\nE:ID_ATA=1\nE:ID_REVISION=EX01CB6Q\nE:ID_SERIAL=M_S\n";
    EXPECT_EQ(UdevValue(record, "ID_REVISION"), "EX01CB6Q");
    EXPECT_EQ(UdevValue(record, "ID_SERIAL"), "M_S");
}

TEST(UdevRecordTest, LastLineNeedsNoEnd) {
    EXPECT_EQ(UdevValue("E:ID_REVISION=EX01", "ID_REVISION"), "EX01");
}

TEST(UdevRecordTest, OtherKeysLinesAndEmptyRecordsGiveNothing) {
    EXPECT_EQ(UdevValue("E:ID_REVISION_OLD=1\nS:ID_REVISION=2\nID_REVISION=3", "ID_REVISION"), "");
    EXPECT_EQ(UdevValue("", "ID_REVISION"), "");
    EXPECT_EQ(UdevValue("\n\n", "ID_REVISION"), "");
}

}  // namespace
}  // namespace Vantix::disk
