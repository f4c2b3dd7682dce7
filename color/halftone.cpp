// Halftones: the gray of each pixel against the threshold at its place, on a fixed or a turned
// lattice.
#include <cstring>

#include "color/gray_rows.h"
#include "color/threshold_matrices.h"
#include "geometry/fixed_sine.h"
#include "kernel/guards.h"
#include "kernel/pixel_format.h"
#include "kernel/progress.h"
#include "kernel/replacement_bitmap.h"
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"

namespace vn {
namespace {

using Matrix = uint8_t[8][8];

// The nibbles of a group of eight pixels at 4 bits. Pixels 1 and 5 repeat their left neighbours and
// pixels 2 and 6 come early: halftones of 4-bit pictures have always been made so.
void GraysOfNibbles(const uint8_t* source, uint8_t* target, size_t width, const uint8_t* levels) {
  static constexpr uint8_t kNibble[8] = {0, 0, 1, 3, 4, 4, 5, 7};
  for (size_t x = 0; x < width; ++x) {
    target[x] = levels[IndexReader<4>::Get(source, (x & ~size_t{7}) + kNibble[x & 7])];
  }
}

// A position on the lattice and its step, in 14-bit fixed point: whole cells and a fraction that
// carries at 1.0 either way.
struct LatticeAxis {
  int32_t cell = 0;
  int32_t fraction = 0;

  void Advance(int32_t step) {
    fraction += step;
    if (fraction <= -16384) {
      fraction += 16384;
      --cell;
    } else if (fraction >= 16384) {
      fraction -= 16384;
      ++cell;
    }
  }
};

// The matrix laid over the picture without turning.
class FixedLattice {
 public:
  explicit FixedLattice(const Matrix& matrix) : matrix_(matrix) {}
  void Row(const uint8_t* grays, uint8_t* out, size_t width) {
    const uint8_t* thresholds = matrix_[row_++ & 7];
    PixelWriter<1> writer(out);
    for (size_t x = 0; x < width; ++x)
      writer.Put(grays[x] > thresholds[x & 7]);
    writer.Finish();
  }

 private:
  const Matrix& matrix_;
  uint32_t row_ = 0;
};

// The matrix turned by an angle whose sine and cosine are given, counterclockwise over rows that
// lie from the top down. ViewOrigin is not looked at.
class TurnedLattice {
 public:
  TurnedLattice(const Matrix& matrix, int32_t sine, int32_t cosine)
      : matrix_(matrix), sine_(sine), cosine_(cosine) {}
  void Row(const uint8_t* grays, uint8_t* out, size_t width) {
    LatticeAxis u = u_, v = v_;
    PixelWriter<1> writer(out);
    for (size_t x = 0; x < width; ++x) {
      writer.Put(grays[x] > matrix_[v.cell & 7][u.cell & 7]);
      u.Advance(cosine_);
      v.Advance(sine_);
    }
    writer.Finish();
    u_.Advance(-sine_);
    v_.Advance(cosine_);
  }

 private:
  const Matrix& matrix_;
  int32_t sine_, cosine_;
  LatticeAxis u_, v_;
};

struct HalftoneRows {
  ScratchBuffer<uint8_t> source, grays, target;
};

template <class Lattice>
VnStatus RunRows(BitmapHandle* source, BitmapHandle* target, const uint8_t* levels,
                 const HalftoneRows& rows, Lattice& lattice) {
  const GrayRow grays = source->BitsPerPixel == 4
                            ? GraysOfNibbles
                            : SelectGrayRow(source->BitsPerPixel, source->ColorOrder);
  const auto width = static_cast<uint32_t>(source->Width);
  const BitmapLock sourceLock(source), targetLock(target);
  RowView from(source, rows.source.data()), to(target, rows.target.data());
  Progress progress(static_cast<uint32_t>(source->Height));
  if (!progress.Begin()) return progress.Result();
  for (uint32_t row = 0; row < static_cast<uint32_t>(source->Height); ++row) {
    grays(from.Read(row), rows.grays.data(), width, levels);
    uint8_t* out = to.Target(row);
    std::memset(out, 0, target->BytesPerLine);
    lattice.Row(rows.grays.data(), out, width);
    to.Store(row);
    if (!progress.Step()) break;
  }
  return progress.Result();
}

// `run` lays its lattice over the picture: run(source, target, levels, rows) gives the status.
template <class Run>
VnStatus Halftone(BitmapHandle* bitmap, uint32_t type, Run&& run) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  if (type > HALFTONE_ORDERED) return ERR_INVALID_PARAMETER;
  uint8_t levels[256];
  if (!HoldsGraySource(*bitmap) || !ReadGrayLevels(*bitmap, levels)) return ERR_NO_BITMAP;
  HalftoneRows rows;
  rows.source = ScratchBuffer<uint8_t>(bitmap->BytesPerLine, Fill::kZero);
  rows.grays = ScratchBuffer<uint8_t>(static_cast<uint32_t>(bitmap->Width));
  if (!rows.source || !rows.grays) return ERR_NO_MEMORY;

  ReplacementBitmap halftone(bitmap);
  if (halftone.CreateDerived(1) != OK) return ERR_NO_MEMORY;
  halftone->Palette = Vn_CreateFixedPalette(1);
  Vn_CreatePaletteIndexes(halftone.get());
  rows.target = ScratchBuffer<uint8_t>(halftone->BytesPerLine);
  if (!rows.target) return ERR_NO_MEMORY;

  const Matrix& matrix = type == HALFTONE_CLUSTERED ? ClusteredMatrix : OrderedMatrix;
  const VnStatus result = run(halftone.get(), levels, rows, matrix);
  if (result == OK) halftone.Commit();
  return result;
}

// The turn of the walk over the matrix for a turn of the matrix over the picture, 0 to 35999
// hundredths of a degree.
int32_t FoldAngle(int32_t angle) {
  const int32_t folded = -(angle % 36000);
  return folded < 0 ? folded + 36000 : folded;
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_HalfToneBitmap(BitmapHandle* bitmap, uint32_t type) {
  using namespace vn;
  return Halftone(bitmap, type,
                  [&](BitmapHandle* target, const uint8_t* levels, const HalftoneRows& rows,
                      const Matrix& matrix) {
                    FixedLattice lattice(matrix);
                    return RunRows(bitmap, target, levels, rows, lattice);
                  });
}

VnStatus VN_CALL Vn_HalfToneBitmapExt(BitmapHandle* bitmap, uint32_t type, int32_t angle) {
  using namespace vn;
  return Halftone(bitmap, type,
                  [&](BitmapHandle* target, const uint8_t* levels, const HalftoneRows& rows,
                      const Matrix& matrix) {
                    const int32_t turn = FoldAngle(angle);
                    TurnedLattice lattice(matrix, FixedSin(turn), FixedCos(turn));
                    return RunRows(bitmap, target, levels, rows, lattice);
                  });
}
