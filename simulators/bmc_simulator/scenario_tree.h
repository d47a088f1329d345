// The resources of a scenario folder in memory: redfish/v1/X/index.json is /redfish/v1/X. Recorded
// trees of real machines follow the same rules, which is why they are read so forgivingly. Knows
// nothing of queries but the ones that are part of a folder's name (X?$skip=75).

#pragma once

#include <map>
#include <string>
#include <string_view>

namespace simulators {

/// `%23` and the like undone; broken escapes stay as they are.
[[nodiscard]] std::string Unquote(std::string_view text);

class ScenarioTree {
  public:
    struct Resource {
        int status = 200;  ///< other than 200 where the recording is an error
        std::string body;
    };

    /// Reads all of `folder`; an empty name gives an empty tree, and so does a machine that speaks
    /// CIM only.
    /// Throws std::runtime_error where the folder has no redfish/v1/index.json.
    [[nodiscard]] static ScenarioTree Load(const std::string& folder);

    /// Lays `body` over `path`; an empty body removes the resource.
    void Replace(const std::string& path, std::string body);

    /// The resource of a raw request target: exact letter case first, then any. Path plus query is
    /// tried before the path alone. nullptr where there is none.
    [[nodiscard]] const Resource* Find(std::string_view target) const;

    /// Status that a recorded body stands for: that of its error document, 404 for `null`, else
    /// 200.
    [[nodiscard]] static int StatusOf(const std::string& body);

  private:
    [[nodiscard]] const Resource* FindKey(const std::string& key) const;

    std::map<std::string, Resource> resources_;
    std::map<std::string, std::string> key_of_lower_case_;
};

}  // namespace simulators
