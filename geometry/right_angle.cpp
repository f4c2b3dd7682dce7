#include "geometry/right_angle.h"

#include <algorithm>

#include "geometry/mirror_row.h"
#include "geometry/pixel_tile.h"
#include "geometry/transpose.h"
#include "kernel/guards.h"
#include "kernel/replacement_bitmap.h"
#include "region/region_motion.h"

namespace vn {
namespace {

// Edge of the square tiles, in pixels, a multiple of 8. Of a file as much as 4 MiB hold; in memory
// a few cache lines across. The smallest tile needs no memory from the system.
constexpr uint32_t kFileTileBytes = 4u << 20;
constexpr uint32_t kSmallEdge = 32;
constexpr uint32_t kSmallTileBytes = kSmallEdge * kSmallEdge * 4;

uint32_t MemoryEdge(int32_t bits) { return bits < 8 ? 512 / static_cast<uint32_t>(bits) : 64; }

uint32_t FileEdge(int32_t bits) {
  uint32_t edge = kSmallEdge;
  while (PixelTile::RowBytes(bits, edge + kSmallEdge) * (edge + kSmallEdge) <= kFileTileBytes)
    edge += kSmallEdge;
  return edge;
}

// A quarter turn is a transposition of which one side is read or written in reverse order.
class QuarterTurn {
 public:
  // Locked bitmaps of the same depth. `descending` reads source rows from the last one on and fills
  // destination columns from row 0; otherwise the rows rise and columns fill from the last row.
  QuarterTurn(BitmapHandle* source, BitmapHandle* target, bool descending)
      : source_(source),
        target_(target),
        descending_(descending),
        width_(static_cast<uint32_t>(source->Width)),
        height_(static_cast<uint32_t>(source->Height)),
        transpose_(TransposerOf(source->BitsPerPixel)) {
    edge_ = MemoryEdge(source->BitsPerPixel);
    if (source_.InMemory() && target_.InMemory()) return;
    edge_ = FileEdge(source->BitsPerPixel);
    const uint32_t across = std::min(edge_, width_), down = std::min(edge_, height_);
    const int32_t bits = source->BitsPerPixel;
    if ((source_.InMemory() || source_.Allocate(PixelTile::RowBytes(bits, across) * down)) &&
        (target_.InMemory() || target_.Allocate(PixelTile::RowBytes(bits, down) * across))) {
      return;
    }
    edge_ = kSmallEdge;
    source_.UseBuffer(small_[0]);
    target_.UseBuffer(small_[1]);
  }

  VnStatus Run(Progress progress) {
    if (!progress.Begin()) return progress.Result();
    for (uint32_t row = 0; row < height_; row += edge_) {
      const uint32_t rows = std::min(edge_, height_ - row);
      for (uint32_t column = 0; column < width_; column += edge_)
        TurnTile(row, column, rows, std::min(edge_, width_ - column));
      for (uint32_t i = 0; i < rows; ++i) {
        if (!progress.Step()) return progress.Result();
      }
    }
    return OK;
  }

 private:
  // `row` counts source rows in the order of their reading.
  void TurnTile(uint32_t row, uint32_t column, uint32_t rows, uint32_t columns) {
    source_.Place(descending_ ? height_ - row - rows : row, column, rows, columns);
    target_.Place(descending_ ? column : width_ - column - columns, row, columns, rows);
    source_.Read();
    if (descending_) {
      transpose_(source_.Row(rows - 1), -source_.Stride(), target_.Row(0), target_.Stride(), rows,
                 columns);
    } else {
      transpose_(source_.Row(0), source_.Stride(), target_.Row(columns - 1), -target_.Stride(),
                 rows, columns);
    }
    target_.Write();
  }

  PixelTile source_, target_;
  bool descending_;
  uint32_t width_, height_;
  Transposer transpose_;
  uint32_t edge_;
  uint8_t small_[2][kSmallTileBytes] = {};
};

}  // namespace

VnStatus TurnQuarter(BitmapHandle* source, BitmapHandle* target, bool clockwise,
                     Progress progress) {
  ClearRowEnds(target);
  const bool descending = clockwise != (source->ViewOrigin == VIEW_BOTTOM_FIRST);
  return QuarterTurn(source, target, descending).Run(progress);
}

VnStatus RotateRightAngle(BitmapHandle* bitmap, bool clockwise, int32_t statusStart,
                          int32_t statusEnd) {
  if (!HoldsItsPixels(bitmap)) return ERR_NO_BITMAP;
  ReplacementBitmap turned(bitmap);
  VnStatus status = turned.Create(bitmap->Height, bitmap->Width, bitmap->BitsPerPixel);
  if (status != OK) return status;
  {
    const BitmapLock lockSource(bitmap);
    const BitmapLock lockTurned(turned.get());
    status = TurnQuarter(bitmap, turned.get(), clockwise,
                         Progress(static_cast<uint32_t>(bitmap->Height), statusStart, statusEnd));
    if (status == OK) {
      status = RotateRegion(turned.get(), bitmap->Width, bitmap->Height, clockwise ? 9000 : -9000);
    }
  }
  if (status == OK) turned.Commit();
  return status;
}

VnStatus RotateHalfTurn(BitmapHandle* bitmap, int32_t statusStart, int32_t statusEnd) {
  if (!HoldsItsPixels(bitmap)) return ERR_NO_BITMAP;
  const VnStatus status = WorkOnRows(bitmap, RowPairs::kEndsAndMiddle,
                                     MirrorWork(bitmap->BitsPerPixel), statusStart, statusEnd);
  return status == OK ? RotateRegion(bitmap, bitmap->Width, bitmap->Height, 18000) : status;
}

}  // namespace vn
