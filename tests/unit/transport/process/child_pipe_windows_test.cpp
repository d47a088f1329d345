#include "transport/process/child_pipe_windows.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

void Write(const ChildPipe& pipe, const std::string& text) {
    DWORD written = 0;
    ASSERT_NE(
        WriteFile(pipe.WriteEnd(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr),
        0);
}

TEST(ChildPipeTest, NothingWrittenIsNotWaitedFor) {
    ChildPipe pipe;
    ASSERT_TRUE(pipe.Open());
    EXPECT_FALSE(pipe.Drain(100));
    EXPECT_FALSE(pipe.IsAtEnd());
}

TEST(ChildPipeTest, WhatIsThereIsTaken) {
    ChildPipe pipe;
    ASSERT_TRUE(pipe.Open());
    Write(pipe, "one");
    EXPECT_TRUE(pipe.Drain(100));
    Write(pipe, "two");
    EXPECT_TRUE(pipe.Drain(100));
    EXPECT_EQ(pipe.Text(), "onetwo");
    EXPECT_FALSE(pipe.IsCut());
}

TEST(ChildPipeTest, BytesBeyondTheLimitAreDroppedAndTold) {
    ChildPipe pipe;
    ASSERT_TRUE(pipe.Open());
    Write(pipe, "12345");
    EXPECT_TRUE(pipe.Drain(4));
    Write(pipe, "6");
    EXPECT_TRUE(pipe.Drain(4));
    EXPECT_EQ(pipe.Text(), "1234");
    EXPECT_TRUE(pipe.IsCut());
}

TEST(ChildPipeTest, LimitReachedExactlyIsNoCut) {
    ChildPipe pipe;
    ASSERT_TRUE(pipe.Open());
    Write(pipe, "1234");
    EXPECT_TRUE(pipe.Drain(4));
    EXPECT_FALSE(pipe.IsCut());
}

TEST(ChildPipeTest, EndComesAfterTheLastByte) {
    ChildPipe pipe;
    ASSERT_TRUE(pipe.Open());
    Write(pipe, "last");
    pipe.CloseWriteEnd();
    EXPECT_TRUE(pipe.Drain(100));
    EXPECT_FALSE(pipe.Drain(100));
    EXPECT_TRUE(pipe.IsAtEnd());
    EXPECT_EQ(pipe.Text(), "last");
}

}  // namespace
}  // namespace Vantix::transport
