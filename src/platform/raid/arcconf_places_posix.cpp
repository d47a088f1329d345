#include "platform/raid/arcconf_places.h"

namespace Vantix::raid {

std::vector<std::string> ArcconfPlaces() {
    return {"arcconf", "/usr/Arcconf/arcconf"};
}

}  // namespace Vantix::raid
