#include "platform/headless/regions/region_set.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace headless {

RectList::~RectList() { std::free(data_); }

void RectList::Grow(size_t least) {
  const size_t capacity = std::max(least, capacity_ + capacity_ / 2);
  void* data = std::realloc(static_cast<void*>(data_), capacity * sizeof(RECT));
  if (!data) throw std::bad_alloc();
  data_ = static_cast<RECT*>(data);
  capacity_ = capacity;
}

void RectList::Append(const RECT* from, size_t count) {
  if (count == 0) return;
  RECT* at = Room(count);
  std::memcpy(at, from, count * sizeof(RECT));
  CommitTo(at + count);
}

void RectList::Replace(size_t first, size_t last, const RectList& with) {
  const size_t behind = size_ - last, size = first + with.size() + behind;
  if (size > size_) Room(size - size_);
  RECT* at = data_ + first;
  if (behind) std::memmove(at + with.size(), data_ + last, behind * sizeof(RECT));
  if (with.size()) std::memcpy(at, with.begin(), with.size() * sizeof(RECT));
  size_ = size;
}

void RectList::Assign(const RectList& other) {
  if (this == &other) return;
  Clear();
  Append(other.begin(), other.size());
}

void RectList::Trim() {
  if (capacity_ - size_ < 64 || size_ == 0) return;
  if (void* data = std::realloc(static_cast<void*>(data_), size_ * sizeof(RECT))) {
    data_ = static_cast<RECT*>(data);
    capacity_ = size_;
  }
}

void RectList::Swap(RectList& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(size_, other.size_);
  std::swap(capacity_, other.capacity_);
}

namespace {

int32_t WrappingAdd(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

int32_t Negated(int32_t a) { return static_cast<int32_t>(0u - static_cast<uint32_t>(a)); }

void OffsetRectBy(RECT& rect, int32_t x, int32_t y) {
  rect.left = WrappingAdd(rect.left, x);
  rect.right = WrappingAdd(rect.right, x);
  rect.top = WrappingAdd(rect.top, y);
  rect.bottom = WrappingAdd(rect.bottom, y);
}

// The outermost columns of some rectangles.
struct Sides {
  LONG left = INT32_MAX, right = INT32_MIN;
};

Sides SidesOf(const RECT* rect, const RECT* end) {
  Sides sides;
  for (; rect != end; ++rect) {
    sides.left = std::min(sides.left, rect->left);
    sides.right = std::max(sides.right, rect->right);
  }
  return sides;
}

}  // namespace

bool BoundsMeet(const RECT& a, const RECT& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

RegionSet RegionSet::FromRect(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  RegionSet set;
  if (left == right || top == bottom) return set;
  set.bounds_ = {std::min(left, right), std::min(top, bottom), std::max(left, right),
                 std::max(top, bottom)};
  set.rects_.Append(set.bounds_);
  return set;
}

RegionSet RegionSet::FromBands(RectList rects, bool coalesced) {
  RegionSet set;
  if (rects.empty()) return set;
  rects.Trim();
  set.rects_.Swap(rects);
  set.coalesced_ = coalesced;
  set.Measure();
  return set;
}

void RegionSet::Measure() {
  if (rects_.empty()) {
    bounds_ = {0, 0, 0, 0};
    coalesced_ = true;
    return;
  }
  const Sides sides = SidesOf(rects_.begin(), rects_.end());
  bounds_ = {sides.left, rects_[0].top, sides.right, rects_[rects_.size() - 1].bottom};
}

void RegionSet::Replace(size_t first, size_t last, const RectList& with, bool coalesced) {
  const Sides old = SidesOf(rects_.begin() + first, rects_.begin() + last);
  const Sides fresh = SidesOf(with.begin(), with.end());
  rects_.Replace(first, last, with);
  coalesced_ = coalesced;
  if (rects_.empty() || (old.left == bounds_.left && fresh.left > old.left) ||
      (old.right == bounds_.right && fresh.right < old.right)) {
    Measure();  // one that went may have been the outermost
  } else {
    bounds_ = {std::min(bounds_.left, fresh.left), rects_[0].top,
               std::max(bounds_.right, fresh.right), rects_[rects_.size() - 1].bottom};
  }
}

int RegionSet::Kind() const {
  if (rects_.empty()) return NULLREGION;
  return rects_.size() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

bool RegionSet::Contains(int32_t x, int32_t y) const {
  const RECT* at = std::partition_point(rects_.begin(), rects_.end(), [&](const RECT& rect) {
    return rect.bottom <= y || (rect.top <= y && rect.right <= x);
  });
  return at != rects_.end() && at->top <= y && at->left <= x;
}

bool RegionSet::Meets(const RECT& rect) const {
  if (!BoundsMeet(bounds_, rect)) return false;
  if (Contains(rect.left, rect.top)) return true;  // also for a rectangle without pixels
  const RECT* at = std::partition_point(rects_.begin(), rects_.end(),
                                        [&](const RECT& r) { return r.bottom <= rect.top; });
  for (; at != rects_.end() && at->top < rect.bottom; ++at) {
    if (at->left < rect.right && rect.left < at->right) return true;
  }
  return false;
}

void RegionSet::Assign(const RegionSet& other) {
  rects_.Assign(other.rects_);
  bounds_ = other.bounds_;
  coalesced_ = other.coalesced_;
}

void RegionSet::Offset(int32_t x, int32_t y) {
  if (rects_.empty()) return;
  OffsetRectBy(bounds_, x, y);
  for (RECT& rect : rects_)
    OffsetRectBy(rect, x, y);
}

RegionSet FrameOf(const RegionSet& set, int32_t width, int32_t height) {
  // The inside is what stays inside when the set is moved by the thickness to all four sides.
  RegionSet inside, moved;
  inside.Assign(set);
  inside.Offset(Negated(width), 0);
  const int32_t moves[][2] = {{width, 0}, {0, Negated(height)}, {0, height}};
  for (const auto& move : moves) {
    moved.Assign(set);
    moved.Offset(move[0], move[1]);
    CombineSets(inside, inside, moved, RGN_AND);
  }
  CombineSets(inside, set, inside, RGN_DIFF);
  return inside;
}

}  // namespace headless
