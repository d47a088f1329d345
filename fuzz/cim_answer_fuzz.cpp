// Any bytes as what a CIM service answers: read within the limits, put into every list of a
// snapshot, and read by every reader. The texts that come out are clean.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/cim/hypervisor_reader.h"
#include "platform/cim/module_reader.h"
#include "platform/cim/software_reader.h"
#include "platform/cim/system_reader.h"
#include "transport/cim_xml/cim_answer.h"

namespace {

using Vantix::cim::CimSnapshot;
using Vantix::transport::CimAnswer;

constexpr int kMessageId = 1001;

void Require(bool holds) {
    if (!holds) std::abort();
}

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    Require(std::none_of(text.begin(), text.end(), is_control));
}

CimSnapshot SnapshotOf(const CimAnswer& answer) {
    CimSnapshot snapshot;
    for (auto* list : {&snapshot.systems, &snapshot.chassis, &snapshot.packages, &snapshot.slots,
                       &snapshot.packages_in_slot, &snapshot.system_packages, &snapshot.software,
                       &snapshot.installed, &snapshot.element_software, &snapshot.operating_systems,
                       &snapshot.processors}) {
        *list = answer.instances;
    }
    return snapshot;
}

void RequireClean(const CimAnswer& answer) {
    RequireClean(answer.failure.text);
    for (const auto& instance : answer.instances) {
        Require(!instance.class_name.empty());
        RequireClean(instance.class_name);
        for (const auto& [name, values] : instance.properties) {
            RequireClean(name);
            for (const std::string& value : values) RequireClean(value);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const CimAnswer answer = Vantix::transport::ReadCimAnswer(bytes, kMessageId);
    RequireClean(answer);
    const CimSnapshot snapshot = SnapshotOf(answer);
    for (const auto& identity : Vantix::cim::ReadSoftware(snapshot).identities) {
        RequireClean(identity.VersionString + identity.SoftwareID + identity.ReleaseDate);
    }
    static_cast<void>(Vantix::cim::ReadMachine(snapshot));
    static_cast<void>(Vantix::cim::ReadControllerFacts(Vantix::cim::FindController(snapshot)));
    static_cast<void>(Vantix::cim::ReadChassisModule(snapshot));
    static_cast<void>(Vantix::cim::ReadSwitch(snapshot, "2"));
    RequireClean(Vantix::cim::ReadHypervisor(snapshot).os);
    RequireClean(Vantix::cim::ReadProductVersion(bytes));
    return 0;
}
