#include "service/update_scan_service/service_update_scan.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

#include "common/result/result_codes.h"
#include "doubles/log_double.h"
#include "doubles/platform_double.h"
#include "doubles/progress_bar_mock.h"

namespace service {
namespace {

using testing::_;

static_assert(!std::is_copy_constructible_v<ServiceUpdateScan>);
static_assert(std::is_copy_assignable_v<ServiceUpdateScan>);
static_assert(!std::is_convertible_v<UpdateScanOption, ServiceUpdateScan>);
static_assert(std::is_aggregate_v<UpdateScanOption>);

/// A service that is never destroyed. Keeps hold of its first implementation, which assignment
/// gives up, so that leak checkers see it as reachable.
class UndestroyedService {
  public:
    explicit UndestroyedService(const UpdateScanOption& option)
        : service_(new (storage_) ServiceUpdateScan(option)) {
        static_assert(sizeof(ServiceUpdateScan) == sizeof(void*));
        static void* first_implementations[8] = {};
        static int count = 0;
        std::memcpy(&first_implementations[count++ % 8], storage_, sizeof(void*));
    }

    ServiceUpdateScan& operator*() { return *service_; }
    ServiceUpdateScan* operator->() { return service_; }

  private:
    alignas(ServiceUpdateScan) unsigned char storage_[sizeof(ServiceUpdateScan)];
    ServiceUpdateScan* service_;
};

UpdateScanOption OptionOfMode(int connect_mode) {
    UpdateScanOption option;
    option.connect_option.connect_mode = connect_mode;
    return option;
}

class ServiceUpdateScanTest : public testing::Test {
  protected:
    std::string LoggedMode() const {
        const std::vector<std::string> texts = log_.Texts(3);
        return texts.empty() ? "" : texts.back().substr(texts.back().rfind(':'));
    }

    doubles::LogCapture log_;
    doubles::StrictPlatform platform_;
    doubles::StrictProgressBar bar_;
    UpdateScanReport report_;
};

TEST(ServiceUpdateScanActionTest, NameNeedsNoService) {
    EXPECT_EQ(ServiceUpdateScan::ActionName(), "Scan");
}

TEST(UpdateScanOptionTest, DefaultsAreZeroFalseAndEmpty) {
    const UpdateScanOption option;
    EXPECT_EQ(option.bay_id, 0);
    for (const bool flag :
         {option.is_zelvar, option.is_check_device, option.is_cfc_system, option.is_csp_system,
          option.remote_flag, option.info_only, option.report_check_device}) {
        EXPECT_FALSE(flag);
    }
    for (const std::string& text : {option.output_dir, option.package_dir, option.remote_command,
                                    option.inband_argument, option.scan_type}) {
        EXPECT_EQ(text, "");
    }
    EXPECT_EQ(option.connect_option.connect_mode, 0);
}

TEST(UpdateScanOptionTest, FieldsStandInTheirFixedOrder) {
    const UpdateScanOption option{3,    true,  false, true,     false,    true, false,
                                  true, "out", "pkg", "remote", "inband", "dd", {}};
    EXPECT_EQ(option.bay_id, 3);
    EXPECT_TRUE(option.is_zelvar);
    EXPECT_FALSE(option.is_check_device);
    EXPECT_TRUE(option.is_cfc_system);
    EXPECT_FALSE(option.is_csp_system);
    EXPECT_TRUE(option.remote_flag);
    EXPECT_FALSE(option.info_only);
    EXPECT_TRUE(option.report_check_device);
    EXPECT_EQ(option.output_dir, "out");
    EXPECT_EQ(option.package_dir, "pkg");
    EXPECT_EQ(option.remote_command, "remote");
    EXPECT_EQ(option.inband_argument, "inband");
    EXPECT_EQ(option.scan_type, "dd");
}

TEST_F(ServiceUpdateScanTest, RunForwardsTheResult) {
    ServiceUpdateScan service(OptionOfMode(0));
    const TarselResult result = service.Run(report_);
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "Generic Failure.");
}

TEST_F(ServiceUpdateScanTest, LaterChangesOfTheOptionHaveNoEffect) {
    UpdateScanOption option = OptionOfMode(12);
    ServiceUpdateScan service(option);
    option.connect_option.connect_mode = 14;
    EXPECT_EQ(service.Run(report_).code, GENERIC_FAILURE);
    EXPECT_EQ(LoggedMode(), ":12");
}

TEST_F(ServiceUpdateScanTest, SecondRunWithAFreshReportIsAllowed) {
    ServiceUpdateScan service(OptionOfMode(0));
    EXPECT_EQ(service.Run(report_).code, GENERIC_FAILURE);
    UpdateScanReport fresh;
    EXPECT_EQ(service.Run(fresh).code, GENERIC_FAILURE);
    EXPECT_EQ(log_.Records().size(), 4u);
}

TEST_F(ServiceUpdateScanTest, BarIsToldOfTheRun) {
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, _));
    EXPECT_CALL(bar_, ReportStageFailure(0, _));
    ServiceUpdateScan service(OptionOfMode(0));
    service.SetProgressBar(&bar_);
    EXPECT_EQ(service.Run(report_).code, GENERIC_FAILURE);
}

TEST_F(ServiceUpdateScanTest, NullBarSwitchesAllProgressOff) {
    ServiceUpdateScan service(OptionOfMode(0));
    service.SetProgressBar(&bar_);
    service.SetProgressBar(nullptr);
    EXPECT_EQ(service.Run(report_).code, GENERIC_FAILURE);
}

TEST_F(ServiceUpdateScanTest, RunWithoutABarMakesNoProgressCall) {
    ServiceUpdateScan with_bar(OptionOfMode(0));
    with_bar.SetProgressBar(&bar_);
    ServiceUpdateScan service(OptionOfMode(0));
    EXPECT_EQ(service.Run(report_).code, GENERIC_FAILURE);
}

TEST_F(ServiceUpdateScanTest, AssignmentSharesOneImplementation) {
    ServiceUpdateScan source(OptionOfMode(12));
    UndestroyedService target(OptionOfMode(14));
    ServiceUpdateScan& assigned = (*target = source);
    EXPECT_EQ(&assigned, &*target);

    EXPECT_EQ(target->Run(report_).code, GENERIC_FAILURE);
    EXPECT_EQ(LoggedMode(), ":12");

    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, _));
    EXPECT_CALL(bar_, ReportStageFailure(0, _));
    source.SetProgressBar(&bar_);
    EXPECT_EQ(target->Run(report_).code, GENERIC_FAILURE);
}

TEST_F(ServiceUpdateScanTest, SelfAssignmentIsHarmless) {
    ServiceUpdateScan service(OptionOfMode(12));
    const ServiceUpdateScan& same = service;
    service = same;
    EXPECT_EQ(service.Run(report_).code, GENERIC_FAILURE);
    EXPECT_EQ(LoggedMode(), ":12");
}

}  // namespace
}  // namespace service
