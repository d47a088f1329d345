// A disk as arcconf tells of it, as the record of this family. Private to this family.
#pragma once

#include "platform/raid/raid.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::raid {

[[nodiscard]] ARCCONF::RaidDisk ToRaidDisk(const transport::ArcconfDisk& disk);

}  // namespace Vantix::raid
