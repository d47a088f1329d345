// Recorded services, read from disk into snapshots the way a client would see them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// Folder of the recorded sets: environment variable TARSEL_SHARED_MOCKUPS, else what the build was
/// told; nullopt when there is no such folder.
std::optional<std::filesystem::path> RecordedSetsFolder();

/// One line of a set's FIRMWARE.tsv.
struct ExpectedMember {
    std::string path;
    std::string id;
    std::string name;
    std::string software_id;  ///< empty: absent
    std::string version;      ///< empty: absent
};

class RecordedTree {
  public:
    explicit RecordedTree(std::filesystem::path folder) : folder_(std::move(folder)) {}

    [[nodiscard]] ServerSnapshot Snapshot() const;
    [[nodiscard]] std::vector<ExpectedMember> Expected() const;

  private:
    [[nodiscard]] std::optional<boost::json::object> Load(const std::string& link) const;
    [[nodiscard]] std::vector<Resource> Members(const std::string& collection) const;
    void Follow(const boost::json::object& holder, const char* key,
                std::vector<Resource>& list) const;
    void LoadSystem(const Resource& system, ServerSnapshot& snapshot) const;
    void LoadChassis(const Resource& chassis, ServerSnapshot& snapshot) const;

    std::filesystem::path folder_;
};

}  // namespace Vantix::redfish
