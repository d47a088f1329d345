// What the scan asks of the operating system itself: its own place on disk, time and waiting.
#pragma once

#include <cstdint>
#include <string>

#include "common/export.h"

namespace Vantix {

/// The folder of this library's own module file, with its final separator, so that a file name can
/// be appended; empty when the system does not tell. Never the folder of the running program.
std::string GetModuleDirectory();

/// The folder part of `module_file`, up to and including the last separator: backslash or slash on
/// Windows, slash elsewhere (where a backslash is an ordinary letter). Empty without a separator.
std::string DirectoryOfModuleFile(const std::string& module_file);

/// Blocks the calling thread. The one seam of all timed waits.
void SleepMilliseconds(std::uint32_t milliseconds);

/// Seconds of a clock that never goes back; its zero is arbitrary.
std::int64_t MonotonicSeconds();

/// Makes sure that a file of that name exists and that only its owner can read and write it; what
/// it holds stays. False when it can be neither made nor opened for writing. The mode of a file
/// that belongs to somebody else, or of a device, is left alone.
bool MakePrivateFile(const std::string& path);

/// Makes `path` a new file of this user that holds `text`, with the usual mode, in place of
/// whatever file had that name: a link that stood there is replaced, never followed, so that nobody
/// else can choose the file that is written in a folder for everybody. False on failure; what was
/// there then stays.
bool ReplaceFile(const std::string& path, const std::string& text);

}  // namespace Vantix
