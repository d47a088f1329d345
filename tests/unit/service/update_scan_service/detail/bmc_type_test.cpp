#include "service/update_scan_service/detail/bmc_type.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AcquireBmcTypeTest : public support::BmcScanTestBase {
  protected:
    std::string bmc_type_ = "before";
};

TEST_F(AcquireBmcTypeTest, TypeIsStoredAsText) {
    const testing::InSequence in_sequence;
    BmcTypeIs(rest_, "Tavro");
    EXPECT_TRUE(AcquireBmcType(rest_, bmc_type_));
    EXPECT_EQ(bmc_type_, "Tavro");
    EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(AcquireBmcTypeTest, FailingCodeIsLoggedAndNothingStored) {
    BmcTypeCodeIs(cim_, 13, 4);
    EXPECT_FALSE(AcquireBmcType(cim_, bmc_type_));
    EXPECT_EQ(bmc_type_, "before");
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to acquire BMC type with error is 13"));
}

TEST_F(AcquireBmcTypeTest, TypeZeroIsAFailureToo) {
    BmcTypeCodeIs(rest_, 0, 0);
    EXPECT_FALSE(AcquireBmcType(rest_, bmc_type_));
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to acquire BMC type with error is 0"));
}

}  // namespace
}  // namespace service::detail
