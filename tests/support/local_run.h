// One run over a recorded machine: what ServiceUpdateScan sets up before local families are asked.
#pragma once

#include <string>
#include <vector>

#include "platform/connection/connection.h"
#include "support/system_tree.h"

namespace test_support {

class LocalRun {
  public:
    explicit LocalRun(const SystemTree& tree) : LocalRun(tree.Root()) {}
    explicit LocalRun(const std::string& root) : option_(OptionFor(root)), run_(option_) {}

    [[nodiscard]] std::vector<std::string> Notices() const { return option_.run->Notices(); }
    [[nodiscard]] std::vector<Vantix::VantixConnection::SourceStatus> Sources() const {
        return option_.run->Sources();
    }

  private:
    static Vantix::VantixConnection::ConnectOption OptionFor(const std::string& root) {
        Vantix::VantixConnection::ConnectOption option;
        option.system_root = root;
        return option;
    }

    const Vantix::VantixConnection::ConnectOption option_;
    const Vantix::VantixConnection::ActiveRun run_;
};

}  // namespace test_support
