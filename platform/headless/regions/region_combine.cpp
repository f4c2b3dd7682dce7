// Combination of two banded lists in one sweep down their bands. The sweep is that of the sample
// server's region code (published with the X Window System, 1987): it cuts both lists into
// stretches of rows in which neither changes, keeps or drops what only one of them has, hands
// stretches that both have to the operation, and joins a band to the one above it when they have
// the same runs. Stretches of whole bands that only one list has are moved at once.
#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/headless/regions/region_set.h"

namespace headless {
namespace {

// Rectangles of one list: those of one band, or of bands that follow one another.
struct Band {
  const RECT* begin;
  const RECT* end;
};

// The operations. Overlap writes the runs of rows that both lists have, at most as many as the two
// bands have together, and returns the end of what it wrote.

struct UnionOp {
  static constexpr bool kKeepsFirst = true, kKeepsSecond = true;

  static RECT* Overlap(RECT* out, Band a, Band b, LONG top, LONG bottom) {
    const RECT* first = a.begin->left < b.begin->left ? a.begin++ : b.begin++;
    LONG left = first->left, right = first->right;
    const auto take = [&](const RECT* rect) {
      if (rect->left > right) {
        *out++ = {left, top, right, bottom};
        left = rect->left;
        right = rect->right;
      } else if (rect->right > right) {
        right = rect->right;
      }
    };
    while (a.begin != a.end && b.begin != b.end) {
      take(a.begin->left < b.begin->left ? a.begin++ : b.begin++);
    }
    while (a.begin != a.end)
      take(a.begin++);
    while (b.begin != b.end)
      take(b.begin++);
    *out++ = {left, top, right, bottom};
    return out;
  }
};

struct IntersectOp {
  static constexpr bool kKeepsFirst = false, kKeepsSecond = false;

  static RECT* Overlap(RECT* out, Band a, Band b, LONG top, LONG bottom) {
    while (a.begin != a.end && b.begin != b.end) {
      const LONG left = std::max(a.begin->left, b.begin->left);
      const LONG right = std::min(a.begin->right, b.begin->right);
      if (left < right) *out++ = {left, top, right, bottom};
      const bool aEnds = a.begin->right == right, bEnds = b.begin->right == right;
      a.begin += aEnds;
      b.begin += bEnds;
    }
    return out;
  }
};

struct SubtractOp {
  static constexpr bool kKeepsFirst = true, kKeepsSecond = false;

  static RECT* Overlap(RECT* out, Band a, Band b, LONG top, LONG bottom) {
    for (; a.begin != a.end; ++a.begin) {
      LONG left = a.begin->left;
      const LONG right = a.begin->right;
      while (b.begin != b.end && b.begin->right <= left)
        ++b.begin;
      while (b.begin != b.end && b.begin->left < right) {
        if (left < b.begin->left) *out++ = {left, top, b.begin->left, bottom};
        left = b.begin->right;
        if (left >= right) break;  // it may reach into the next rectangle as well
        ++b.begin;
      }
      if (left < right) *out++ = {left, top, right, bottom};
    }
    return out;
  }
};

// Where the band that begins at `at` ends.
const RECT* BandEnd(const RECT* at, const RECT* end) {
  const LONG top = at->top;
  while (at != end && at->top == top)
    ++at;
  return at;
}

// The first rectangle from `at` on that reaches below `y`, found in growing steps, because it is
// often near.
const RECT* SkipAbove(const RECT* at, const RECT* end, LONG y) {
  size_t step = 1;
  while (step < static_cast<size_t>(end - at) && at[step].bottom <= y) {
    at += step;
    step *= 2;
  }
  const RECT* limit = step < static_cast<size_t>(end - at) ? at + step : end;
  return std::partition_point(at, limit, [y](const RECT& rect) { return rect.bottom <= y; });
}

// One of the two lists, on its way down.
struct Side {
  Side(Band bands, bool joined) : at(bands.begin), end(bands.end), coalesced(joined) {
    band = BandEnd(at, end);
  }
  bool Done() const { return at == end; }
  void To(const RECT* next) {
    at = next;
    band = at == end ? end : BandEnd(at, end);
  }

  const RECT* at;    // first rectangle of the present band
  const RECT* band;  // end of the present band
  const RECT* end;
  bool coalesced;
};

template <class Op>
class Sweep {
 public:
  // Neither list is empty.
  Sweep(const Side& a, const Side& b) : a_(a), b_(b) {
    if (Op::kKeepsFirst) {
      out_.Room(static_cast<size_t>(a.end - a.at) + static_cast<size_t>(b.end - b.at));
    }
    done_ = std::min(a.at->top, b.at->top);
  }

  void Run() {
    while (!a_.Done() && !b_.Done())
      Step();
    if constexpr (Op::kKeepsFirst) Rest(a_);
    if constexpr (Op::kKeepsSecond) Rest(b_);
  }

  RectList& out() { return out_; }
  bool coalesced() const { return coalesced_; }

 private:
  void Step() {
    const LONG aTop = a_.at->top, bTop = b_.at->top;
    if (aTop < bTop && Alone<Op::kKeepsFirst>(a_, bTop)) return;
    if (bTop < aTop && Alone<Op::kKeepsSecond>(b_, aTop)) return;
    const LONG top = std::max({aTop, bTop, done_});
    const LONG bottom = std::min(a_.at->bottom, b_.at->bottom);
    if (top < bottom) {
      RECT* room = out_.Room(static_cast<size_t>(a_.band - a_.at) +
                             static_cast<size_t>(b_.band - b_.at) + 1);
      Close(Op::Overlap(room, {a_.at, a_.band}, {b_.at, b_.band}, top, bottom));
    }
    done_ = bottom;
    if (a_.at->bottom == bottom) a_.To(a_.band);
    if (b_.at->bottom == bottom) b_.To(b_.band);
  }

  // Rows of one list above `limit`, where the other begins. True when the list's present band ends
  // there: it is then at another band.
  template <bool kKeeps>
  bool Alone(Side& side, LONG limit) {
    const LONG bottom = std::min(side.at->bottom, limit);
    if constexpr (kKeeps) {
      const LONG top = std::max(side.at->top, done_);
      if (top < bottom) CopyBand(side, top, bottom);
    }
    done_ = std::max(done_, bottom);
    if (side.at->bottom > limit) return false;
    side.To(side.band);
    if (side.coalesced && !side.Done() && side.at->bottom <= limit) {
      const RECT* next = SkipAbove(side.at, side.end, limit);
      if constexpr (kKeeps) MoveBands(side.at, next);
      side.To(next);
    }
    return true;
  }

  void CopyBand(const Side& side, LONG top, LONG bottom) {
    RECT* out = out_.Room(static_cast<size_t>(side.band - side.at));
    for (const RECT* at = side.at; at != side.band; ++at) {
      *out++ = {at->left, top, at->right, bottom};
    }
    Close(out);
  }

  // Whole bands of a coalesced list, the band above them being of the same list: nothing to join.
  void MoveBands(const RECT* from, const RECT* to) {
    out_.Append(from, static_cast<size_t>(to - from));
    const RECT* band = out_.end() - 1;
    while (band != out_.begin() && band[-1].top == band->top)
      --band;
    above_ = static_cast<size_t>(band - out_.begin());
  }

  // What one list has left when the other is at its end. Only the first of these bands is joined
  // to the one above it.
  void Rest(Side& side) {
    if (side.Done()) return;
    CopyBand(side, std::max(side.at->top, done_), side.at->bottom);
    if (side.band == side.end) return;
    out_.Append(side.band, static_cast<size_t>(side.end - side.band));
    coalesced_ = side.coalesced;
  }

  // Ends a band that was written from the end of the list to `end`, and joins it to the band above
  // it when both have the same runs.
  void Close(const RECT* end) {
    const size_t first = out_.size();
    out_.CommitTo(end);
    const size_t count = out_.size() - first;
    if (count == 0) return;
    RECT* above = out_.begin() + above_;
    const RECT* band = out_.begin() + first;
    if (first - above_ == count && above->bottom == band->top && SameRuns(above, band, count)) {
      const LONG bottom = band->bottom;
      for (size_t i = 0; i < count; ++i)
        above[i].bottom = bottom;
      out_.CommitTo(band);
    } else {
      above_ = first;
    }
  }

  static bool SameRuns(const RECT* a, const RECT* b, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      if (a[i].left != b[i].left || a[i].right != b[i].right) return false;
    }
    return true;
  }

  Side a_, b_;
  RectList out_;
  size_t above_ = 0;  // where the last band of the result begins
  LONG done_;         // rows above are settled
  bool coalesced_ = true;
};

template <class Op>
RegionSet Swept(const RegionSet& a, const RegionSet& b) {
  Sweep<Op> sweep({{a.rects().begin(), a.rects().end()}, a.coalesced()},
                  {{b.rects().begin(), b.rects().end()}, b.coalesced()});
  sweep.Run();
  return RegionSet::FromBands(std::move(sweep.out()), sweep.coalesced());
}

// Combines a coalesced set with another in place: only the bands that the other one can touch, and
// one above and below them that they may join, are gone over.
template <class Op>
void SweepInto(RegionSet& set, const RegionSet& other) {
  const RectList& rects = set.rects();
  const RECT* first = std::partition_point(rects.begin(), rects.end(), [&](const RECT& rect) {
    return rect.bottom <= other.bounds().top;
  });
  const RECT* last = std::partition_point(
      first, rects.end(), [&](const RECT& rect) { return rect.top < other.bounds().bottom; });
  if (first != rects.begin()) {
    const LONG top = first[-1].top;
    while (first != rects.begin() && first[-1].top == top)
      --first;
  }
  if (last != rects.end()) last = BandEnd(last, rects.end());
  Sweep<Op> sweep({{first, last}, true},
                  {{other.rects().begin(), other.rects().end()}, other.coalesced()});
  sweep.Run();
  set.Replace(static_cast<size_t>(first - rects.begin()), static_cast<size_t>(last - rects.begin()),
              sweep.out(), sweep.coalesced());
}

template <class Op>
void SweepTo(RegionSet& result, const RegionSet& a, const RegionSet& b) {
  if (&result == &a && &a != &b && a.coalesced()) {
    SweepInto<Op>(result, b);
  } else {
    result = Swept<Op>(a, b);
  }
}

// A single rectangle around all of `inner`.
bool Covers(const RegionSet& outer, const RegionSet& inner) {
  const RECT &o = outer.bounds(), &i = inner.bounds();
  return outer.rects().size() == 1 && o.left <= i.left && o.top <= i.top && o.right >= i.right &&
         o.bottom >= i.bottom;
}

}  // namespace

void CombineSets(RegionSet& result, const RegionSet& a, const RegionSet& b, int mode) {
  switch (mode) {
    case RGN_AND:
      if (a.empty() || b.empty() || !BoundsMeet(a.bounds(), b.bounds())) {
        result = RegionSet();
      } else {
        result = Swept<IntersectOp>(a, b);
      }
      break;
    case RGN_OR:
      if (a.empty() || (!b.empty() && Covers(b, a) && !Covers(a, b))) {
        result.Assign(b);
      } else if (b.empty() || &a == &b || Covers(a, b)) {
        result.Assign(a);
      } else {
        // Either order gives the same.
        const bool intoB = &result == &b;
        SweepTo<UnionOp>(result, intoB ? b : a, intoB ? a : b);
      }
      break;
    case RGN_DIFF:
      if (a.empty() || b.empty() || !BoundsMeet(a.bounds(), b.bounds())) {
        result.Assign(a);
      } else {
        SweepTo<SubtractOp>(result, a, b);
      }
      break;
    case RGN_XOR: {
      // By its parts and not in a sweep of its own, so that the list comes out as on Windows.
      RegionSet onlyA, onlyB;
      CombineSets(onlyA, a, b, RGN_DIFF);
      CombineSets(onlyB, b, a, RGN_DIFF);
      CombineSets(result, onlyA, onlyB, RGN_OR);
      break;
    }
    default:
      break;
  }
}

}  // namespace headless
