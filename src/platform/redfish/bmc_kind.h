// Which kind of BMC a service belongs to, judged by what it says of itself.
//
// Rule table, first match wins; all comparisons ignore letter case. "Texts" are the manager's
// model, name and firmware version and the service root's product.
//
//   kind      texts contain            or
//   Tavro     tavro
//   Ossa2     the word ossa2
//   Ossa      the word ossa
//   Vesk      a word starting vesk
//   iLO       the word ilo             "integrated lights-out"
//   iDRAC     idrac                    "remote access controller"
//   iRMC      irmc
//   CIMC      the word cimc            vendor Cisco
//   OpenBMC   openbmc
//   AMI       megarac, ami redfish     vendor AMI or American Megatrends
//   BMC       nothing of these: a working BMC of a kind without name here
#pragma once

#include <string>

#include "platform/redfish/managed_system.h"
#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

enum BmcKind : int {
    kBmcKindNone = 0,
    kBmcKindOther = 1,
    kBmcKindTavro = 2,
    kBmcKindOssa = 3,
    kBmcKindOssa2 = 4,
    kBmcKindAmi = 5,
    kBmcKindVesk = 6,
    kBmcKindIlo = 7,
    kBmcKindIdrac = 8,
    kBmcKindOpenBmc = 9,
    kBmcKindCimc = 10,
    kBmcKindIrmc = 11,
};

struct BmcFacts {
    std::string vendor;   ///< ServiceRoot.Vendor
    std::string product;  ///< ServiceRoot.Product
    std::string model;    ///< Manager.Model
    std::string name;     ///< Manager.Name
    std::string firmware_version;
};

/// `manager` may be nullptr.
[[nodiscard]] BmcFacts ReadBmcFacts(const ServerSnapshot& snapshot, const Resource* manager);

/// Never kBmcKindNone: facts that fit no rule give kBmcKindOther.
[[nodiscard]] BmcKind BmcKindOf(const BmcFacts& facts);

/// "Tavro", "Ossa", "Ossa2", "AMI", "BMC", ...; empty for kBmcKindNone and numbers without kind.
[[nodiscard]] std::string BmcKindText(int kind);

/// A Tavro of the third generation: the number 3 behind the name ("TAVRO3", "Tavro V3", "Tavro Gen
/// 3") in model or product, or a firmware version that starts with "TV3".
[[nodiscard]] bool IsThirdGenerationTavro(const BmcFacts& facts);

/// Manager.Oem.<any>.ReleaseName or Manager.Oem.ReleaseName; empty when there is none.
[[nodiscard]] std::string ReadReleaseName(const Resource* manager);

}  // namespace Vantix::redfish
