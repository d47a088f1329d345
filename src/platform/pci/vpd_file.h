// A VPD file of a tree, opened for reading in pieces.
#pragma once

#include <string>

#include "platform/pci/vpd_reads.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::pci {

/// Empty when the file cannot be opened (noted in `root` when it is forbidden) or is no regular
/// file. The reader owns the open file and nothing else.
[[nodiscard]] PieceReader OpenVpdFile(const transport::SystemRoot& root, const std::string& path);

}  // namespace Vantix::pci
