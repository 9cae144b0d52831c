// The colour-flip check over the published suites.
#include "harness/vflip.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "environment.h"

namespace {

TEST(Vflip, EveryPublishedSuiteEvaluatesItsTwinsAlike) {
    for (const char* name : {"lct2", "bt2450", "bt2630", "bs2830"}) {
        const std::string path = sharedData("suites/") + name + ".epd";
        SKIP_WITHOUT(path);
        VflipCount count;
        FILE* out = std::tmpfile();
        ASSERT_TRUE(vflipFile(path, count, out));
        std::fclose(out);
        EXPECT_GE(count.positions, 27) << name;
        EXPECT_EQ(count.differences, 0) << name;
        EXPECT_EQ(count.errors, 0) << name;
    }
}

}  // namespace
