#include "common/result/result_code_registry.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Module numbers that no subsystem uses, so that the cases leave the real codes alone.
constexpr int kSpareModule = 0x7001;
constexpr int kOtherSpareModule = 0x7002;

TEST(ResultCodeRegistryTest, RegisterReturnsModuleAboveCode) {
    EXPECT_EQ(ResultCodeRegistry::Register(kSpareModule, 9, "Spare nine."), 0x70010009);
}

TEST(ResultCodeRegistryTest, RegisteredTextIsFoundByFullCodeAndModule) {
    const int code = ResultCodeRegistry::Register(kSpareModule, 10, "Spare ten.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, kSpareModule), "Spare ten.");
}

TEST(ResultCodeRegistryTest, CodeWithinModuleAloneIsNotFound) {
    ResultCodeRegistry::Register(kSpareModule, 200, "Spare two hundred.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(200, kSpareModule), "Unknow error");
}

TEST(ResultCodeRegistryTest, TextOfOneModuleIsNotFoundInAnother) {
    const int code = ResultCodeRegistry::Register(kSpareModule, 11, "Spare eleven.");
    ResultCodeRegistry::Register(kOtherSpareModule, 11, "Other eleven.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, kOtherSpareModule), "Unknow error");
}

TEST(ResultCodeRegistryTest, RegisteringTheSameTextTwiceLeavesThatText) {
    const int first = ResultCodeRegistry::Register(kSpareModule, 12, "Spare twelve.");
    const int second = ResultCodeRegistry::Register(kSpareModule, 12, "Spare twelve.");
    EXPECT_EQ(first, second);
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(first, kSpareModule), "Spare twelve.");
}

TEST(ResultCodeRegistryTest, RegisteringAnotherTextReplacesTheFirst) {
    ResultCodeRegistry::Register(kSpareModule, 13, "Before.");
    const int code = ResultCodeRegistry::Register(kSpareModule, 13, "After.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, kSpareModule), "After.");
}

TEST(ResultCodeRegistryTest, CommonCodeIsFoundWhateverTheModule) {
    const int code = ResultCodeRegistry::Register(0, 0x70030001, "Common with module bits.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, 0x7003), "Common with module bits.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, 1), "Common with module bits.");
}

TEST(ResultCodeRegistryTest, CommonTextWinsOverModuleTextOfTheSameCode) {
    ResultCodeRegistry::Register(0x7004, 1, "Module text.");
    const int code = ResultCodeRegistry::Register(0, 0x70040001, "Common text.");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, 0x7004), "Common text.");
}

TEST(ResultCodeRegistryTest, NegativeModuleRegistersACommonCode) {
    const int code = ResultCodeRegistry::Register(-1, 7, "Below one.");
    EXPECT_EQ(code, static_cast<int>(0xFFFF0007U));
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(code, 3), "Below one.");
}

TEST(ResultCodeRegistryTest, UnknownCodeOfAKnownModuleYieldsFallbackText) {
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(0x100FF, 1), "Unknow error");
}

TEST(ResultCodeRegistryTest, UpdateErrorCodesAreNotRegistered) {
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(0x6D3, 0), "Unknow error");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(0x62B, 0), "Unknow error");
}

}  // namespace
