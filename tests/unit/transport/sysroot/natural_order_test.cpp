#include <gtest/gtest.h>

#include "transport/sysroot/system_root.h"

namespace {

using Vantix::transport::NaturalLess;

TEST(NaturalLessTest, NumbersInNamesCompareAsNumbers) {
    EXPECT_TRUE(NaturalLess("nvme2", "nvme10"));
    EXPECT_FALSE(NaturalLess("nvme10", "nvme2"));
    EXPECT_TRUE(NaturalLess("nvme2n1", "nvme2n2"));
}

TEST(NaturalLessTest, EqualNumbersFallBackToTheText) {
    EXPECT_TRUE(NaturalLess("a01", "a1"));
    EXPECT_FALSE(NaturalLess("a1", "a01"));
    EXPECT_FALSE(NaturalLess("a1", "a1"));
}

TEST(NaturalLessTest, ShorterNamesComeFirst) {
    EXPECT_TRUE(NaturalLess("", "a"));
    EXPECT_TRUE(NaturalLess("sda", "sdaa"));
    EXPECT_FALSE(NaturalLess("sdb", "sda"));
}

}  // namespace
