#include "doubles/platform_double.h"

#include <cstdio>
#include <cstdlib>

namespace doubles {
namespace {

PlatformDouble* installed = nullptr;

}  // namespace

// Constructors and destructors of classes with many mock methods are large: only here.
PlatformDouble::PlatformDouble() {
    if (installed != nullptr) {
        ADD_FAILURE() << "two platform doubles live at the same time";
    }
    installed = this;
    // A call that nobody scripted fails the test and must still return something.
    testing::DefaultValue<TarselResult>::Set(TarselResult(1, "call without a script"));
}

PlatformDouble::~PlatformDouble() {
    installed = nullptr;
}

PlatformDouble& PlatformDouble::Current() {
    if (installed == nullptr) {
        std::fputs("A platform function was called while no platform double lives.\n", stderr);
        std::abort();
    }
    return *installed;
}

RemoteCommandMock::RemoteCommandMock() = default;
RemoteCommandMock::~RemoteCommandMock() = default;

}  // namespace doubles
