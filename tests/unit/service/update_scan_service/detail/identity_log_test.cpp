#include "service/update_scan_service/detail/identity_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "doubles/log_double.h"
#include "support/builders.h"

namespace service::detail {
namespace {

using support::AnIdentity;

TEST(IdentityLogTest, EveryIdentityHasARecordOfItsOwnUnderTheHeading) {
    const doubles::LogCapture log;
    LogIdentities("[Heading]",
                  {AnIdentity().Name("a").Description("b").ElementName("c").Version("d"),
                   AnIdentity().Name("second")});
    ASSERT_EQ(log.Texts(4).size(), 2u);
    EXPECT_EQ(log.Texts(4)[0],
              "[Heading]\n"
              "Name:           \ta\n"
              "Description:    \tb\n"
              "Element Name:   \tc\n"
              "Version String: \td\n");
    EXPECT_EQ(log.Texts(4)[1].rfind("[Heading]\nName:           \tsecond\n", 0), 0u);
}

TEST(IdentityLogTest, NothingIsWrittenForNoIdentity) {
    const doubles::LogCapture log;
    LogIdentities(kAgentlessIdentityHeading, {});
    EXPECT_THAT(log.Records(), testing::IsEmpty());
}

}  // namespace
}  // namespace service::detail
