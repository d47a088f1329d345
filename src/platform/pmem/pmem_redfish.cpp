// Persistent memory that a Redfish service reports.

#include <iterator>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/pmem/pmem.h"
#include "platform/redfish/pmem_reader.h"
#include "platform/redfish/redfish_channel.h"

int PmemManger::GetSoftwareIdentity(const Vantix::VantixConnection::ConnectionInfo& connection,
                                    std::vector<Vantix::VantixOptions::SoftwareIdentity_>& list) {
    Vantix::redfish::RedfishChannel* channel = Vantix::redfish::RedfishChannel::Of(connection);
    if (channel == nullptr) return CONNECTION_FAILED;
    auto modules = Vantix::redfish::ReadPersistentMemory(channel->Memory());
    list.insert(list.end(), std::make_move_iterator(modules.begin()),
                std::make_move_iterator(modules.end()));
    return channel->Run().IsCancelled() ? INTERRUPTED_BY_USER : SUCCEED;
}
