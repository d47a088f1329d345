#include "transport/ssh/sftp_codec.h"

#include <cstddef>

namespace Vantix::transport {
namespace {

constexpr std::uint32_t kVersion = 3;
// Servers answer with up to 256 KiB; the packets asked for here are far smaller.
constexpr std::size_t kLongestPacket = 256 * 1024;

enum Type : unsigned char {
    kInitType = 1,
    kVersionType = 2,
    kOpenType = 3,
    kCloseType = 4,
    kReadType = 5,
    kWriteType = 6,
    kStatType = 8,
    kSetStatType = 10,
    kStatusType = 101,
    kHandleType = 102,
    kDataType = 103,
    kAttributesType = 105,
};

constexpr std::uint32_t kHasSize = 1;
constexpr std::uint32_t kHasPermissions = 4;

class Packet {
  public:
    explicit Packet(Type type) { bytes_ += static_cast<char>(type); }
    Packet& Number(std::uint32_t value) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes_ += static_cast<char>((value >> static_cast<unsigned>(shift)) & 0xFFU);
        }
        return *this;
    }
    Packet& Long(std::uint64_t value) {
        return Number(static_cast<std::uint32_t>(value >> 32U))
            .Number(static_cast<std::uint32_t>(value & 0xFFFFFFFFU));
    }
    Packet& Text(std::string_view text) {
        Number(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
        return *this;
    }
    /// With its length in front.
    [[nodiscard]] std::string Whole() const {
        Packet length(kInitType);
        length.bytes_.clear();
        length.Number(static_cast<std::uint32_t>(bytes_.size()));
        return length.bytes_ + bytes_;
    }

  private:
    std::string bytes_;
};

// Reads fields off the front; once something is missing, everything is.
class Fields {
  public:
    explicit Fields(std::string_view bytes) : rest_(bytes) {}

    std::uint32_t Number() {
        std::uint32_t value = 0;
        for (const char byte : Take(4)) value = (value << 8U) | static_cast<unsigned char>(byte);
        return value;
    }
    std::uint64_t Long() {
        const std::uint64_t high = Number();
        return (high << 32U) | Number();
    }
    std::string Text() { return std::string(Take(Number())); }
    unsigned char Byte() {
        const std::string_view byte = Take(1);
        return byte.empty() ? 0 : static_cast<unsigned char>(byte.front());
    }
    [[nodiscard]] bool IsGood() const { return is_good_; }

  private:
    std::string_view Take(std::size_t count) {
        if (count > rest_.size()) {
            is_good_ = false;
            rest_ = {};
            return {};
        }
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

    std::string_view rest_;
    bool is_good_ = true;
};

void ReadBody(Fields& fields, unsigned char type, SftpReply& reply) {
    reply.id = fields.Number();
    if (type == kVersionType) {
        reply.kind = SftpReplyKind::kVersion;
    } else if (type == kStatusType) {
        reply.kind = SftpReplyKind::kStatus;
        reply.status = fields.Number();
    } else if (type == kHandleType || type == kDataType) {
        reply.kind = type == kHandleType ? SftpReplyKind::kHandle : SftpReplyKind::kData;
        reply.text = fields.Text();
    } else if (type == kAttributesType) {
        reply.kind = SftpReplyKind::kAttributes;
        if ((fields.Number() & kHasSize) != 0) reply.size = fields.Long();
    }
}

}  // namespace

std::string SftpInit() {
    return Packet(kInitType).Number(kVersion).Whole();
}

std::string SftpOpen(std::uint32_t id, const std::string& path, std::uint32_t flags,
                     std::optional<std::uint32_t> mode) {
    Packet packet(kOpenType);
    packet.Number(id).Text(path).Number(flags).Number(mode ? kHasPermissions : 0);
    if (mode) packet.Number(*mode);
    return packet.Whole();
}

std::string SftpClose(std::uint32_t id, const std::string& handle) {
    return Packet(kCloseType).Number(id).Text(handle).Whole();
}

std::string SftpReadAt(std::uint32_t id, const std::string& handle, std::uint64_t offset,
                       std::uint32_t length) {
    return Packet(kReadType).Number(id).Text(handle).Long(offset).Number(length).Whole();
}

std::string SftpWriteAt(std::uint32_t id, const std::string& handle, std::uint64_t offset,
                        std::string_view bytes) {
    return Packet(kWriteType).Number(id).Text(handle).Long(offset).Text(bytes).Whole();
}

std::string SftpStat(std::uint32_t id, const std::string& handle) {
    return Packet(kStatType).Number(id).Text(handle).Whole();
}

std::string SftpSetMode(std::uint32_t id, const std::string& handle, std::uint32_t mode) {
    return Packet(kSetStatType)
        .Number(id)
        .Text(handle)
        .Number(kHasPermissions)
        .Number(mode)
        .Whole();
}

SftpTake TakeSftpReply(std::string& bytes, SftpReply& reply) {
    constexpr std::size_t kLengthSize = 4;
    if (bytes.size() < kLengthSize) return SftpTake::kMore;
    const std::size_t length = Fields(bytes).Number();
    if (length == 0 || length > kLongestPacket) return SftpTake::kBroken;
    if (bytes.size() - kLengthSize < length) return SftpTake::kMore;
    Fields fields(std::string_view(bytes).substr(kLengthSize, length));
    reply = {};
    ReadBody(fields, fields.Byte(), reply);
    // Old servers leave out the words of a status, so they are read last and may be missing.
    const bool is_good = fields.IsGood();
    if (reply.kind == SftpReplyKind::kStatus) reply.text = fields.Text();
    bytes.erase(0, kLengthSize + length);
    return is_good ? SftpTake::kReply : SftpTake::kBroken;
}

}  // namespace Vantix::transport
