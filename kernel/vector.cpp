// The one question to the processor.
#include "kernel/vector.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace vn {
namespace {

VectorLevel MachineLevel() {
#ifdef VNCORE_HAVE_AVX2
  if (__builtin_cpu_supports("avx2")) return VectorLevel::kAvx2;
#endif
  return VectorLevel::kNone;
}

VectorLevel FirstLevel() {
  const char* asked = std::getenv("VNCORE_VECTOR");
  return asked && std::strcmp(asked, "none") == 0 ? VectorLevel::kNone : MachineLevel();
}

// Made at first use, so that the initialisers of other files may ask.
std::atomic<VectorLevel>& Level() {
  static std::atomic<VectorLevel> level{FirstLevel()};
  return level;
}

}  // namespace

VectorLevel ActiveVectorLevel() { return Level().load(std::memory_order_relaxed); }

VectorLevel SetVectorLevel(VectorLevel level) {
  return Level().exchange(level == VectorLevel::kNone ? level : MachineLevel());
}

}  // namespace vn
