// What a Linux kernel module says of itself: its ".modinfo" section, in an ELF file of 64 bits.
//
// Pure: reads through a function, a few small pieces and never the whole file. Compressed files and
// other kinds give nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace Vantix::transport {

/// The bytes from an offset on: so many, or fewer at the end of the file.
using ByteSource = std::function<std::string(std::uint64_t offset, std::size_t size)>;

/// The module's first "description", clean; empty when it has none or is no such file.
[[nodiscard]] std::string ReadModuleDescription(const ByteSource& read);

}  // namespace Vantix::transport
