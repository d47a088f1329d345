// Persistent memory of the local host.

#include "platform/pmem/pmem.h"

#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/local/acpi_table.h"
#include "platform/local/local_host.h"
#include "platform/local/smbios_tables.h"
#include "platform/log/log.h"
#include "platform/pmem/nfit_reader.h"
#include "platform/pmem/nvdimm_reader.h"

namespace {

constexpr const char* kPmemLog = "pmem";

// The kernel's own list where it has one; Windows shows the table of the firmware alone.
std::vector<Vantix::VantixOptions::SoftwareIdentity_> ReadModules(
    const Vantix::transport::SystemRoot& root) {
    const auto table = root.IsThisMachine() ? Vantix::local::RunningAcpiTable("NFIT")
                                            : std::optional<std::string>();
    if (!table) return Vantix::pmem::ReadNvdimms(root);
    return Vantix::pmem::ReadNfitModules(*table, Vantix::local::ReadSmbios(root));
}

}  // namespace

int PmemManger::GetSoftwareIdentity(std::vector<Vantix::VantixOptions::SoftwareIdentity_>& list) {
    const auto root = Vantix::local::HostRoot();
    auto modules = ReadModules(*root);
    Vantix::Log(3, kPmemLog, __LINE__).Stream()
        << "persistent-memory modules of this machine: " << modules.size();
    list.insert(list.end(), std::make_move_iterator(modules.begin()),
                std::make_move_iterator(modules.end()));
    Vantix::local::ReportDenied(*root);
    const auto& run = *Vantix::VantixConnection::ActiveRun::Option().run;
    return run.IsCancelled() ? INTERRUPTED_BY_USER : SUCCEED;
}
