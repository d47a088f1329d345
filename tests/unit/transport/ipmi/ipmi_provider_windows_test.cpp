// The real provider. An emulated Windows, as any machine without a BMC, has none: what is expected
// here is a clear cause and a thread that can go on.
#include "transport/ipmi/ipmi_provider_windows.h"

#include <gtest/gtest.h>

#include "transport/ipmi/device_id.h"

namespace Vantix::transport {
namespace {

TEST(IpmiProviderWindowsTest, ThereIsADriverOrACause) {
    for (int time = 0; time < 2; ++time) {
        std::string cause;
        const auto provider = OpenIpmiProvider(cause);
        EXPECT_EQ(provider == nullptr, !cause.empty()) << cause;
        if (provider == nullptr) continue;
        const RawAnswer answer = provider->Send(GetDeviceIdRequest(), [] { return false; });
        EXPECT_TRUE(ParseDeviceId(answer)) << answer.completion;
    }
}

}  // namespace
}  // namespace Vantix::transport
