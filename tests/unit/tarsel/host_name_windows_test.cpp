#include <gtest/gtest.h>
#include <winsock2.h>

#include <array>

#include "tarsel/host_name.h"

namespace tarsel {
namespace {

// The name of the sockets: another call of the system for the same thing.
TEST(HostNameTest, IsTheOneOfTheNetwork) {
    WSADATA data{};
    ASSERT_EQ(WSAStartup(MAKEWORD(2, 2), &data), 0);
    std::array<char, 256> name{};
    ASSERT_EQ(gethostname(name.data(), static_cast<int>(name.size())), 0);
    WSACleanup();
    EXPECT_EQ(HostName(), name.data());
}

}  // namespace
}  // namespace tarsel
