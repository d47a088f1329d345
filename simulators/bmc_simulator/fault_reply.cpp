#include "bmc_simulator/fault_reply.h"

#include <algorithm>
#include <boost/crc.hpp>
#include <boost/json.hpp>
#include <cstdint>
#include <utility>

namespace simulators {
namespace {

namespace json = boost::json;

std::string WrongTypes(const std::string& body) {
    boost::system::error_code error;
    json::value value = json::parse(body, error);
    json::object* object = error ? nullptr : value.if_object();
    if (!object) return "[]";
    for (auto& member : *object) {
        if (member.key().starts_with("@")) continue;
        json::value& field = member.value();
        if (field.is_string()) {
            field = json::object{{"unexpected", field}};
        } else if (field.is_number() || field.is_bool()) {
            field = json::serialize(field);
        } else if (field.is_array() && member.key() != "Members") {
            field = 7;
        }
    }
    return json::serialize(value);
}

/// Raw control bytes and an invalid byte behind the first colon and quote, that is inside a text.
std::string WithControlBytes(std::string body) {
    const std::size_t colon = body.find(':');
    const std::size_t quote = colon == std::string::npos ? colon : body.find('"', colon);
    if (quote != std::string::npos) body.insert(quote + 1, "a\rb\x01\xff");
    return body;
}

void AppendLittleEndian(std::string& text, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) text.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

/// RFC 1952 with stored blocks (RFC 1951, 3.2.4): valid gzip without a compressor.
std::string Gzip(const std::string& plain) {
    std::string packed("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\xff", 10);
    std::size_t done = 0;
    do {
        const std::size_t length = std::min<std::size_t>(plain.size() - done, 0xFFFF);
        packed.push_back(done + length == plain.size() ? '\x01' : '\x00');
        AppendLittleEndian(packed, static_cast<std::uint32_t>(length), 2);
        AppendLittleEndian(packed, static_cast<std::uint32_t>(~length), 2);
        packed.append(plain, done, length);
        done += length;
    } while (done < plain.size());
    boost::crc_32_type crc;
    crc.process_bytes(plain.data(), plain.size());
    AppendLittleEndian(packed, crc.checksum(), 4);
    AppendLittleEndian(packed, static_cast<std::uint32_t>(plain.size()), 4);
    return packed;
}

std::string DeepJson(std::size_t levels) {
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) text += "{\"a\":";
    return text + "1" + std::string(levels, '}');
}

/// Faults that make a whole answer of their own; false for those that work on the right one.
bool MakeWholeReply(const Fault& fault, ServiceReply& reply) {
    switch (fault.kind) {
        case Fault::Kind::kStatus:
            reply = ErrorReply(fault.status, fault.message_id);
            return true;
        case Fault::Kind::kBody:
            reply = {fault.status, {}, fault.content_type, fault.body};
            return true;
        case Fault::Kind::kEmptyBody:
            reply = {fault.status, {}, fault.content_type, ""};
            return true;
        case Fault::Kind::kHtml:
            reply = {fault.status,
                     {},
                     "text/html",
                     "<html><body><h1>Simulated login page</h1></body></html>"};
            return true;
        case Fault::Kind::kHugeBody:
            reply.body = "{\"Name\":\"" + std::string(fault.size, 'x') + "\"}";
            return true;
        case Fault::Kind::kDeepJson:
            reply.body = DeepJson(fault.size);
            return true;
        case Fault::Kind::kRedirect:
            reply = {fault.status, {{"Location", fault.location}}, fault.content_type, ""};
            return true;
        default:
            return false;
    }
}

}  // namespace

ServiceReply ApplyFault(const Fault& fault, ServiceReply reply) {
    if (!MakeWholeReply(fault, reply)) {
        switch (fault.kind) {
            case Fault::Kind::kBadJson:
                reply.body.resize(reply.body.size() / 2);
                break;
            case Fault::Kind::kWrongTypes:
                reply.body = WrongTypes(reply.body);
                break;
            case Fault::Kind::kControlBytes:
                reply.body = WithControlBytes(std::move(reply.body));
                break;
            case Fault::Kind::kTwoDocuments:
                reply.body.insert(0, ErrorReply(403, "Base.1.12.LicenseRequired").body + "\n");
                break;
            case Fault::Kind::kGzip:
                reply.body = Gzip(reply.body);
                reply.headers.emplace_back("Content-Encoding", "gzip");
                break;
            default:
                break;
        }
    }
    for (const auto& header : fault.headers) reply.headers.push_back(header);
    if (!fault.retry_after.empty()) reply.headers.emplace_back("Retry-After", fault.retry_after);
    return reply;
}

}  // namespace simulators
