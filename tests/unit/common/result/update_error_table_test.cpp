#include "common/result/update_error_table.h"

#include <gtest/gtest.h>

#include <string>

#include "common/result/tarsel_result.h"

namespace {

TEST(UpdateErrorTableTest, HasTwoHundredAndNineEntries) {
    EXPECT_EQ(UpdateErrorTexts().size(), 209U);
}

TEST(UpdateErrorTableTest, AllButOneEntryCanBeRead) {
    int readable = 0;
    for (int code = 0x100; code <= 0xFFFF; ++code) {
        if (GetResultMessage(code) != "Unknown error" && (code & 0xFF00) != 0) ++readable;
    }
    EXPECT_EQ(readable, 208);
}

TEST(UpdateErrorTableTest, EveryEntryIsFoundUnderItsCode) {
    for (const UpdateErrorText& entry : UpdateErrorTexts()) {
        EXPECT_EQ(FindUpdateErrorText(entry.code), entry.text) << std::hex << entry.code;
    }
}

TEST(UpdateErrorTableTest, UpdateInProgressStandsInTheTableWithItsOwnText) {
    EXPECT_STREQ(FindUpdateErrorText(0x10075), "Another update is in progress.");
}

TEST(UpdateErrorTableTest, AbsentCodesGiveNothing) {
    for (const int code : {0, 0x600, 0x60C, 0x6FF, 0xB06, 0xC08, 0xC0F, 0x10076, -1}) {
        EXPECT_EQ(FindUpdateErrorText(code), nullptr) << std::hex << code;
    }
}

TEST(UpdateErrorTableTest, CodesOfOneRangeShareTheirText) {
    const char* text = "Failed to update due to Tolv internal error.";
    for (const int code : {0x611, 0x612, 0x613, 0x614, 0x616, 0x617, 0x661, 0x665, 0x666, 0x668,
                           0x66B, 0x66C, 0x66E, 0x670, 0x672, 0x676, 0x67A}) {
        EXPECT_EQ(GetResultMessage(code), text) << std::hex << code;
    }
    EXPECT_EQ(GetResultMessage(0x67B), "Unknown error");
}

TEST(UpdateErrorTableTest, CodesBetweenRangesHaveTheirOwnTexts) {
    EXPECT_EQ(GetResultMessage(0x615), "Timeout happens when installing package.");
    EXPECT_EQ(GetResultMessage(0x66D), "Switch could not connect to sftp server.");
    EXPECT_EQ(GetResultMessage(0x671), "Another update is in progress.");
    EXPECT_EQ(GetResultMessage(0x684), "Another update is in progress.");
}

TEST(UpdateErrorTableTest, LeadingBlanksAreKept) {
    EXPECT_EQ(GetResultMessage(0x621), " Failed to upload update package to online VMWare ESXi.");
    EXPECT_EQ(GetResultMessage(0x6C8), " Failed to complete BMU update.");
}

TEST(UpdateErrorTableTest, DoubledBlanksAndDotsAreKept) {
    EXPECT_EQ(GetResultMessage(0x6BC), "Failed to update due to ESXi  service not ready.");
    EXPECT_EQ(GetResultMessage(0x64F),
              "Update flash module error using inband flash and xFirmware: BMC reported abnormal "
              "status in upload..");
    EXPECT_EQ(GetResultMessage(0x659),
              "Update flash module error using inband flash and xFirmware: Unable to activate "
              "updated firmware.  Update process completed successfully, but the subsystem must be "
              "rebooted to take effect.");
}

TEST(UpdateErrorTableTest, MissingBlanksAndMisspellingsAreKept) {
    EXPECT_EQ(GetResultMessage(0x636),
              "Update flash module error using inband flash and xFirmware: Multinode configure "
              "error.Check if multinode system is configured properly.");
    EXPECT_EQ(GetResultMessage(0x6A6), "CIM error:rollback failed.");
    EXPECT_EQ(GetResultMessage(0x6C7),
              "Update bmu flash error: Upload file to tavro internel sftp failed");
    EXPECT_EQ(GetResultMessage(0x6A3), "No packages is suggested to flash.");
}

TEST(UpdateErrorTableTest, QuotationMarksInsideTextsAreKept) {
    EXPECT_EQ(GetResultMessage(0x60B),
              "This package is skipped due to \"--nostage\" is specified.");
    EXPECT_EQ(GetResultMessage(0x6C9),
              "Update bmu flash error: \"Maintenance Mode OS image\" \"Tarsel pkg for bmu\" or "
              "\"Maintenance Mode OS file system image\" files not found.");
}

TEST(UpdateErrorTableTest, EnclosureTextNamesTheRestoreAndRebootCommands) {
    const std::string text = GetResultMessage(0xC0C);
    EXPECT_TRUE(text.starts_with("Another update task is in progress."));
    EXPECT_NE(text.find("./Tarsel restore --vesk"), std::string::npos);
    EXPECT_NE(text.find("./Tarsel reboot --vesk"), std::string::npos);
}

TEST(UpdateErrorTableTest, LegacyToolTextSaysThatItDidNotSucceed) {
    EXPECT_EQ(GetResultMessage(0x6F3), "The legacy update tool did not run successfully.");
}

TEST(UpdateErrorTableTest, FirstAndLastCodesOfEachBlockAreThere) {
    EXPECT_EQ(GetResultMessage(0x601),
              "Update query module error: given ID is not found in the query package results.");
    EXPECT_EQ(GetResultMessage(0xB0B),
              "Failed to config LAN-over-USB device with non-administrator user.");
    EXPECT_EQ(GetResultMessage(0xC01),
              "Failed to initialize Vesk, it is not ready for update. Please retry later or reboot "
              "Vesk.");
    EXPECT_EQ(GetResultMessage(0xC0E), "The local package is different from the one on tftp.");
}

}  // namespace
