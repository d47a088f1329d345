// The usual lines of a conversation with a Redfish service, for scripts of ConversationTransport.
#pragma once

#include <string>
#include <vector>

#include "support/conversation_transport.h"

namespace Vantix::transport {

inline constexpr const char* kAskRoot = "GET /redfish/v1/";
inline constexpr const char* kLogIn = "POST /redfish/v1/SessionService/Sessions";
inline constexpr const char* kLogOut = "DELETE /redfish/v1/SessionService/Sessions/1";

/// A session was made; kLogOut deletes the first.
inline ScriptedReply SessionMade(const std::string& token = "token-1",
                                 const std::string& id = "1") {
    return Json(R"({"Id":")" + id + R"("})", 201)
        .With("x-auth-token", token)
        .With("location", "/redfish/v1/SessionService/Sessions/" + id);
}

/// An error document (DSP0266) with one message.
inline ScriptedReply Refusal(int status, const std::string& message_id = "Base.1.12.GeneralError",
                             const std::string& words = "refused") {
    return Json(R"({"error":{"code":"Base.1.12.GeneralError","@Message.ExtendedInfo":[)"
                R"({"MessageId":")" +
                    message_id + R"(","Message":")" + words + R"("}]}})",
                status);
}

/// `{"@odata.id":"<path>"}`
inline std::string LinkTo(const std::string& path) {
    return R"({"@odata.id":")" + path + R"("})";
}

/// A collection whose members are links to `paths`; `more` are further members of the object, each
/// with a leading comma.
inline std::string CollectionOf(const std::vector<std::string>& paths,
                                const std::string& more = {}) {
    std::string list;
    for (const auto& path : paths) list += (list.empty() ? "" : ",") + LinkTo(path);
    return R"({"Name":"Collection","Members":[)" + list + "]" + more + "}";
}

}  // namespace Vantix::transport
