// Who else may read a file: its access control list.
#pragma once

#include <windows.h>

namespace tarsel {

/// True unless only the file's owner, the administrators and the system itself may read or write
/// it. `file` is open with READ_CONTROL.
bool IsOpenToOthers(HANDLE file);

}  // namespace tarsel
