#include "platform/headless/drawing/wide_line.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/headless/regions/region_shapes.h"
#include "platform/headless/surfaces/clip.h"

namespace headless {
namespace {

int32_t Rounded(double length) { return static_cast<int32_t>(std::lround(length)); }

// A straight stretch without its ends, in the rows of the bounds at least. Of an even width the odd
// pixel lies to the left and above.
RegionSet Bar(POINT from, POINT to, int32_t width, const RECT& bounds) {
  const int32_t dx = to.x - from.x, dy = to.y - from.y, before = width / 2;
  if (dy == 0) {
    return RegionSet::FromRect(std::min(from.x, to.x), from.y - before, std::max(from.x, to.x),
                               from.y - before + width);
  }
  if (dx == 0) {
    return RegionSet::FromRect(from.x - before, std::min(from.y, to.y), from.x - before + width,
                               std::max(from.y, to.y));
  }
  // Half of the thickness on either side, as steps along the axes.
  const double scale = width / std::hypot(dx, dy);
  const double x = scale * std::abs(dy), y = scale * std::abs(dx);
  POINT one = {Rounded(x / 2), Rounded(y / 2)},
        other = {Rounded((x + 1) / 2), Rounded((y + 1) / 2)};
  if (dx < 0) one.y = -one.y, other.y = -other.y;
  if (dy < 0) {
    std::swap(one, other);
    one.x = -one.x, other.x = -other.x;
  }
  const POINT corners[] = {{from.x - one.x, from.y + one.y},
                           {from.x + other.x, from.y - other.y},
                           {to.x + other.x, to.y - other.y},
                           {to.x - one.x, to.y + one.y}};
  return PolygonSet(corners, 4, ALTERNATE, bounds.top, bounds.bottom);
}

// What lies in the bounds of a set of a rectangle for each band, moved to a place.
RegionSet PartAt(const RegionSet& set, POINT place, const RECT& bounds) {
  RectList part;
  const RECT* at =
      std::partition_point(set.rects().begin(), set.rects().end(),
                           [&](const RECT& rect) { return rect.bottom + place.y <= bounds.top; });
  for (; at != set.rects().end() && at->top + place.y < bounds.bottom; ++at) {
    const RECT seen = Common(
        {at->left + place.x, at->top + place.y, at->right + place.x, at->bottom + place.y}, bounds);
    if (seen.left < seen.right) part.Append(seen);
  }
  return RegionSet::FromBands(std::move(part), false);
}

// Joins pieces by halves: each rectangle is then looked at a few times, not once for each piece.
template <class Piece>
RegionSet Join(size_t first, size_t end, const Piece& piece) {
  if (end - first == 1) return piece(first);
  const size_t middle = first + (end - first) / 2;
  RegionSet all = Join(first, middle, piece);
  CombineSets(all, all, Join(middle, end, piece), RGN_OR);
  return all;
}

}  // namespace

RegionSet WideLine(const POINT* points, size_t count, bool closed, int32_t width,
                   const RECT& bounds) {
  const int32_t low = -(width / 2), high = (width + 1) / 2 + 1;
  const RegionSet nib = RoundRectSet(low, low, high, high, high - low, high - low);
  const RegionSet within =
      RegionSet::FromRect(bounds.left, bounds.top, bounds.right, bounds.bottom);
  const auto seen = [&](POINT a, POINT b) {
    return std::min(a.x, b.x) - width < bounds.right && std::max(a.x, b.x) + width >= bounds.left &&
           std::min(a.y, b.y) - width < bounds.bottom && std::max(a.y, b.y) + width >= bounds.top;
  };
  return Join(0, count, [&](size_t i) {
    const POINT from = points[i], to = closed || i + 1 < count ? points[(i + 1) % count] : from;
    RegionSet piece;
    if (!seen(from, to)) return piece;
    piece = PartAt(nib, from, bounds);
    if (from.x == to.x && from.y == to.y) return piece;
    RegionSet bar = Bar(from, to, width, bounds);
    CombineSets(bar, bar, within, RGN_AND);
    CombineSets(piece, piece, bar, RGN_OR);
    return piece;
  });
}

}  // namespace headless
