// A small invented Redfish tree in a temporary folder, for tests that need to see every resource.

#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "integration/simulators/test_client.h"
#include "support/temporary_folder.h"

namespace simulator_test {

class SmallTree {
  public:
    /// A root that offers $expand, and a chassis collection with members A to E.
    SmallTree() {
        Add("/redfish/v1",
            R"({"@odata.id":"/redfish/v1","Name":"Root","Chassis":{"@odata.id":"/redfish/v1/Chassis"},)"
            R"("ProtocolFeaturesSupported":{"ExpandQuery":{"NoLinks":true}}})");
        std::string links;
        for (const std::string id : {"A", "B", "C", "D", "E"}) {
            const std::string path = "/redfish/v1/Chassis/" + id;
            links += (links.empty() ? "" : ",") + ("{\"@odata.id\":\"" + path + "\"}");
            Add(path, R"({"@odata.id":")" + path + R"(","Id":")" + id + R"(","Name":"Part )" + id +
                          R"(","Version":"1.)" + id + R"("})");
        }
        Add("/redfish/v1/Chassis", R"({"@odata.id":"/redfish/v1/Chassis","Name":"All",)"
                                   R"("Members@odata.count":5,"Members":[)" +
                                       links + "]}");
    }

    void Add(const std::string& path, const std::string& body) const {
        Write(path, "index.json", body);
    }
    void AddErrorText(const std::string& path, const std::string& text) const {
        Write(path, "error.txt", text);
    }

    [[nodiscard]] simulators::BmcOptions Options() const {
        simulators::BmcOptions options;
        options.scenario_dir = folder_.Path("");
        return options;
    }

  private:
    void Write(const std::string& path, const std::string& file, const std::string& text) const {
        const std::filesystem::path folder = folder_.Path(path.substr(1));
        std::filesystem::create_directories(folder);
        std::ofstream(folder / file, std::ios::binary) << text;
    }

    test_support::TemporaryFolder folder_;
};

/// A simulated BMC over a small tree and a client that is let in.
class SmallBmc {
  public:
    explicit SmallBmc(const simulators::BmcOptions& options) : bmc(options), client(bmc) {
        client.UseBasic("demo", "demo-pass-1");
    }

    simulators::BmcSimulator bmc;
    TestClient client;
};

}  // namespace simulator_test
