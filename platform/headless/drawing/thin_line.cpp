// Bresenham's pixels, a run at a time: for each row (of a flat line) or column (of a steep one) the
// stretch that the line spends in it, by quotient and remainder.
#include "platform/headless/drawing/thin_line.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace headless {
namespace {

// One axis: where the line begins, its direction, its length, and the part that is asked for as
// distances from the beginning.
struct Side {
  int64_t start, length, direction, low, high;

  Side(int32_t from, int32_t to, int32_t first, int32_t end)
      : start(from), length(std::abs(int64_t{to} - from)), direction(to < from ? -1 : 1) {
    low = direction > 0 ? first - start : start - end + 1;
    high = direction > 0 ? end - start : start - first + 1;
  }
  // The lower and upper end of the distances from `first` to before `end`.
  std::pair<LONG, LONG> Place(int64_t first, int64_t end) const {
    const int64_t left = direction > 0 ? start + first : start - end + 1;
    return {static_cast<LONG>(left), static_cast<LONG>(left + end - first)};
  }
};

}  // namespace

void AppendThinLine(RectList& runs, POINT from, POINT to, const RECT& bounds) {
  const Side across(from.x, to.x, bounds.left, bounds.right);
  const Side down(from.y, to.y, bounds.top, bounds.bottom);
  const bool flat = across.length > down.length;
  const Side& major = flat ? across : down;
  const Side& minor = flat ? down : across;
  const auto append = [&](int64_t first, int64_t end, int64_t place) {
    const auto [low, high] = major.Place(first, end);
    const auto [side0, side1] = minor.Place(place, place + 1);
    runs.Append(flat ? RECT{low, side0, high, side1} : RECT{side0, low, side1, high});
  };
  const int64_t low = std::max<int64_t>(major.low, 0), high = std::min(major.high, major.length);
  if (low >= high) return;
  if (minor.length == 0) {
    if (minor.low <= 0 && 0 < minor.high) append(low, high, 0);
    return;
  }

  // At distance k the line has come (2 minor k) / (2 major) down, which rounds to
  // (2 minor k + half) / (2 major) rounded down; `half` is one less where the half goes back.
  const int64_t half = major.length - (minor.direction > 0);
  const int64_t stepped = 2 * minor.length, divisor = 2 * major.length;
  const int64_t first = std::max((stepped * low + half) / divisor, minor.low);
  const int64_t last = std::min((stepped * (high - 1) + half) / divisor, minor.high - 1);
  // Run c begins at the first k whose place is c: (divisor c - half) / stepped rounded up.
  const int64_t begins = divisor * first - half + stepped - 1;
  int64_t at = begins / stepped, remainder = begins % stepped;
  if (remainder < 0) remainder += stepped, --at;
  const int64_t length = divisor / stepped, rest = divisor % stepped;
  for (int64_t place = first; place <= last; ++place) {
    const int64_t begin = at;
    at += length;
    remainder += rest;
    if (remainder >= stepped) remainder -= stepped, ++at;
    const int64_t left = std::max(begin, low), right = std::min(at, high);
    if (left < right) append(left, right, place);
  }
}

}  // namespace headless
