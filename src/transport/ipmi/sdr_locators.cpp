#include "transport/ipmi/sdr_locators.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "transport/ipmi/fru_text.h"

namespace Vantix::transport {
namespace {

constexpr std::uint8_t kStorageFunction = 0x0a;
constexpr std::uint8_t kReserve = 0x22;
constexpr std::uint8_t kGetRecord = 0x23;
constexpr int kReservationCancelled = 0xc5;
constexpr int kMostReservations = 8;
constexpr int kMostRecords = 1024;
constexpr std::uint16_t kLastRecord = 0xffff;
constexpr std::size_t kSdrHeaderLength = 5;  // id, version, type, length of the rest
constexpr std::size_t kSdrChunk = 16;
constexpr std::uint8_t kFruLocator = 0x11;

using Ask = std::function<RawAnswer(const RawRequest&)>;

std::uint8_t LowByte(std::size_t number) {
    return static_cast<std::uint8_t>(number & 0xffU);
}

/// Some bytes of a record, and which record comes next.
struct Piece {
    std::uint16_t next = kLastRecord;
    Bytes bytes;
};

class Repository {
  public:
    explicit Repository(const Ask& ask) : ask_(ask) {}

    /// A new reservation where the last one was lost, as it is when a record changes.
    std::optional<Piece> Read(std::uint16_t id, std::size_t from, std::size_t count) {
        while (HasReservation()) {
            const RawAnswer answer = ask_(
                {kStorageFunction,
                 kGetRecord,
                 {LowByte(reservation_), LowByte(reservation_ >> 8U), LowByte(id),
                  LowByte(static_cast<std::size_t>(id) >> 8U), LowByte(from), LowByte(count)}});
            if (answer.completion == kReservationCancelled) {
                is_reserved_ = false;
                continue;
            }
            if (!answer.IsOk() || answer.data.size() < 2 + count) return std::nullopt;
            Piece piece;
            piece.next = static_cast<std::uint16_t>(answer.data[0] | answer.data[1] << 8);
            const auto first = answer.data.begin() + 2;
            piece.bytes.assign(first, first + static_cast<std::ptrdiff_t>(count));
            return piece;
        }
        return std::nullopt;
    }

  private:
    bool HasReservation() {
        if (is_reserved_) return true;
        if (++reservations_ > kMostReservations) return false;
        const RawAnswer answer = ask_({kStorageFunction, kReserve, {}});
        if (!answer.IsOk() || answer.data.size() < 2) return false;
        reservation_ = static_cast<std::size_t>(answer.data[0] | answer.data[1] << 8);
        is_reserved_ = true;
        return true;
    }

    const Ask& ask_;
    bool is_reserved_ = false;
    std::size_t reservation_ = 0;
    int reservations_ = 0;
};

Bytes ReadBody(Repository& repository, std::uint16_t id, std::size_t length) {
    Bytes body;
    while (body.size() < length) {
        const std::size_t count = std::min(kSdrChunk, length - body.size());
        const auto piece = repository.Read(id, kSdrHeaderLength + body.size(), count);
        if (!piece) return {};
        body.insert(body.end(), piece->bytes.begin(), piece->bytes.end());
    }
    return body;
}

/// `body` without the record's header.
std::string LocatorText(const Bytes& body) {
    constexpr std::size_t kNameAt = 10;
    if (body.size() <= kNameAt) return {};
    const bool is_logical = (body[2] & 0x80U) != 0;
    if (!is_logical) return {};
    const std::string name = ReadFruField(body, kNameAt, body.size(), true).text;
    return "Device ID              : " + name +
           "\nEntity ID              : " + std::to_string(body[7]) + "." + std::to_string(body[8]) +
           "\nDevice Access Address  : " + HexByte(body[0]) +
           "h\nLogical FRU Device     : " + HexByte(body[1]) + "h\n\n";
}

}  // namespace

std::string ReadFruLocatorText(const Ask& ask) {
    std::string text;
    Repository repository(ask);
    std::uint16_t id = 0;
    for (int record = 0; record < kMostRecords && id != kLastRecord; ++record) {
        const auto header = repository.Read(id, 0, kSdrHeaderLength);
        if (!header) break;
        const std::size_t length = header->bytes[4];
        if (header->bytes[3] == kFruLocator) text += LocatorText(ReadBody(repository, id, length));
        id = header->next;
    }
    return text;
}

}  // namespace Vantix::transport
