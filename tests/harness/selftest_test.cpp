// The self tests that do not depend on the machine's load: threads with their events, and String.
#include "harness/selftest.h"

#include <gtest/gtest.h>

#include <string>

#include "frontend/util/string.h"
#include "search/tt.h"

namespace {

TEST(SelfTest, ThreadSlotsAndTheSearchThreadWakeAndStop) {
    tt.alloc(Tt::MIN_KILOBYTES);
    std::string detail;
    EXPECT_TRUE(threadSelfTest(detail)) << detail;
    EXPECT_NE(detail.find("8 slots started, woken and stopped 6 times"), std::string::npos) << detail;
    // A second run reuses the booted search thread.
    EXPECT_TRUE(threadSelfTest(detail)) << detail;
}

TEST(SelfTest, StringsCountBackToTheirStartValue) {
    const String held("kept alive across the test");
    std::string detail;
    EXPECT_TRUE(stringSelfTest(detail)) << detail;
    EXPECT_EQ(detail, "live blocks back at " + std::to_string(liveStrings.load()));
}

}  // namespace
