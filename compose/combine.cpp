// Vn_CombineBitmap: a rectangle of one bitmap combined into another.
#include <algorithm>
#include <optional>

#include <vncore/vncore.h>
#include "compose/combine_area.h"
#include "compose/combine_rows.h"
#include "compose/row_segments.h"
#include "kernel/guards.h"
#include "kernel/pixel_format.h"
#include "kernel/progress.h"
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"

namespace {

using namespace vn;

bool HasStorage(const BitmapHandle* bitmap) { return bitmap && (bitmap->Flags & FLAG_ALLOCATED); }

// Columns of a row, and the source column that meets the first of them.
struct PixelRun {
  uint32_t left, right, sourceLeft;
};

uint32_t PixelsPerByte(int32_t bits) { return bits < 8 ? 8 / static_cast<uint32_t>(bits) : 1; }

// A column rounded down to the first pixel of its byte.
uint32_t WholeByteColumn(int32_t bits, uint32_t column) {
  return column - column % PixelsPerByte(bits);
}

// Bytes that hold the pixels from column `left` to `right`.
uint32_t BytesOfRun(int32_t bits, uint32_t left, uint32_t right) {
  return ByteOfColumn(bits, right + PixelsPerByte(bits) - 1) - ByteOfColumn(bits, left);
}

// How far, in bits, source pixels lie to the right of where the target's lie in their bytes.
// It is the same for every run of a combination.
uint32_t ShiftOf(int32_t bits, uint32_t left, uint32_t sourceLeft) {
  return bits < 8 ? (sourceLeft - left) * static_cast<uint32_t>(bits) & 7 : 0;
}

// One row of a run. `target` and `source` hold the bytes of the run's first pixels.
CombineSpan SpanOf(int32_t bits, const PixelRun& run, uint8_t* target, const uint8_t* source) {
  const uint32_t perByte = PixelsPerByte(bits);
  const uint32_t pixelBits = bits < 8 ? static_cast<uint32_t>(bits) : 0;
  const uint32_t first = run.left % perByte, sourceFirst = run.sourceLeft % perByte;
  CombineSpan span{};
  span.target = target;
  span.source = source;
  span.bytes = BytesOfRun(bits, run.left, run.right);
  span.rows = 1;
  span.firstMask = static_cast<uint8_t>(0xFF >> first * pixelBits);
  span.lastMask =
      static_cast<uint8_t>(0xFF << (perByte - run.right % perByte) % perByte * pixelBits);
  if (span.bytes == 1) span.firstMask &= span.lastMask;
  if (ShiftOf(bits, run.left, run.sourceLeft) == 0) return span;
  const size_t sourceBytes =
      BytesOfRun(bits, run.sourceLeft, run.sourceLeft + run.right - run.left);
  span.readsBefore = sourceFirst > first;
  if (!span.readsBefore) --span.source;  // the first target byte starts before the first pixel
  span.readsBehind = sourceBytes > span.bytes - (span.readsBefore ? 0 : 1);
  return span;
}

bool Overlap(const BitmapHandle& a, const BitmapHandle& b) {
  return a.Bits < b.Bits + b.DataSize && b.Bits < a.Bits + a.DataSize;
}

class Combination {
 public:
  Combination(BitmapHandle* destination, BitmapHandle* source, const CombineArea& area,
              const CombinePlan& plan)
      : destination_(destination),
        source_(source),
        area_(area),
        bits_(destination->BitsPerPixel),
        readsDestination_(plan.needsDestination),
        all_{static_cast<uint32_t>(area.target.left), static_cast<uint32_t>(area.target.right),
             static_cast<uint32_t>(source ? area.sourceX : area.target.left)},
        choice_(ChooseCombineLoop(plan, bits_, ShiftOf(bits_, all_.left, all_.sourceLeft))) {}

  VnStatus Run() {
    std::optional<BitmapLock> sourceLock;
    if (source_) sourceLock.emplace(source_);
    const BitmapLock targetLock(destination_);
    inPlace_ = PixelAddress(*destination_);
    sourceInPlace_ = source_ && PixelAddress(*source_) && !SharesRows();
    const auto height = static_cast<uint32_t>(area_.target.bottom - area_.target.top);
    Progress progress(height);
    if (progress.Silent() && inPlace_ && !destination_->Region && (!source_ || sourceInPlace_)) {
      CombineBlock(height);
      return OK;
    }
    if (!TakeMemory()) return ERR_NO_MEMORY;
    if (!progress.Begin()) return progress.Result();
    for (uint32_t i = 0; i < height; ++i) {
      CombineLine(Upward() ? height - 1 - i : i);
      if (!progress.Step()) break;
    }
    return progress.Result();
  }

 private:
  bool TakeMemory() {
    segments_.emplace(destination_);
    targetRow_ = ScratchBuffer<uint8_t>(BytesOfRun(bits_, all_.left, all_.right), Fill::kZero);
    if (source_) sourceRow_ = ScratchBuffer<uint8_t>(SourceBytes(), Fill::kZero);
    return *segments_ && targetRow_ && (!source_ || sourceRow_);
  }

  uint32_t SourceBytes() const {
    return BytesOfRun(bits_, all_.sourceLeft, all_.sourceLeft + all_.right - all_.left);
  }

  // Rows of a source that lies above the target, as storage goes, would be overwritten before they
  // are read: from the last row up none is.
  bool Upward() const { return source_ && area_.target.top > area_.sourceY; }

  // Whether the two lie over each other such that a row's pixels can change while they are read.
  // Rows of one bitmap that differ, or pixels that meet themselves, do no harm.
  bool SharesRows() const {
    if (!inPlace_ || !Overlap(*destination_, *source_)) return false;
    const bool oneBitmap =
        destination_->Bits == source_->Bits && destination_->BytesPerLine == source_->BytesPerLine;
    const bool apart = area_.target.top != area_.sourceY;
    return !(oneBitmap && (apart || all_.left == all_.sourceLeft));
  }

  static uint8_t* PixelOf(BitmapHandle* bitmap, uint32_t row, uint32_t column) {
    return bitmap->Bits + size_t{bitmap->BytesPerLine} * row +
           ByteOfColumn(bitmap->BitsPerPixel, column);
  }

  // All rows at once, upward only where they are of one memory.
  void CombineBlock(uint32_t height) {
    const bool upward = Upward() && Overlap(*destination_, *source_);
    const auto targetStride = static_cast<ptrdiff_t>(destination_->BytesPerLine);
    const auto sourceStride = source_ ? static_cast<ptrdiff_t>(source_->BytesPerLine) : 0;
    const uint32_t first = upward ? height - 1 : 0;
    CombineSpan span = SpanOf(bits_, all_, PixelOf(destination_, TargetRow(first), all_.left),
                              SourcePixels(first));
    span.rows = height;
    span.targetStride = upward ? -targetStride : targetStride;
    span.sourceStride = upward ? -sourceStride : sourceStride;
    CombineRows(choice_, span);
  }

  uint32_t TargetRow(uint32_t i) const { return static_cast<uint32_t>(area_.target.top) + i; }

  // The source's pixels of row i of the area, from its first column on.
  const uint8_t* SourcePixels(uint32_t i) {
    if (!source_) return nullptr;
    const uint32_t row = static_cast<uint32_t>(area_.sourceY) + i;
    if (sourceInPlace_) return PixelOf(source_, row, all_.sourceLeft);
    Vn_GetBitmapRowCol(source_, sourceRow_.data(), row, all_.sourceLeft, SourceBytes());
    return sourceRow_.data();
  }

  void CombineLine(uint32_t i) {
    const uint32_t row = TargetRow(i);
    const uint8_t* source = SourcePixels(i);
    const uint32_t firstColumn = WholeByteColumn(bits_, all_.left);
    if (inPlace_) {
      ForRuns(row, [&](uint32_t left, uint32_t right) {
        const uint32_t sourceLeft = all_.sourceLeft + left - all_.left;
        const uint8_t* from =
            source ? source + ByteOfColumn(bits_, sourceLeft) - ByteOfColumn(bits_, all_.sourceLeft)
                   : nullptr;
        const CombineSpan span =
            SpanOf(bits_, {left, right, sourceLeft}, PixelOf(destination_, row, left), from);
        CombineRows(choice_, span);
      });
      return;
    }
    uint8_t* target = targetRow_.data();
    if (readsDestination_) {
      Vn_GetBitmapRowCol(destination_, target, row, all_.left,
                         BytesOfRun(bits_, all_.left, all_.right));
    }
    CombineRows(choice_, SpanOf(bits_, all_, target, source));
    ForRuns(row, [&](uint32_t left, uint32_t right) {
      const int32_t pair[] = {static_cast<int32_t>(left - firstColumn),
                              static_cast<int32_t>(right - firstColumn)};
      Vn_PutBitmapRowSegments(destination_, target, row, static_cast<int32_t>(firstColumn), pair,
                              2);
    });
  }

  // The runs of the region in a row, cut to the area.
  template <class Use>
  void ForRuns(uint32_t row, Use use) {
    segments_->Load(static_cast<int32_t>(row));
    const int32_t* end = segments_->data() + segments_->count();
    for (const int32_t* run = segments_->data(); run != end; run += 2) {
      const auto left = std::max<int32_t>(run[0], area_.target.left);
      const auto right = std::min<int32_t>(run[1], area_.target.right);
      if (left < right) use(static_cast<uint32_t>(left), static_cast<uint32_t>(right));
    }
  }

  BitmapHandle* destination_;
  BitmapHandle* source_;
  CombineArea area_;
  int32_t bits_;
  bool readsDestination_;
  PixelRun all_;
  CombineChoice choice_;
  std::optional<RowSegments> segments_;
  ScratchBuffer<uint8_t> targetRow_, sourceRow_;
  bool inPlace_ = false, sourceInPlace_ = false;
};

VnStatus NothingToDo() {
  Progress progress(1);
  if (progress.Begin()) progress.Step();
  return progress.Result();
}

}  // namespace

VnStatus VN_CALL Vn_CombineBitmap(BitmapHandle* destination, int32_t x, int32_t y, int32_t width,
                                  int32_t height, BitmapHandle* source, int32_t sourceX,
                                  int32_t sourceY, uint32_t flags) {
  if (!HasStorage(destination) || !AreCombineFlags(flags)) return ERR_INVALID_PARAMETER;
  const int32_t bits = destination->BitsPerPixel;
  if (!WithDepth(bits, [](auto) {})) return ERR_INVALID_PARAMETER;
  const CombinePlan plan = PlanCombination(flags, bits == 1);
  if (plan.code == kTableDestination) return NothingToDo();
  if (!plan.needsSource) source = nullptr;
  if (plan.needsSource && (!HasStorage(source) || source->BitsPerPixel != bits)) {
    return ERR_INVALID_PARAMETER;
  }
  CombineArea area;
  if (!CutCombineArea(&area, destination, x, y, width, height, source, sourceX, sourceY)) {
    return NothingToDo();
  }
  return Combination(destination, source, area, plan).Run();
}
