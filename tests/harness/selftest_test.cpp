// The self tests that do not depend on the machine's load: threads with their events, and String.
#include "harness/selftest.h"

#include <gtest/gtest.h>

#include <string>

#include "frontend/util/string.h"
#include "search/parallel.h"
#include "search/tt.h"

namespace {

TEST(SelfTest, ThreadSlotsAndTheSearchThreadWakeAndStop) {
    tt.alloc(Tt::MIN_KILOBYTES);
    setThreads(3);
    std::string detail;
    EXPECT_TRUE(threadSelfTest(detail)) << detail;
    EXPECT_NE(detail.find("8 slots started, woken and stopped 6 times"), std::string::npos) << detail;
    // A second run reuses the booted threads; the thread count is put back.
    EXPECT_TRUE(threadSelfTest(detail)) << detail;
    EXPECT_EQ(threadCount(), 3);
    setThreads(1);
}

TEST(SelfTest, StringsCountBackToTheirStartValue) {
    const String held("kept alive across the test");
    std::string detail;
    EXPECT_TRUE(stringSelfTest(detail)) << detail;
    EXPECT_EQ(detail, "live blocks back at " + std::to_string(liveStrings.load()));
}

}  // namespace
