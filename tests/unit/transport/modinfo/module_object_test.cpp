#include "transport/modinfo/module_object.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/module_file.h"

namespace Vantix::transport {
namespace {

using test_support::ModuleFile;
using test_support::ModuleFileFor;

ByteSource SourceOf(const std::string& bytes) {
    return [&bytes](std::uint64_t offset, std::size_t size) {
        if (offset >= bytes.size()) return std::string();
        return bytes.substr(static_cast<std::size_t>(offset), size);
    };
}

std::string DescriptionOf(const std::string& bytes) {
    return ReadModuleDescription(SourceOf(bytes));
}

TEST(ModuleObjectTest, DescriptionIsRead) {
    EXPECT_EQ(DescriptionOf(ModuleFileFor("Fake Ethernet Driver")), "Fake Ethernet Driver");
}

TEST(ModuleObjectTest, OnlySmallPiecesAreRead) {
    const std::string file = ModuleFileFor("Fake");
    std::size_t asked = 0;
    const ByteSource counting = [&](std::uint64_t offset, std::size_t size) {
        asked += size;
        return SourceOf(file)(offset, size);
    };
    EXPECT_EQ(ReadModuleDescription(counting), "Fake");
    EXPECT_LT(asked, file.size());
}

TEST(ModuleObjectTest, FirstDescriptionCounts) {
    EXPECT_EQ(DescriptionOf(ModuleFile(std::string("description=A\0description=B\0", 28))), "A");
}

TEST(ModuleObjectTest, KeyInsideAnotherEntryIsNone) {
    EXPECT_EQ(DescriptionOf(ModuleFile(std::string("parm=x:description=y\0", 21))), "");
}

TEST(ModuleObjectTest, LastEntryNeedsNoEnd) {
    EXPECT_EQ(DescriptionOf(ModuleFile("description=Fake")), "Fake");
}

TEST(ModuleObjectTest, ControlBytesGoAndLongTextsAreCut) {
    EXPECT_EQ(DescriptionOf(ModuleFileFor("Fa\nke\x01")), "Fa ke");
    EXPECT_LE(DescriptionOf(ModuleFileFor(std::string(5000, 'x'))).size(), 200U);
}

TEST(ModuleObjectTest, CompressedAndOtherFilesHaveNone) {
    EXPECT_EQ(DescriptionOf(std::string("\xfd"
                                        "7zXZ\0rest",
                                        10)),
              "");
    EXPECT_EQ(DescriptionOf("\x28\xb5\x2f\xfd"), "");
    EXPECT_EQ(DescriptionOf(""), "");
}

TEST(ModuleObjectTest, OtherWordSizeOrByteOrderHasNone) {
    std::string file = ModuleFileFor("Fake");
    file[4] = 1;
    EXPECT_EQ(DescriptionOf(file), "");
    file[4] = 2;
    file[5] = 2;
    EXPECT_EQ(DescriptionOf(file), "");
}

TEST(ModuleObjectTest, EveryCutOffFileIsSurvived) {
    const std::string file = ModuleFileFor("Fake");
    for (std::size_t length = 0; length < file.size(); ++length) {
        EXPECT_EQ(DescriptionOf(file.substr(0, length)), "") << length;
    }
}

TEST(ModuleObjectTest, EveryBrokenByteIsSurvived) {
    const std::string file = ModuleFileFor("Fake");
    for (std::size_t at = 0; at < file.size(); ++at) {
        std::string broken = file;
        broken[at] = '\xff';
        EXPECT_LE(DescriptionOf(broken).size(), 200U) << at;
    }
}

TEST(ModuleObjectTest, HugeNumbersAskForNoMoreThanTheLimits) {
    std::string file = ModuleFileFor("Fake");
    for (std::size_t at = 0x28; at < 0x40; ++at) file[at] = '\xff';
    std::size_t most = 0;
    const ByteSource counting = [&](std::uint64_t offset, std::size_t size) {
        most = std::max(most, size);
        return SourceOf(file)(offset, size);
    };
    EXPECT_EQ(ReadModuleDescription(counting), "");
    EXPECT_LE(most, 256U * 1024);
}

}  // namespace
}  // namespace Vantix::transport
