#include "bmc_simulator/service_message.h"

#include <boost/json.hpp>

namespace simulators {

ServiceReply ErrorReply(int status, std::string_view message_id, std::string_view text) {
    const std::string message =
        text.empty() ? "The simulated service answers with status " + std::to_string(status) + "."
                     : std::string(text);
    const boost::json::object info{{"@odata.type", "#Message.v1_1_1.Message"},
                                   {"MessageId", boost::json::string(message_id)},
                                   {"Message", message},
                                   {"Severity", "Critical"},
                                   {"Resolution", "None."}};
    const boost::json::object error{{"code", boost::json::string(message_id)},
                                    {"message", message},
                                    {"@Message.ExtendedInfo", boost::json::array{info}}};
    ServiceReply reply;
    reply.status = status;
    reply.body = boost::json::serialize(boost::json::object{{"error", error}});
    return reply;
}

}  // namespace simulators
