// Exceptions that cross the border of the library are caught by their type.
#include <gtest/gtest.h>

#include <ios>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>

#include "platform/connection/run_context.h"
#include "platform/progress/progress.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/service_update_scan.h"
#include "simulated_server.h"

namespace {

class FrontEndError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

TEST(LibraryExceptionsTest, FailureOfAStreamThatTheLibraryWritesInto) {
    class FullDisk : public std::streambuf {};
    FullDisk disk;
    std::ostream out(&disk);
    out.exceptions(std::ios::badbit | std::ios::failbit);
    EXPECT_THROW(service::SerializeScanReport::PrintResult({}, out, "fw"), std::ios_base::failure);
}

TEST(LibraryExceptionsTest, ErrorOfACallBackComesBackAsItself) {
    Vantix::VantixConnection::RunContext run;
    run.on_activity = [](const std::string& text) { throw FrontEndError(text); };
    try {
        run.Activity("member 1 of 2");
        FAIL() << "nothing was thrown";
    } catch (const FrontEndError& error) {
        EXPECT_STREQ(error.what(), "member 1 of 2");
    }
}

TEST(LibraryExceptionsTest, ErrorOfAProgressBarEndsTheScanAsItself) {
    class BrokenBar : public DynamicProgressBar {
      public:
        void SetStage(int, const std::string&) override { throw FrontEndError("no window"); }
    };
    const simulators::BmcSimulator server(front_end::RackServer());
    service::ServiceUpdateScan scan(front_end::ScanOf(server));
    BrokenBar bar;
    scan.SetProgressBar(&bar);
    service::UpdateScanReport report;
    EXPECT_THROW(static_cast<void>(scan.Run(report)), FrontEndError);
}

}  // namespace
