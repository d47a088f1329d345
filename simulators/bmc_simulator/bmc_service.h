// The services of a simulated machine without their sockets: Redfish, CIM-XML at /cimom, and what a
// hypervisor's web service tells without a login. Request in, right answer out. Faults and pace
// belong to the server around it. Used from one thread at a time.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "bmc_simulator/bmc_counts.h"
#include "bmc_simulator/bmc_options.h"
#include "bmc_simulator/cim_repository.h"
#include "bmc_simulator/login_desk.h"
#include "bmc_simulator/scenario_tree.h"
#include "bmc_simulator/service_message.h"

namespace simulators {

class BmcService {
  public:
    /// Reads the scenario; throws std::runtime_error where that fails.
    /// Both references must outlive the service.
    BmcService(const BmcOptions& options, BmcCounts& counts);

    [[nodiscard]] ServiceReply Answer(const ServiceRequest& request);

    /// Lays the replaced bodies of the options over the scenario as it was read.
    void ReloadReplacedBodies();
    void ForgetSessions() { desk_.ForgetAll(); }

  private:
    [[nodiscard]] std::optional<ServiceReply> AnswerOthers(const ServiceRequest& request,
                                                           const std::string& path);
    [[nodiscard]] std::string SessionsPath() const;
    [[nodiscard]] ServiceReply AnswerSessions(const ServiceRequest& request,
                                              std::string_view sessions_path,
                                              const std::string& path);
    [[nodiscard]] ServiceReply Get(const ServiceRequest& request, const std::string& path) const;
    [[nodiscard]] ServiceReply GetExpanded(const ScenarioTree::Resource& resource,
                                           const ServiceRequest& request,
                                           const std::string& path) const;
    [[nodiscard]] ServiceReply View(const ScenarioTree::Resource& resource,
                                    const ServiceRequest& request, const std::string& path,
                                    bool expand) const;
    [[nodiscard]] bool ExpandOffered() const;
    [[nodiscard]] std::string MemberBody(std::string_view link) const;

    const BmcOptions& options_;
    ScenarioTree recorded_;
    ScenarioTree tree_;
    LoginDesk desk_;
    CimRepository cim_;
    std::string web_service_;  ///< answer to POST /sdk; empty: none
};

}  // namespace simulators
