#include "platform/pci/vpd_file.h"

#include <memory>

#include "transport/sysroot/root_file.h"

namespace Vantix::pci {

PieceReader OpenVpdFile(const transport::SystemRoot& root, const std::string& path) {
    const auto file = std::make_shared<const transport::RootFile>(root, path);
    if (!file->IsOpen()) return {};
    return [file](std::size_t offset, std::size_t size) -> std::optional<std::string> {
        return file->Read(offset, size);
    };
}

}  // namespace Vantix::pci
