#include "geometry/inverse_walk.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vn {
namespace {

// a * c + b * s, wrapping.
int32_t Combine(int32_t a, int32_t c, int32_t b, int32_t s) {
  const auto product = [](int32_t m, int32_t n) {
    return static_cast<uint32_t>(m) * static_cast<uint32_t>(n);
  };
  return static_cast<int32_t>(product(a, c) + product(b, s));
}
int32_t Subtract(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

int64_t CeilingOf(int64_t dividend, int64_t divisor) { return (dividend + divisor - 1) / divisor; }

// Steps until `pixels` pixels, at least one, have been carried. `fraction` and `step` count in the
// direction of the step.
int64_t StepsToCarry(int64_t pixels, int64_t fraction, int64_t step) {
  if (step == 0) return std::numeric_limits<int64_t>::max();
  return CeilingOf(pixels * kFixedOne - fraction, step);
}

// The steps during which a coordinate lies in 0 to `size` - 1: one run, as it never turns back.
PixelSpan StepsInside(const WalkCoordinate& start, int32_t step, int32_t size) {
  const int64_t sign = step < 0 ? -1 : 1;
  const int64_t at = start.whole * sign, fraction = start.fraction * sign;
  const int64_t nearEnd = step < 0 ? 1 - int64_t{size} : 0, farEnd = step < 0 ? 0 : size - 1;
  return {at >= nearEnd ? 0 : StepsToCarry(nearEnd - at, fraction, std::abs(step)),
          at > farEnd ? 0 : StepsToCarry(farEnd - at + 1, fraction, std::abs(step))};
}

}  // namespace

WalkCoordinate WalkCoordinate::At(int32_t value, int32_t origin) {
  return {int64_t{Trunc14(value)} + origin, Remainder14(value)};
}

WalkCoordinate WalkCoordinate::After(int64_t count, int32_t step) const {
  const int64_t way = fraction + count * step;
  const int64_t ahead = step < 0 ? -way : way;
  const int64_t carried = ahead >= kFixedOne ? ahead >> 14 : 0;
  const int64_t pixels = step < 0 ? -carried : carried;
  return {whole + pixels, static_cast<int32_t>(way - pixels * kFixedOne)};
}

int64_t WalkCoordinate::Lag(int32_t step) const {
  if (step == 0) return std::numeric_limits<int64_t>::max();
  const int64_t behind = step < 0 ? fraction : -int64_t{fraction};
  return behind > 0 ? CeilingOf(behind, std::abs(step)) : 0;
}

int32_t FoldedAngle(int32_t rotation) {
  const int32_t folded = static_cast<int32_t>(0u - static_cast<uint32_t>(rotation)) % kFullTurn;
  return folded < 0 ? folded + kFullTurn : folded;
}

InverseWalk::InverseWalk(PictureSize source, PictureSize destination, int32_t angle)
    : source_(source),
      columns_(destination.width),
      stepX_(FixedCos(angle)),
      stepY_(FixedSin(angle)) {
  const int32_t halfWidth = destination.width / 2, halfHeight = destination.height / 2;
  x_ = WalkCoordinate::At(Combine(halfHeight, stepY_, halfWidth, -stepX_), source.width / 2);
  y_ = WalkCoordinate::At(Combine(halfHeight, -stepX_, halfWidth, -stepY_), source.height / 2);
}

PictureSize InverseWalk::BoundingBox(PictureSize picture, int32_t angle) {
  const int32_t c = FixedCos(angle), s = FixedSin(angle);
  const int32_t cx = static_cast<int32_t>((static_cast<uint32_t>(picture.width) + 1) / 2);
  const int32_t cy = static_cast<int32_t>((static_cast<uint32_t>(picture.height) + 1) / 2);
  const int32_t xs[] = {-cx, picture.width - 1 - cx};
  const int32_t ys[] = {cy, cy - (picture.height - 1)};
  int32_t left = INT32_MAX, right = INT32_MIN, top = INT32_MAX, bottom = INT32_MIN;
  for (const int32_t x : xs) {
    for (const int32_t y : ys) {
      const int32_t turnedX = Trunc14(Combine(x, c, y, -s)) + cx;
      const int32_t turnedY = cy - Trunc14(Combine(y, c, x, s));
      left = std::min(left, turnedX);
      right = std::max(right, turnedX);
      top = std::min(top, turnedY);
      bottom = std::max(bottom, turnedY);
    }
  }
  return {Subtract(right, left - 1), Subtract(bottom, top - 1)};
}

WalkRow InverseWalk::Row(uint32_t row) const {
  WalkRow found{x_.After(row, -stepY_), y_.After(row, stepX_), 0, 0, {}};
  found.lagX = found.x.Lag(stepX_);
  found.lagY = found.y.Lag(stepY_);
  const PixelSpan x = StepsInside(found.x, stepX_, source_.width);
  const PixelSpan y = StepsInside(found.y, stepY_, source_.height);
  found.inside.first = std::max(x.first, y.first);
  found.inside.end = std::min<int64_t>({x.end, y.end, columns_});
  if (found.inside.first >= found.inside.end) found.inside = {0, 0};
  return found;
}

}  // namespace vn
