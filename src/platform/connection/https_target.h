// Where an HTTPS service of a target is: port and text.
#pragma once

#include <string>

#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {

/// The port to use: the given one, else 443.
int HttpsPortOf(const ConnectOption& option);

/// Host and port as they stand in a URL and in messages, for example "[::1]:443".
std::string HttpsTargetOf(const ConnectOption& option);

}  // namespace Vantix::VantixConnection
