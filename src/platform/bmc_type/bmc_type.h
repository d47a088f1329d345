// Which kind of management controller a target has.
#pragma once

#include <string>

#include "platform/connection/connection.h"

namespace Vantix {
namespace Agentless {

class OssaTypeAcquire {
  public:
    explicit OssaTypeAcquire(const VantixConnection::ConnectionInfo& connection);

    /// Returns 0 and a non-zero `type` when the BMC answered; a working BMC of an unknown kind has
    /// a type of its own ("BMC"). Any other return is a result code.
    int GetOssaType(int& type);

    /// "Tavro", "Ossa", "Ossa2", "AMI", ...; empty for a number that is no type.
    static std::string OssaTypeToString(int type);

  private:
    VantixConnection::ConnectionInfo connection_;
};

}  // namespace Agentless
}  // namespace Vantix
