#include "common/result/result_codes.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "common/result/result_code_registry.h"
#include "common/result/tarsel_result.h"
#include "unit/common/result/result_codes_second_file.h"

namespace {

std::string Registered(int module, int code) {
    return ResultCodeRegistry::GetRegisteredMessage((module << 16) | code, module);
}

int CountRegistered(int module) {
    int count = 0;
    for (int code = 0; code < 256; ++code) {
        if (Registered(module, code) != "Unknow error") ++count;
    }
    return count;
}

struct NamedCode {
    const char* name;
    int code;
    int expected;
    const char* text;
};

class NamedResultCodeTest : public testing::TestWithParam<NamedCode> {};

TEST_P(NamedResultCodeTest, HasItsNumberAndText) {
    EXPECT_EQ(GetParam().code, GetParam().expected);
    EXPECT_EQ(GetResultMessage(GetParam().code), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    CodesThatScansUse, NamedResultCodeTest,
    testing::Values(
        NamedCode{"Succeed", SUCCEED, 0x0, "Succeed."},
        NamedCode{"GenericFailure", GENERIC_FAILURE, 0x1, "Generic Failure."},
        NamedCode{"FileNotExist", FILE_NOT_EXIST, 0x6, "File doesn't exist."},
        NamedCode{"InvalidFile", INVALID_FILE, 0x7, "Invalid file."},
        NamedCode{"ReadFileFailed", READ_FILE_FAILED, 0xA, "Failed to read file."},
        NamedCode{"WriteFileFailed", WRITE_FILE_FAILED, 0xB, "Failed to write file."},
        NamedCode{"AuthenticationFailed", AUTHENTICATION_FAILED, 0xC, "Authentication failed."},
        NamedCode{"ConnectionFailed", CONNECTION_FAILED, 0xD, "Connection failed."},
        NamedCode{"InternalError", INTERNAL_ERROR, 0x11, "Internal error."},
        NamedCode{"RemoteMachineNotSupported", REMOTE_MACHINE_NOT_SUPPORTED, 0x2A,
                  "Remote operation not support this remote machine."},
        NamedCode{"KcsConnectFailed", KCS_CONNECT_FAILED, 0x32,
                  "Failed to connect KCS, if system in Enterprise Strict Mode, please change the "
                  "mode, enable ipmi-over-lan and enable ipmi-over-kcs, then try this case again."},
        NamedCode{"NoAvailableUserId", NO_AVAILABLE_USER_ID, 0x46,
                  "There are no available user IDs to create a new user. Please delete a user and "
                  "try again."},
        NamedCode{"LegacySystemNotSupported", LEGACY_SYSTEM_NOT_SUPPORTED, 0x1006D,
                  "You are running against an Orvane system. But the current command is not "
                  "supported."},
        NamedCode{"GetOsTypeFailed", GET_OS_TYPE_FAILED, 0x1006F, "Failed to get OS type."},
        NamedCode{"UpdateInProgress", UPDATE_IN_PROGRESS, 0x10075, "Another update in progress."},
        NamedCode{"EsxiInternalError", ESXI_INTERNAL_ERROR, 0x62B,
                  "Failed to update due to ESXI internal error."},
        NamedCode{"GetMachineTypeFailed", GET_MACHINE_TYPE_FAILED, 0x6D2,
                  "Failed to get machine type."},
        NamedCode{"GetFirmwareInfoFailed", GET_FIRMWARE_INFO_FAILED, 0x6D3,
                  "Failed to get firmware information."}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ResultCodesTest, RegisteredRowsAreTwoHundredAndTwentySix) {
    int count = 0;
    for (int module = 0; module < 128; ++module) count += CountRegistered(module);
    EXPECT_EQ(count, 226);
}

TEST(ResultCodesTest, EveryModuleHasItsNumberOfRows) {
    const std::map<int, int> rows = {{0, 67}, {1, 37},  {2, 10}, {3, 6},   {4, 37}, {10, 10},
                                     {17, 2}, {18, 12}, {20, 1}, {24, 19}, {35, 4}, {44, 5},
                                     {58, 3}, {61, 4},  {62, 3}, {63, 2},  {64, 4}};
    for (const auto& [module, expected] : rows) {
        EXPECT_EQ(CountRegistered(module), expected) << "module " << module;
    }
}

TEST(ResultCodesTest, TrailingBlanksAreKept) {
    EXPECT_EQ(Registered(0, 33),
              "No available USBLAN device or host IPv4 ip, Please confirm USBLAN device exists and "
              "check the USBLAN device's ipv4 protocl setting is enabled. ");
    EXPECT_EQ(Registered(18, 119), "Failed to get FFDC log. ");
    EXPECT_EQ(Registered(58, 123), "Service Data Log is not supported on current system. ");
    EXPECT_EQ(Registered(58, 124), "Failed to get Service Data Log. ");
    EXPECT_EQ(Registered(61, 124),
              "The Chassis requires to be powered off to perform this request. ");
    for (const auto& [module, code] : std::map<int, int>{{18, 120}, {58, 125}, {61, 122}}) {
        EXPECT_TRUE(Registered(module, code).ends_with(". ")) << module << "/" << code;
    }
    EXPECT_EQ(Registered(61, 125),
              "Current user do not have sufficient privilege to execute the command. ");
}

TEST(ResultCodesTest, MisspellingsAreKept) {
    EXPECT_EQ(Registered(1, 84), "Current BMC avaliable space not enough.");
    EXPECT_EQ(Registered(2, 121), "Libcurl error: unknow error.");
    EXPECT_EQ(Registered(4, 88), "loaddefault fail by denendency check");
    EXPECT_EQ(Registered(4, 91), "One or more setttings failed to show.");
    EXPECT_EQ(Registered(18, 121), "Download Vesk FFDC error: tftp server doese not found.");
}

TEST(ResultCodesTest, TextsWithoutFullStopAreKept) {
    EXPECT_EQ(Registered(0, 36),
              "Failed to verify the certificate/fingerprint for the connection(s) you specified");
    EXPECT_EQ(Registered(1, 86), "Staged");
    EXPECT_EQ(Registered(1, 121),
              "Failed to update due to this device doesn't support current method");
}

TEST(ResultCodesTest, CommonEsxiTextBeginsWithSmallLetter) {
    EXPECT_EQ(Registered(0, 34), "failed to update due to ESXI internal error.");
}

TEST(ResultCodesTest, QuotationMarksInsideTextsAreKept) {
    EXPECT_EQ(Registered(2, 118),
              "You should input the pair of machine type with \"--mt\" and serial number \"--sn\" "
              "or just casenumber with \"--cn\" .");
    EXPECT_EQ(Registered(24, 107), "Incorrect use of '--dg' option.");
}

TEST(ResultCodesTest, GapsInTheNumberingStayUnknown) {
    for (const int code : {2, 20, 31, 32, 71}) EXPECT_EQ(Registered(0, code), "Unknow error");
    EXPECT_EQ(Registered(1, 106), "Unknow error");
    EXPECT_EQ(Registered(24, 125), "Unknow error");
}

TEST(ResultCodesTest, EqualTextsOfTwoModulesKeepTheirOwnCodes) {
    EXPECT_EQ(Registered(62, 124), Registered(63, 124));
    EXPECT_NE(NETWORK_ADD_ADDRESS_ERROR, NETWORK_SECOND_ADD_ADDRESS_ERROR);
}

TEST(ResultCodesTest, SecondIncludingFileSeesTheSameCodes) {
    const CodesSeenElsewhere seen = ReadCodesInSecondFile();
    EXPECT_EQ(seen.update_in_progress, UPDATE_IN_PROGRESS);
    EXPECT_EQ(seen.disk_data_unavailable, SMART_DATA_UNAVAILABLE);
}

TEST(ResultCodesTest, TextsAreThereBeforeMainBegins) {
    EXPECT_EQ(ReadCodesInSecondFile().text_during_initialisation, "Another update in progress.");
}

}  // namespace
