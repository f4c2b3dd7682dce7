// The walk of a rotation through its source: for every pixel of the result, the source pixel that
// lies there. All in 14-bit fixed point and storage coordinates.
#ifndef VNCORE_GEOMETRY_INVERSE_WALK_H
#define VNCORE_GEOMETRY_INVERSE_WALK_H

#include <cstdint>

#include "geometry/fixed_sine.h"

namespace vn {

inline constexpr int32_t kFullTurn = 36000;  // in hundredths of a degree

// A coordinate on its way: whole pixels, and a fraction of 14 bits with a sign of its own, below
// one pixel in size. A step adds to the fraction; at a full pixel in either direction that pixel is
// carried. So a coordinate whose fraction has the step's sign is rounded against the step's
// direction, and one that starts with the other sign lags: it stands still until the fraction has
// changed sides.
struct WalkCoordinate {
  int64_t whole;
  int32_t fraction;

  // `value` in fixed point, truncated toward zero, from `origin` on.
  static WalkCoordinate At(int32_t value, int32_t origin);
  // Takes one step of at most one pixel. True when it carried.
  bool Step(int32_t step) {
    fraction += step;
    const int32_t carried = Trunc14(fraction);  // 1, -1 or 0
    fraction -= carried * kFixedOne;
    whole += carried;
    return carried != 0;
  }
  // After `count` such steps.
  WalkCoordinate After(int64_t count, int32_t step) const;
  // Steps for which it lags; INT64_MAX for ever, which is so for a step of 0.
  int64_t Lag(int32_t step) const;
  // Where it is in fixed point, so that with the steps added the whole pixel is the value shifted
  // right by 14. Not while it lags.
  int64_t Position(int32_t step) const { return (whole << 14) + fraction + (step < 0 ? 16383 : 0); }
};

// Destination pixels from `first` up to, and without, `end`.
struct PixelSpan {
  int64_t first, end;
};

// One destination row: where it starts in the source, and which part of it lies inside.
struct WalkRow {
  WalkCoordinate x, y;
  int64_t lagX, lagY;  // of either coordinate, in pixels from the row's start
  PixelSpan inside;    // empty when no pixel is
};

struct PictureSize {
  int32_t width, height;
};

// The angle against which the walk of a rotation runs, 0 to 35999: a positive rotation is clockwise
// where row 0 is on top.
int32_t FoldedAngle(int32_t rotation);
// The angle of that walk in storage coordinates, 0 to 36000.
constexpr int32_t WalkAngle(int32_t folded, bool bottomFirst) {
  return bottomFirst ? kFullTurn - folded : folded;
}

class InverseWalk {
 public:
  // `angle` is that of the walk, 0 to 36000.
  InverseWalk(PictureSize source, PictureSize destination, int32_t angle);

  // Size of the box that holds a picture turned by the angle of a walk. Its centre is a half
  // rounded up, that of the walk a half rounded down. Values wrap in 32 bits.
  static PictureSize BoundingBox(PictureSize picture, int32_t angle);

  WalkRow Row(uint32_t row) const;
  // Where pixel `column` of a row comes from; it may lie outside.
  WalkCoordinate ColumnAt(const WalkRow& row, int64_t column) const {
    return row.x.After(column, stepX_);
  }
  WalkCoordinate RowAt(const WalkRow& row, int64_t column) const {
    return row.y.After(column, stepY_);
  }

  // Steps from a pixel to the next one in its row; from row to row they are turned by a quarter.
  int32_t stepX() const { return stepX_; }
  int32_t stepY() const { return stepY_; }

 private:
  PictureSize source_;
  int32_t columns_;
  int32_t stepX_, stepY_;
  WalkCoordinate x_, y_;
};

}  // namespace vn

#endif
