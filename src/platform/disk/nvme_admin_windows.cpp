#include "platform/disk/nvme_admin.h"

namespace Vantix::disk {
namespace {

// Nodes are names of Linux: a recorded tree knows them, this machine does not.
class NoNodes : public NvmeAdmin {
  public:
    DeviceAnswer IdentifyController(const std::string& /*node*/,
                                    const std::string& /*device_number*/) const override {
        return {DeviceAnswer::State::kFailed, {}, "this system has no device nodes"};
    }
};

}  // namespace

const NvmeAdmin& KernelNvmeAdmin() {
    static const NoNodes admin;
    return admin;
}

}  // namespace Vantix::disk
