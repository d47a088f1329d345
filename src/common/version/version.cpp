#include "common/version/version.h"

const char* TarselVersion() {
    return TARSEL_VERSION_TEXT;
}
