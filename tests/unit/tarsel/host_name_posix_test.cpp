#include "tarsel/host_name.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>

namespace tarsel {
namespace {

TEST(HostNameTest, IsTheOneOfTheKernel) {
    utsname names{};
    ASSERT_EQ(uname(&names), 0);
    EXPECT_EQ(HostName(), names.nodename);
}

}  // namespace
}  // namespace tarsel
