#include "transport/ssh/sftp_codec.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

using namespace std::string_literals;

// A packet around a type and its fields.
std::string Packet(const std::string& body) {
    return "\0\0\0"s + static_cast<char>(body.size()) + body;
}

SftpReply Take(std::string bytes) {
    SftpReply reply;
    EXPECT_EQ(TakeSftpReply(bytes, reply), SftpTake::kReply);
    EXPECT_EQ(bytes, "");
    return reply;
}

SftpTake Judge(std::string bytes) {
    SftpReply reply;
    return TakeSftpReply(bytes, reply);
}

TEST(SftpCodecTest, GreetingNamesVersionThree) {
    EXPECT_EQ(SftpInit(), "\0\0\0\x05\x01\0\0\0\x03"s);
}

TEST(SftpCodecTest, OpenForReadingCarriesNoMode) {
    EXPECT_EQ(SftpOpen(7, "/x", kSftpRead, std::nullopt),
              "\0\0\0\x13\x03\0\0\0\x07\0\0\0\x02/x\0\0\0\x01\0\0\0\0"s);
}

TEST(SftpCodecTest, OpenForWritingCarriesFlagsAndMode) {
    EXPECT_EQ(SftpOpen(7, "/x", kSftpWriteNew, 0700),
              "\0\0\0\x17\x03\0\0\0\x07\0\0\0\x02/x\0\0\0\x1a\0\0\0\x04\0\0\x01\xc0"s);
}

TEST(SftpCodecTest, ReadAndWriteCarryOffsetsBeyondFourGigabytes) {
    EXPECT_EQ(SftpReadAt(1, "h", 0x100000002ULL, 3),
              "\0\0\0\x16\x05\0\0\0\x01\0\0\0\x01h\0\0\0\x01\0\0\0\x02\0\0\0\x03"s);
    EXPECT_EQ(SftpWriteAt(1, "h", 0x100000002ULL, "ab"),
              "\0\0\0\x18\x06\0\0\0\x01\0\0\0\x01h\0\0\0\x01\0\0\0\x02\0\0\0\x02"
              "ab"s);
}

TEST(SftpCodecTest, OtherRequestsCarryTheirHandle) {
    EXPECT_EQ(SftpClose(2, "h"), "\0\0\0\x0a\x04\0\0\0\x02\0\0\0\x01h"s);
    EXPECT_EQ(SftpStat(2, "h"), "\0\0\0\x0a\x08\0\0\0\x02\0\0\0\x01h"s);
    EXPECT_EQ(SftpSetMode(2, "h", 0600),
              "\0\0\0\x12\x0a\0\0\0\x02\0\0\0\x01h\0\0\0\x04\0\0\x01\x80"s);
}

TEST(SftpCodecTest, VersionIsRead) {
    const SftpReply reply = Take(Packet("\x02\0\0\0\x03"s + "\0\0\0\x01x\0\0\0\x01y"s));
    EXPECT_EQ(reply.kind, SftpReplyKind::kVersion);
    EXPECT_EQ(reply.id, 3U);
}

TEST(SftpCodecTest, StatusIsReadWithItsWords) {
    const SftpReply reply =
        Take(Packet("\x65\0\0\0\x09\0\0\0\x02\0\0\0\x04gone\0\0\0\x02"
                    "en"s));
    EXPECT_EQ(reply.kind, SftpReplyKind::kStatus);
    EXPECT_EQ(reply.id, 9U);
    EXPECT_EQ(reply.status, kSftpNoSuchFile);
    EXPECT_EQ(reply.text, "gone");
}

TEST(SftpCodecTest, StatusOfAnOldServerHasNoWords) {
    const SftpReply reply = Take(Packet("\x65\0\0\0\x09\0\0\0\x01"s));
    EXPECT_EQ(reply.status, kSftpEof);
    EXPECT_EQ(reply.text, "");
}

TEST(SftpCodecTest, HandleAndDataAreBytes) {
    EXPECT_EQ(Take(Packet("\x66\0\0\0\x01\0\0\0\x03\0\xff\n"s)).text, "\0\xff\n"s);
    const SftpReply data = Take(Packet("\x67\0\0\0\x01\0\0\0\x02\0\x01"s));
    EXPECT_EQ(data.kind, SftpReplyKind::kData);
    EXPECT_EQ(data.text, "\0\x01"s);
}

TEST(SftpCodecTest, SizeIsReadWhereItIsTold) {
    EXPECT_EQ(Take(Packet("\x69\0\0\0\x01\0\0\0\x01\0\0\0\x01\0\0\0\x02"s)).size, 0x100000002ULL);
    EXPECT_FALSE(Take(Packet("\x69\0\0\0\x01\0\0\0\0"s)).size.has_value());
}

TEST(SftpCodecTest, UnknownPacketIsOne) {
    EXPECT_EQ(Take(Packet("\xc8\0\0\0\x01"s)).kind, SftpReplyKind::kOther);
}

TEST(SftpCodecTest, PacketsAreTakenOneByOne) {
    std::string bytes =
        Packet("\x65\0\0\0\x01\0\0\0\0"s) + Packet("\x65\0\0\0\x02\0\0\0\0"s) + "\0"s;
    SftpReply reply;
    ASSERT_EQ(TakeSftpReply(bytes, reply), SftpTake::kReply);
    EXPECT_EQ(reply.id, 1U);
    ASSERT_EQ(TakeSftpReply(bytes, reply), SftpTake::kReply);
    EXPECT_EQ(reply.id, 2U);
    EXPECT_EQ(TakeSftpReply(bytes, reply), SftpTake::kMore);
    EXPECT_EQ(bytes, "\0"s);
}

TEST(SftpCodecTest, EveryBeginningOfAPacketWaitsForMore) {
    const std::string whole = Packet(
        "\x66\0\0\0\x01\0\0\0\x03"
        "abc"s);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(Judge(whole.substr(0, length)), SftpTake::kMore) << length;
    }
}

TEST(SftpCodecTest, ImpossibleLengthsAreBroken) {
    EXPECT_EQ(Judge("\0\0\0\0"s), SftpTake::kBroken);
    EXPECT_EQ(Judge("\xff\xff\xff\xff"s), SftpTake::kBroken);
    EXPECT_EQ(Judge("welcome to this server"), SftpTake::kBroken);
}

TEST(SftpCodecTest, FieldsBeyondThePacketAreBroken) {
    EXPECT_EQ(Judge(Packet("\x66\0\0\0\x01\0\0\0\x09"
                           "abc"s)),
              SftpTake::kBroken);
    EXPECT_EQ(Judge(Packet("\x66\0\0"s)), SftpTake::kBroken);
    EXPECT_EQ(Judge(Packet("\x69\0\0\0\x01\0\0\0\x01\0\0"s)), SftpTake::kBroken);
}

}  // namespace
}  // namespace Vantix::transport
