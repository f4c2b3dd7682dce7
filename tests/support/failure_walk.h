// Every failure of one family that an operation can meet, one at a time.
#ifndef VNCORE_TESTS_SUPPORT_FAILURE_WALK_H
#define VNCORE_TESTS_SUPPORT_FAILURE_WALK_H

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include <vncore/platform/headless/headless.h>
#include "tests/support/status_log.h"
#include "tests/support/told.h"

namespace vn::test {

// Nothing more is alive than before.
inline void ExpectNoLeak(const Headless_Counts& before, const Headless_Counts& after) {
  EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0)
      << "leaks: blocks " << before.globalBlocks << " -> " << after.globalBlocks << ", mappings "
      << before.mappings << " -> " << after.mappings << ", views " << before.views << " -> "
      << after.views << ", files " << before.files << " -> " << after.files << ", objects "
      << before.objects << " -> " << after.objects << ", contexts " << before.contexts << " -> "
      << after.contexts;
}

// The platform's families, and beside them the calls of the status callback.
inline constexpr auto kStopFamily = static_cast<Headless_Operation>(HEADLESS_OPERATIONS);
inline constexpr VnStatus kStopValue = -500;

// One round of a walk: the test sets up its subject, runs the operation through Run, and looks at
// what a failure left.
class FailureRound {
 public:
  FailureRound(Headless_Operation family, uint32_t n) : family_(family), n_(n) {}

  // Runs `operation` with the round's failure set, and no failure outside it.
  template <class Operation>
  auto Run(Operation operation) {
    std::optional<StatusLog> stop;
    if (family_ == kStopFamily) stop.emplace(n_, kStopValue);
    Headless_FailNth(family_, n_);
    const auto result = operation();
    failed_ = (stop ? stop->percents().size() : Headless_OperationCount(family_)) >= n_;
    Headless_FailNth(family_, 0);
    return result;
  }

  // True when the operation got as far as the failure, be it that it showed or was made good.
  bool Failed() const { return failed_; }

 private:
  Headless_Operation family_;
  uint32_t n_;
  bool failed_ = false;
};

// Calls `round(FailureRound&)` with the first, second, ... operation of the family failing, until a
// round meets no failure any more. Each round must leave alive no more than it found. Returns the
// number of failures.
template <class Round>
uint32_t WalkFailures(Headless_Operation family, Round round) {
  constexpr uint32_t kMost = 10000;
  uint32_t n = 0;
  for (bool failed = true; failed && n < kMost;) {
    ++n;
    SCOPED_TRACE(Told("failure", n, "of family", family));
    Headless_Counts before, after;
    Headless_GetCounts(&before);
    FailureRound now(family, n);
    round(now);
    failed = now.Failed();
    Headless_GetCounts(&after);
    ExpectNoLeak(before, after);
    if (testing::Test::HasFailure()) break;
  }
  EXPECT_LT(n, kMost);
  return n - 1;
}

}  // namespace vn::test

#endif
