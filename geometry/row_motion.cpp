#include "geometry/row_motion.h"

#include <algorithm>

#include "geometry/row_block.h"
#include "kernel/guards.h"
#include "kernel/progress.h"

namespace vn {
namespace {

// Rows of a file come in runs of this size, one from each end.
constexpr uint32_t kRunBytes = 1u << 20;

VnStatus WorkOnEach(BitmapHandle* bitmap, RowPairWork work, RowSize size, Progress progress) {
  RowBlock block(bitmap, kRunBytes);
  if (!block) return ERR_NO_MEMORY;
  if (!progress.Begin()) return progress.Result();
  const auto height = static_cast<uint32_t>(bitmap->Height);
  for (uint32_t row = 0; row < height && progress.Result() == OK;) {
    const uint32_t first = row, end = row + std::min(block.Capacity(), height - row);
    block.Load(first, end - first);
    do {
      work(block.Row(row), block.Row(row), size);
      ++row;
    } while (progress.Step() && row < end);
    block.Store(first, row - first);
  }
  return progress.Result();
}

VnStatus WorkOnEnds(BitmapHandle* bitmap, uint32_t pairs, RowPairWork work, RowSize size,
                    Progress progress) {
  RowBlock low(bitmap, kRunBytes), high(bitmap, kRunBytes);
  if (!low || !high) return ERR_NO_MEMORY;
  if (!progress.Begin()) return progress.Result();
  const auto height = static_cast<uint32_t>(bitmap->Height);
  // A middle row is a run of its own: elsewhere the two runs are apart.
  const uint32_t apart = height / 2;
  for (uint32_t row = 0; row < pairs && progress.Result() == OK;) {
    const uint32_t most = row < apart ? apart - row : 1;
    const uint32_t first = row, count = std::min({low.Capacity(), high.Capacity(), most});
    low.Load(first, count);
    const bool middle = row == apart;
    if (!middle) high.Load(height - first - count, count);
    do {
      work(low.Row(row), middle ? low.Row(row) : high.Row(height - 1 - row), size);
      ++row;
    } while (progress.Step() && row < first + count);
    low.Store(first, row - first);
    if (!middle) high.Store(height - row, row - first);
  }
  return progress.Result();
}

}  // namespace

VnStatus WorkOnRows(BitmapHandle* bitmap, RowPairs pairs, RowPairWork work, int32_t statusStart,
                    int32_t statusEnd) {
  const BitmapLock lock(bitmap);
  const RowSize size = {static_cast<size_t>(bitmap->Width), bitmap->BytesPerLine};
  const auto height = static_cast<uint32_t>(bitmap->Height);
  if (pairs == RowPairs::kSelf) {
    return WorkOnEach(bitmap, work, size, Progress(height, statusStart, statusEnd));
  }
  const uint32_t count = pairs == RowPairs::kEnds ? height / 2 : (height + 1) / 2;
  return WorkOnEnds(bitmap, count, work, size, Progress(count, statusStart, statusEnd));
}

}  // namespace vn
