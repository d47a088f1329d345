#include "platform/local/kernel_name.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(KernelNameTest, ArchitectureIsTheOneThatWasCompiledFor) {
    const std::string architecture = Vantix::local::RunningArchitecture();
#if defined(__x86_64__)
    EXPECT_EQ(architecture, "x86_64");
#elif defined(__aarch64__)
    EXPECT_EQ(architecture, "aarch64");
#else
    EXPECT_FALSE(architecture.empty());
#endif
}

}  // namespace
