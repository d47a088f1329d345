// Packets of the SSH file transfer protocol, version 3 (draft-ietf-secsh-filexfer-02). Pure.
//
// Only what reading and writing one file takes. libssh's own functions for it wait without a limit
// for the rest of a packet and are therefore not used.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Vantix::transport {

/// SSH_FX_ codes of a status reply.
enum SftpStatus : std::uint32_t {
    kSftpOk = 0,
    kSftpEof = 1,
    kSftpNoSuchFile = 2,
};

/// SSH_FXF_ flags of an open request.
enum SftpOpenFlags : std::uint32_t {
    kSftpRead = 1,
    kSftpWriteNew = 2 | 8 | 16,  ///< write, create, truncate
};

[[nodiscard]] std::string SftpInit();
/// `mode`: permissions of a file that is made; absent for reading.
[[nodiscard]] std::string SftpOpen(std::uint32_t id, const std::string& path, std::uint32_t flags,
                                   std::optional<std::uint32_t> mode);
[[nodiscard]] std::string SftpClose(std::uint32_t id, const std::string& handle);
[[nodiscard]] std::string SftpReadAt(std::uint32_t id, const std::string& handle,
                                     std::uint64_t offset, std::uint32_t length);
[[nodiscard]] std::string SftpWriteAt(std::uint32_t id, const std::string& handle,
                                      std::uint64_t offset, std::string_view bytes);
[[nodiscard]] std::string SftpStat(std::uint32_t id, const std::string& handle);
[[nodiscard]] std::string SftpSetMode(std::uint32_t id, const std::string& handle,
                                      std::uint32_t mode);

enum class SftpReplyKind { kVersion, kStatus, kHandle, kData, kAttributes, kOther };

struct SftpReply {
    SftpReplyKind kind = SftpReplyKind::kOther;
    std::uint32_t id = 0;  ///< of the request; the number of the version for kVersion
    std::uint32_t status = kSftpOk;
    std::string text;                   ///< handle, data, or the words of a status
    std::optional<std::uint64_t> size;  ///< of attributes
};

enum class SftpTake {
    kReply,
    kMore,   ///< the packet is not complete yet
    kBroken  ///< what comes there is not this protocol
};

/// Takes the first packet off the front of `bytes`.
[[nodiscard]] SftpTake TakeSftpReply(std::string& bytes, SftpReply& reply);

}  // namespace Vantix::transport
