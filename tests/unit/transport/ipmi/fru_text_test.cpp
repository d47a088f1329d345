#include "transport/ipmi/fru_text.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

std::string TextOf(const Bytes& field, bool is_english = true) {
    const FruField read = ReadFruField(field, 0, field.size(), is_english);
    EXPECT_TRUE(read.is_there);
    return read.text;
}

TEST(FruTextTest, EightBitTextKeepsLettersAndInnerBlanks) {
    EXPECT_EQ(TextOf({0xc5, 'S', 'N', ' ', '0', '1'}), "SN 01");
}

TEST(FruTextTest, OuterBlanksAndPaddingAreTrimmed) {
    EXPECT_EQ(TextOf({0xc6, ' ', 'A', 'B', ' ', 0, 'x'}), "AB");
}

TEST(FruTextTest, Latin1BecomesUtf8) {
    EXPECT_EQ(TextOf({0xc3, 'G', 0xe9, 'x'}), "G\xc3\xa9x");
}

TEST(FruTextTest, Utf8OfCarelessMakersStaysWhole) {
    EXPECT_EQ(TextOf({0xc3, 'G', 0xc3, 0xa9}), "G\xc3\xa9");
}

TEST(FruTextTest, OtherLanguagesAreSixteenBitText) {
    EXPECT_EQ(TextOf({0xc4, 'A', 0x00, 0xac, 0x20}, false), "A\xe2\x82\xac");
}

TEST(FruTextTest, HalfASixteenBitPairIsReplaced) {
    const std::string text = TextOf({0xc4, 0x00, 0xd8, 'A', 0x00}, false);
    EXPECT_EQ(text.back(), 'A');
    EXPECT_EQ(text.substr(0, 3), "\xef\xbf\xbd");
}

TEST(FruTextTest, SixBitTextUnpacksFourCharactersFromThreeBytes) {
    // The example of the FRU standard: "IPMI".
    EXPECT_EQ(TextOf({0x83, 0x29, 0xdc, 0xa6}), "IPMI");
}

TEST(FruTextTest, BcdPlusWritesTwoCharactersAByte) {
    EXPECT_EQ(TextOf({0x43, 0x12, 0xb3, 0x4c}), "12-34.");
}

TEST(FruTextTest, BinaryIsWrittenInHexadecimal) {
    EXPECT_EQ(TextOf({0x03, 0x00, 0xab, 0xff}), "00abff");
}

TEST(FruTextTest, EmptyFieldIsThereAndEmpty) {
    const Bytes field = {0xc0, 0xc2, 'A', 'B'};
    const FruField read = ReadFruField(field, 0, field.size(), true);
    EXPECT_TRUE(read.is_there);
    EXPECT_EQ(read.text, "");
    EXPECT_EQ(read.next, 1U);
}

TEST(FruTextTest, EndMarkIsNoField) {
    EXPECT_FALSE(ReadFruField({0xc1, 'A'}, 0, 2, true).is_there);
}

TEST(FruTextTest, FieldThatReachesPastTheAreaIsNotRead) {
    const Bytes field = {0xc5, 'A', 'B', 'C', 'D', 'E'};
    EXPECT_FALSE(ReadFruField(field, 0, 5, true).is_there);
    EXPECT_TRUE(ReadFruField(field, 0, 6, true).is_there);
}

TEST(FruTextTest, AreaThatReachesPastTheImageIsNotRead) {
    EXPECT_FALSE(ReadFruField({0xc2, 'A', 'B'}, 0, 400, true).is_there);
}

TEST(FruTextTest, ControlBytesBecomeBlanks) {
    EXPECT_EQ(TextOf({0xc3, 'A', 0x1b, 'B'}), "A B");
}

}  // namespace
}  // namespace Vantix::transport
