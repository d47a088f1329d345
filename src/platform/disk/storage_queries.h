// The property queries of Windows' storage drivers and their answers
// (IOCTL_STORAGE_QUERY_PROPERTY). Pure: bytes in, values out.
//
// The layouts are those of Windows on 64-bit little-endian processors, written down here as
// offsets, so that recorded answers are read on every system. Deliberately not here: what counts as
// a disk of this machine (storage_survey.h).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::disk {

/// How a disk is reached (STORAGE_BUS_TYPE); values that have no name here occur too.
enum class StorageBus {
    kUnknown = 0x00,
    kAtapi = 0x02,
    kAta = 0x03,
    kFireWire = 0x04,
    kFibreChannel = 0x06,
    kUsb = 0x07,
    kIscsi = 0x09,
    kSata = 0x0b,
    kSd = 0x0c,
    kMmc = 0x0d,
    kVirtual = 0x0e,
    kFileBackedVirtual = 0x0f,
    kSpaces = 0x10,
    kNvme = 0x11,
    kPersistentMemory = 0x12,
    kNvmeOverFabrics = 0x14
};

/// 12 for "PhysicalDrive12"; nothing for every other name of a device.
[[nodiscard]] std::optional<int> DiskNumberOf(std::string_view device_name);

/// STORAGE_PROPERTY_QUERY for StorageDeviceProperty, StorageAdapterProperty and
/// StorageDeviceIdProperty.
[[nodiscard]] std::string DeviceQuery();
[[nodiscard]] std::string AdapterQuery();
[[nodiscard]] std::string NamesQuery();
/// The same for StorageAdapterProtocolSpecificProperty: Identify Controller of an NVMe disk. As
/// long as its answer.
[[nodiscard]] std::string IdentifyQuery();

/// STORAGE_DEVICE_DESCRIPTOR; texts are clean and empty where they are missing or reach past the
/// end.
struct StorageDevice {
    int device_type = 0;  ///< as in INQUIRY data
    StorageBus bus = StorageBus::kUnknown;
    std::string vendor, model, revision, serial;
};
/// Nothing when the answer ends before its fixed part does.
[[nodiscard]] std::optional<StorageDevice> ReadStorageDevice(std::string_view answer);

/// The bus of STORAGE_ADAPTER_DESCRIPTOR; unknown when the answer is cut.
[[nodiscard]] StorageBus ReadAdapterBus(std::string_view answer);

/// STORAGE_DEVICE_ID_DESCRIPTOR: the first digit of each NAA name of the unit, as in UnitNames.
/// What is cut off at the end is left out.
[[nodiscard]] std::vector<int> ReadNaaFormats(std::string_view answer);

/// The Identify data in STORAGE_PROTOCOL_DATA_DESCRIPTOR (see nvme_identity.h); empty when they
/// lie, by what it says of them, outside the answer.
[[nodiscard]] std::string_view ReadIdentifyData(std::string_view answer);

}  // namespace Vantix::disk
