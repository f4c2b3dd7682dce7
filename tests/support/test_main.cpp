// Runs the tests; natively each must also leave alive no more objects than it found.
#include <gtest/gtest.h>

#include <vncore/vncore.h>
#include "tests/support/failure_walk.h"

#ifdef _WIN32

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

#else

namespace {

class LeakListener : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { Headless_GetCounts(&before_); }
  void OnTestEnd(const testing::TestInfo&) override {
    Headless_Counts after;
    Headless_GetCounts(&after);
    vn::test::ExpectNoLeak(before_, after);
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
