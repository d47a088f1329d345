// Persistent memory of the local host.

#include "platform/pmem/pmem.h"

#include <iterator>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/log/log.h"
#include "platform/pmem/nvdimm_reader.h"

namespace {

constexpr const char* kLogSource = "pmem";

}  // namespace

int PmemManger::GetSoftwareIdentity(std::vector<Vantix::VantixOptions::SoftwareIdentity_>& list) {
    const auto root = Vantix::local::HostRoot();
    auto modules = Vantix::pmem::ReadNvdimms(*root);
    Vantix::Log(3, kLogSource, __LINE__).Stream()
        << "persistent-memory modules of this machine: " << modules.size();
    list.insert(list.end(), std::make_move_iterator(modules.begin()),
                std::make_move_iterator(modules.end()));
    Vantix::local::ReportDenied(*root);
    const auto& run = *Vantix::VantixConnection::ActiveRun::Option().run;
    return run.IsCancelled() ? INTERRUPTED_BY_USER : SUCCEED;
}
