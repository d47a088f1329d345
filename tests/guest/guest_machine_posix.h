// A whole machine for tests: QEMU's software emulation boots a Linux kernel on a server with SMBIOS
// texts, two NVMe drives and a network adapter in slots 11 to 13, a RAID adapter with a disk, a
// persistent-memory module and an IPMI controller, and runs the built programs in it.
//
// What it tells is judged by what it says on its serial line; QEMU's own exit status means nothing.
#pragma once

#include <string>
#include <vector>

#include "guest/console_parts.h"

namespace guest {

class GuestMachine {
  public:
    /// Why the machine cannot be had here; empty when it can.
    static std::string Missing();

    /// Boots it and waits until it has told everything or has ended. Throws std::runtime_error when
    /// it could not be put together.
    GuestMachine();

    [[nodiscard]] bool HasToldAll() const { return has_told_all_; }
    /// The part of that name; one without text and with status -1 when it was not told.
    [[nodiscard]] ConsolePart Told(const std::string& name) const;
    /// A line of the part "facts"; empty when it was not told.
    [[nodiscard]] std::string Fact(const std::string& key) const;
    /// All of them.
    [[nodiscard]] const Facts& AllFacts() const { return facts_; }
    [[nodiscard]] const std::string& Console() const { return console_; }

  private:
    void Boot(const std::vector<std::string>& arguments);

    bool has_told_all_ = false;
    std::string console_;
    ConsoleParts parts_;
    Facts facts_;
};

}  // namespace guest
