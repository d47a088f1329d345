// A recorded machine, an arcconf that answers, and one reading of its controllers.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pci_tree.h"
#include "platform/raid/raid_scan.h"
#include "support/arcconf_text.h"
#include "support/fake_arcconf.h"

class RaidScanTestBase : public testing::Test {
  protected:
    RaidScanTestBase() { tree_.File("/usr/sbin/arcconf", "#!/bin/sh\n"); }

    /// Lists the controllers and reads the disks of each, as a scan does.
    void Scan() {
        using Vantix::transport::SystemRoot;
        scan_.emplace(runner_, std::make_shared<const SystemRoot>(tree_.Root()), run_);
        code_ = scan_->ListControllers(controllers_);
        for (auto& controller : controllers_) codes_.push_back(scan_->ReadDisks(controller));
    }

    [[nodiscard]] std::optional<Vantix::VantixConnection::SourceStatus> Status() const {
        for (const auto& status : run_->Sources()) {
            if (status.source == "RAID disks") return status;
        }
        return std::nullopt;
    }
    [[nodiscard]] std::string Notices() const {
        std::string text;
        for (const std::string& notice : run_->Notices()) text += notice + "\n";
        return text;
    }

    test_support::SystemTree tree_;
    test_support::FakeArcconf runner_;
    std::shared_ptr<Vantix::VantixConnection::RunContext> run_ =
        std::make_shared<Vantix::VantixConnection::RunContext>();
    std::optional<Vantix::raid::RaidScan> scan_;
    std::vector<Vantix::ARCCONF::RaidController> controllers_;
    int code_ = -1;
    std::vector<int> codes_;
};
