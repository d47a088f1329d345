#include "service/update_scan_service/detail/scan_trace.h"

#include <gtest/gtest.h>

#include <source_location>

#include "doubles/log_double.h"

namespace service::detail {
namespace {

TEST(ScanTraceTest, BeginCarriesStepAndPlace) {
    const doubles::LogCapture log;
    const auto line = std::source_location::current().line() + 1;
    TraceBegin(kTraceDrivers);
    ASSERT_EQ(log.Traces().size(), 1u);
    EXPECT_EQ(log.Traces()[0].level, 3);
    EXPECT_EQ(log.Traces()[0].tag, "[B]");
    EXPECT_EQ(log.Traces()[0].step, 19);
    EXPECT_EQ(log.Traces()[0].code, 0);
    EXPECT_EQ(log.Traces()[0].source, kScanLogSource);
    EXPECT_EQ(log.Traces()[0].line, static_cast<int>(line));
}

TEST(ScanTraceTest, EndCarriesTheLowHalfOfTheCode) {
    const doubles::LogCapture log;
    TraceEnd(kTraceMachineType, 0x1006F);
    TraceEnd(kTraceMachineType, -1);
    ASSERT_EQ(log.Traces().size(), 2u);
    EXPECT_EQ(log.Traces()[0].tag, "[E]");
    EXPECT_EQ(log.Traces()[0].code, 0x6F);
    EXPECT_EQ(log.Traces()[1].code, 0xFFFF);
}

}  // namespace
}  // namespace service::detail
