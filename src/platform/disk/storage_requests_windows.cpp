#include "platform/disk/storage_requests.h"

#include <windows.h>

#include <ntddscsi.h>
#include <winioctl.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/disk/storage_queries.h"
#include "platform/os/wide_text_windows.h"

namespace Vantix::disk {
namespace {

using State = DeviceAnswer::State;

class Disk {
  public:
    Disk(int number, DWORD access)
        : handle_(CreateFileW((L"\\\\.\\PhysicalDrive" + std::to_wstring(number)).c_str(), access,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                              nullptr)) {}
    ~Disk() {
        if (IsOpen()) CloseHandle(handle_);
    }
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

    /// The bytes that came back, in `output`; false when the request failed.
    [[nodiscard]] bool Control(DWORD code, std::string input, std::string& output) const {
        DWORD returned = 0;
        const BOOL is_done =
            DeviceIoControl(handle_, code, input.data(), static_cast<DWORD>(input.size()),
                            output.data(), static_cast<DWORD>(output.size()), &returned, nullptr);
        if (is_done == 0 || returned > output.size()) return false;
        output.resize(returned);
        return true;
    }

  private:
    HANDLE handle_;
};

DeviceAnswer Failure() {
    const DWORD error = GetLastError();
    const bool is_denied = error == ERROR_ACCESS_DENIED;
    return {
        is_denied ? State::kDenied : State::kFailed, {}, "Windows error " + std::to_string(error)};
}

DeviceAnswer Ask(const Disk& disk, const std::string& query, std::size_t most_bytes) {
    if (!disk.IsOpen()) return Failure();
    std::string output(most_bytes, '\0');
    if (!disk.Control(IOCTL_STORAGE_QUERY_PROPERTY, query, output)) return Failure();
    return {State::kRead, std::move(output), {}};
}

/// INQUIRY for a page, with room for the sense data and the page behind it.
struct PageRequest {
    SCSI_PASS_THROUGH command;
    UCHAR sense[32];
};

PageRequest RequestFor(std::uint8_t page, std::size_t most_bytes) {
    constexpr ULONG kTimeLimitSeconds = 10;
    PageRequest request = {};
    SCSI_PASS_THROUGH& command = request.command;
    command.Length = sizeof(command);
    command.CdbLength = 6;
    command.SenseInfoLength = sizeof(request.sense);
    command.SenseInfoOffset = offsetof(PageRequest, sense);
    command.DataIn = SCSI_IOCTL_DATA_IN;
    command.DataTransferLength = static_cast<ULONG>(most_bytes);
    command.DataBufferOffset = sizeof(request);
    command.TimeOutValue = kTimeLimitSeconds;
    command.Cdb[0] = 0x12;
    command.Cdb[1] = 1;
    command.Cdb[2] = page;
    command.Cdb[3] = static_cast<UCHAR>(most_bytes >> 8U & 0xffU);
    command.Cdb[4] = static_cast<UCHAR>(most_bytes & 0xffU);
    return request;
}

class DriverRequests : public StorageRequests {
  public:
    [[nodiscard]] std::vector<int> Disks() const override {
        std::wstring names(65536, L'\0');
        DWORD length = 0;
        while ((length = QueryDosDeviceW(nullptr, names.data(),
                                         static_cast<DWORD>(names.size()))) == 0 &&
               GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
            names.resize(2 * names.size());
        }
        names.resize(length);
        std::vector<int> disks;
        for (std::size_t at = 0; at < names.size();) {
            const std::size_t end = std::min(names.find(L'\0', at), names.size());
            const auto number = DiskNumberOf(Utf8Of(names.substr(at, end - at)));
            if (number) disks.push_back(*number);
            at = end + 1;
        }
        return disks;
    }

    [[nodiscard]] DeviceAnswer Query(int number, const std::string& query,
                                     std::size_t most_bytes) const override {
        DeviceAnswer answer;
        // The rights to read and write are not needed by what is asked here, but some drivers
        // want them.
        for (const DWORD access : {DWORD{0}, DWORD{GENERIC_READ | GENERIC_WRITE}}) {
            answer = Ask(Disk(number, access), query, most_bytes);
            if (answer.state != State::kDenied) break;
        }
        return answer;
    }

    [[nodiscard]] DeviceAnswer ReadPage(int number, std::uint8_t page,
                                        std::size_t most_bytes) const override {
        const Disk disk(number, GENERIC_READ | GENERIC_WRITE);
        if (!disk.IsOpen()) return Failure();
        PageRequest request = RequestFor(page, most_bytes);
        std::string buffer(sizeof(request) + most_bytes, '\0');
        std::memcpy(buffer.data(), &request, sizeof(request));
        std::string output = buffer;
        if (!disk.Control(IOCTL_SCSI_PASS_THROUGH, buffer, output)) return Failure();
        if (output.size() < sizeof(request)) return {State::kFailed, {}, "the answer is cut"};
        std::memcpy(&request, output.data(), sizeof(request));
        const UCHAR status = request.command.ScsiStatus;
        if (status != 0) return {State::kFailed, {}, "SCSI status " + std::to_string(status)};
        output.erase(0, sizeof(request));
        output.resize(std::min<std::size_t>(output.size(), request.command.DataTransferLength));
        return {State::kRead, std::move(output), {}};
    }
};

}  // namespace

const StorageRequests* SystemStorage() {
    static const DriverRequests requests;
    return &requests;
}

}  // namespace Vantix::disk
