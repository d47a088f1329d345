#include "platform/raid/raid_disk.h"

namespace Vantix::raid {
namespace {

// "ATA" names the translation to SCSI (T10, SAT), not a maker; many models begin with the maker.
std::string DescriptiveName(const transport::ArcconfDisk& disk) {
    const bool is_maker = !disk.vendor.empty() && disk.vendor != "ATA";
    if (!is_maker || disk.model.rfind(disk.vendor, 0) == 0) return disk.model;
    return disk.vendor + " " + disk.model;
}

}  // namespace

ARCCONF::RaidDisk ToRaidDisk(const transport::ArcconfDisk& disk) {
    ARCCONF::RaidDisk record;
    record.Name = DescriptiveName(disk);
    record.FirmwareVersion = disk.firmware_version;
    record.Identifier = disk.part_number.empty() ? disk.model : disk.part_number;
    record.Slot = disk.bay;
    record.SerialNumber = disk.serial_number;
    return record;
}

}  // namespace Vantix::raid
