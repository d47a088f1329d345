// The memory module that the tests' machines tell of in their SMBIOS.
#pragma once

#include "support/smbios_builder.h"

namespace Vantix::pmem {

inline test_support::AnSmbiosStructure MemoryDevice(int handle) {
    test_support::AnSmbiosStructure device(17, 0x54);
    return device.Word(2, handle)
        .Text(0x10, "DIMM 4")
        .Text(0x17, "Example Maker")
        .Text(0x18, "MSER0001")
        .Text(0x1a, "EXPM128G")
        .Text(0x2b, "01.02.00.5355");
}

}  // namespace Vantix::pmem
