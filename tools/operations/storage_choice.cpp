#include "tools/operations/storage_choice.h"

#include <sys/resource.h>

#include <vncore/vn_storage.h>
#include "platform/headless/memory/free_memory.h"
#include "tools/operations/headless_device.h"

namespace vn::tool {
namespace {

// What the process may take in all, as a user or a batch system has set it, less what a program
// takes without any picture.
uint64_t AllowedBytes() {
  constexpr uint64_t kProgram = uint64_t{64} << 20;
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return UINT64_MAX;
  return limit.rlim_cur > kProgram ? limit.rlim_cur - kProgram : 0;
}

bool Fits(const PictureInfo& info) {
  const uint64_t bytes =
      uint64_t{StrideOf(static_cast<uint32_t>(info.width), static_cast<uint32_t>(info.bits))} *
      static_cast<uint64_t>(info.height);
  const uint64_t withResult = 2 * bytes;
  return withResult <= AllowedBytes() && headless::FitsInMemory(withResult);
}

}  // namespace

int32_t StorageChoice::Settle(const PictureInfo& info) const {
  if (lowMemory || (!kind && !Fits(info))) ClaimWin32s();
  return kind.value_or(STORAGE_AUTO);
}

}  // namespace vn::tool
