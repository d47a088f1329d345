#include "transport/ssh/known_hosts.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>

namespace Vantix::transport {
namespace {

constexpr std::string_view kRevokedMark = "@revoked";
constexpr int kStandardPort = 22;

struct EntryEnd {
    void operator()(ssh_knownhosts_entry* entry) const { ssh_knownhosts_entry_free(entry); }
};
using Entry = std::unique_ptr<ssh_knownhosts_entry, EntryEnd>;

// Null when the line is not about this server.
Entry ParseLine(const std::string& name, const std::string& line) {
    ssh_knownhosts_entry* entry = nullptr;
    if (ssh_known_hosts_parse_line(name.c_str(), line.c_str(), &entry) != SSH_OK) return nullptr;
    return Entry(entry);
}

bool IsSame(const Entry& entry, ssh_key key) {
    return ssh_key_cmp(entry->publickey, key, SSH_KEY_CMP_PUBLIC) == 0;
}

bool IsRevoked(const std::string& name, const std::string& line, ssh_key key) {
    const Entry entry = ParseLine(name, line.substr(kRevokedMark.size()));
    return entry && IsSame(entry, key);
}

// A line about a key of the same type tells more than one about another type.
void Note(KnownHostFinding& finding, const Entry& entry, ssh_key key, int line) {
    const bool is_same_type = ssh_key_type(entry->publickey) == ssh_key_type(key);
    const auto state = is_same_type ? KnownHost::kChanged : KnownHost::kOtherType;
    const bool is_first = finding.state == KnownHost::kUnknown;
    if (is_first || (is_same_type && finding.state == KnownHost::kOtherType)) {
        finding = {state, line, KeyFingerprint(entry->publickey)};
    }
}

}  // namespace

std::string KeyFingerprint(ssh_key key) {
    unsigned char* hash = nullptr;
    std::size_t length = 0;
    if (ssh_get_publickey_hash(key, SSH_PUBLICKEY_HASH_SHA256, &hash, &length) != 0) return "";
    char* text = ssh_get_fingerprint_hash(SSH_PUBLICKEY_HASH_SHA256, hash, length);
    ssh_clean_pubkey_hash(&hash);
    std::string fingerprint = text == nullptr ? "" : text;
    ssh_string_free_char(text);
    return fingerprint;
}

std::string KnownHostName(const std::string& host, int port) {
    std::string name = host;
    std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return port == kStandardPort ? name : "[" + name + "]:" + std::to_string(port);
}

KnownHostFinding FindKnownHost(std::istream& file, const std::string& name, ssh_key key) {
    KnownHostFinding finding;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.rfind(kRevokedMark, 0) == 0) {
            if (!IsRevoked(name, line, key)) continue;
            return {KnownHost::kRevoked, number, KeyFingerprint(key)};
        }
        const Entry entry = ParseLine(name, line);
        if (!entry || finding.state == KnownHost::kSame) continue;
        if (IsSame(entry, key)) {
            finding = {KnownHost::kSame, number, KeyFingerprint(key)};
        } else {
            Note(finding, entry, key, number);
        }
    }
    return finding;
}

}  // namespace Vantix::transport
