// A recorded machine with SCSI disks.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/disk/scsi_survey.h"
#include "support/system_tree.h"
#include "unit/platform/disk/page_builder.h"

namespace disk_test {

class ScsiTestBase : public testing::Test {
  protected:
    static std::string Folder(const std::string& address) {
        return "/sys/class/scsi_device/" + address + "/device";
    }

    /// A disk as the kernel shows it; `block` may be empty.
    void Disk(const std::string& address, const std::string& vendor, const std::string& model,
              const std::string& revision, const std::string& block = "sda") {
        const std::string folder = Folder(address);
        tree_.File(folder + "/type", "0\n")
            .File(folder + "/vendor", Padded(vendor, 8) + "\n")
            .File(folder + "/model", Padded(model, 16) + "\n")
            .File(folder + "/rev", Padded(revision, 4) + "\n");
        if (!block.empty()) tree_.Folder(folder + "/block/" + block);
    }

    std::vector<Vantix::disk::DiskFacts> Survey() {
        const Vantix::transport::SystemRoot root(tree_.Root());
        return SurveyScsiDisks(root, Vantix::disk::DiskPlaces(root));
    }

    test_support::SystemTree tree_;
};

}  // namespace disk_test
