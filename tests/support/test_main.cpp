// Runs the tests; natively each must also leave alive no more objects than it found.
#include <gtest/gtest.h>

#include <cstring>

#include <vncore/vncore.h>
#include "tests/support/headless_control.h"

#ifdef _WIN32

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

#else

namespace {

class LeakListener : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { Headless_GetCounts(&before_); }
  void OnTestEnd(const testing::TestInfo& test) override {
    Headless_Counts after;
    Headless_GetCounts(&after);
    EXPECT_EQ(std::memcmp(&before_, &after, sizeof after), 0)
        << test.name() << " leaks: blocks " << before_.globalBlocks << " -> " << after.globalBlocks
        << ", mappings " << before_.mappings << " -> " << after.mappings << ", views "
        << before_.views << " -> " << after.views << ", files " << before_.files << " -> "
        << after.files << ", objects " << before_.objects << " -> " << after.objects
        << ", contexts " << before_.contexts << " -> " << after.contexts;
  }
  Headless_Counts before_{};
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
  Vn_GetDisplayMode();  // the main thread's settings block exists before anything is counted
  return RUN_ALL_TESTS();
}

#endif
