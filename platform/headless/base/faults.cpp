// Failure injection: one counter and one chosen number per family of operations.
#include "platform/headless/base/faults.h"

#include <atomic>

namespace headless {
namespace {

struct Family {
  std::atomic<uint32_t> count{0};
  std::atomic<uint32_t> failing{0};  // 0: none
};
constinit Family families[HEADLESS_OPERATIONS];

bool IsFamily(Headless_Operation family) {
  return static_cast<uint32_t>(family) < HEADLESS_OPERATIONS;
}

}  // namespace

bool FailsNow(Headless_Operation family) {
  Family& counted = families[family];
  const uint32_t number = counted.count.fetch_add(1, std::memory_order_relaxed) + 1;
  const uint32_t failing = counted.failing.load(std::memory_order_relaxed);
  return failing != 0 && number == failing;
}

}  // namespace headless

void Headless_FailNth(Headless_Operation family, uint32_t n) {
  if (!headless::IsFamily(family)) return;
  headless::families[family].count = 0;
  headless::families[family].failing = n;
}

uint32_t Headless_OperationCount(Headless_Operation family) {
  return headless::IsFamily(family) ? headless::families[family].count.load() : 0;
}
