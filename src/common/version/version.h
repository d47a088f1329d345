// The version of this library, as its build was configured.
#pragma once

#include "common/export.h"

/// For example "0.1.0".
TARSEL_EXPORT const char* TarselVersion();
