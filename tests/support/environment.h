// Variables of this process's environment, set and removed alike on every system.
#pragma once

#include <cstdlib>

namespace test_support {

/// Null removes the variable.
inline void SetVariable(const char* name, const char* value) {
#ifdef _WIN32
    _putenv_s(name, value == nullptr ? "" : value);
#else
    value == nullptr ? unsetenv(name) : setenv(name, value, 1);
#endif
}

}  // namespace test_support
