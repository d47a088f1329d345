#include "platform/pci/net_firmware.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vantix::pci::ThisMachinesNetFirmware;

TEST(NetFirmwareTest, InterfaceWithoutFirmwareTellsNothing) {
    EXPECT_EQ(ThisMachinesNetFirmware()("lo"), "");
}

TEST(NetFirmwareTest, NamesThatNoInterfaceHasTellNothing) {
    for (const std::string& name :
         {std::string(), std::string("no-such-if"), std::string(16, 'x'), std::string(4096, 'x')}) {
        EXPECT_EQ(ThisMachinesNetFirmware()(name), "");
    }
}

}  // namespace
