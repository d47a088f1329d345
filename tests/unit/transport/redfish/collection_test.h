// What the tests of reading collections share: a service that is logged in, and members.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "support/redfish_talk.h"
#include "transport/redfish/collection_reader.h"

namespace Vantix::transport {

inline constexpr const char* kNoExpand = "{}";
inline constexpr const char* kExpand =
    R"({"ProtocolFeaturesSupported":{"ExpandQuery":{"NoLinks":true,"Levels":true}}})";
inline constexpr const char* kPlain = "GET /c";
inline constexpr const char* kExpanded = "GET /c?$expand=.($levels=1)";

inline std::string Member(const std::string& id, const std::string& more = {}) {
    return R"({"@odata.id":"/c/)" + id + R"(","Id":")" + id + R"(","Name":"n)" + id + "\"" + more +
           "}";
}

inline std::string Inline(const std::vector<std::string>& members, const std::string& more = {}) {
    std::string list;
    for (const auto& member : members) list += (list.empty() ? "" : ",") + member;
    return R"({"Members":[)" + list + "]" + more + "}";
}

class CollectionReaderTest : public ::testing::Test {
  protected:
    void OpenWith(const std::string& root) {
        service_ = std::make_unique<RedfishService>(peer_, RedfishSettings());
        peer_.On(kAskRoot, Json(root)).On(kLogIn, SessionMade());
        ASSERT_FALSE(service_->Open());
    }

    CollectionAnswer Read(const std::string& path = "/c") {
        std::optional<CollectionAnswer> read;
        ReadCollection(*service_, path, options_, [&](CollectionAnswer&& answer) {
            EXPECT_FALSE(read.has_value()) << "called twice";
            read = std::move(answer);
        });
        while (service_->Step()) {
        }
        EXPECT_TRUE(read.has_value());
        return std::move(read).value_or(CollectionAnswer());
    }

    // Answers the members "/c/<id>" with themselves.
    void Offer(const std::vector<std::string>& ids) {
        for (const auto& id : ids) peer_.On("GET /c/" + id, Json(Member(id)));
    }

    static std::vector<std::string> Paths(const CollectionAnswer& answer) {
        std::vector<std::string> paths;
        for (const auto& member : answer.members) paths.push_back(member.path);
        return paths;
    }

    ConversationTransport peer_;
    std::unique_ptr<RedfishService> service_;
    CollectionOptions options_;
};

inline std::string NextLink(const std::string& target) {
    return R"(,"Members@odata.nextLink":")" + target + "\"";
}

}  // namespace Vantix::transport
