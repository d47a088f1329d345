// Where records go: a rotated file and, when wanted, the standard error output.
//
// Nothing of this is set up before ConfigureLog (log_settings.h), so that a program that never logs
// pays for it with one comparison a record.
#pragma once

#include <string>

namespace Vantix {

/// True when some output takes records of that level. Cheap.
bool IsLogLevelWanted(int level) noexcept;

/// Masks, formats, writes and flushes one record; never throws.
void WriteLogRecord(int level, const char* source, int line, const std::string& text) noexcept;

}  // namespace Vantix
