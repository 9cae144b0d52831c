// Every test of this binary may run alone in its own process (CTest runs them that way), so the
// transposition table the engine allocates at start-up is allocated here once for all of them.
#include <gtest/gtest.h>

#include "search/tt.h"

namespace {

struct TableEnvironment : ::testing::Environment {
    void SetUp() override { tt.alloc(8 * 1024); }
};

const auto* const environment = ::testing::AddGlobalTestEnvironment(new TableEnvironment);

}  // namespace
