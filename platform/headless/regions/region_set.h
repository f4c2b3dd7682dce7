// Sets of pixels as banded rectangle lists, and the operations on them.
#ifndef VNCORE_PLATFORM_HEADLESS_REGION_SET_H
#define VNCORE_PLATFORM_HEADLESS_REGION_SET_H

#include <cstddef>
#include <cstdint>

#include <vncore/platform/win32.h>

namespace headless {

// A growing array of rectangles whose new elements are not touched before they are written.
// Exhausted memory is std::bad_alloc.
class RectList {
 public:
  RectList() = default;
  RectList(const RectList&) = delete;
  RectList& operator=(const RectList&) = delete;
  RectList(RectList&& other) noexcept { Swap(other); }
  RectList& operator=(RectList&& other) noexcept {
    Swap(other);
    return *this;
  }
  ~RectList();

  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  RECT* begin() { return data_; }
  RECT* end() { return data_ + size_; }
  const RECT* begin() const { return data_; }
  const RECT* end() const { return data_ + size_; }
  RECT& operator[](size_t i) { return data_[i]; }
  const RECT& operator[](size_t i) const { return data_[i]; }

  void Clear() { size_ = 0; }
  // Room for `count` more behind the end; what is written there counts after CommitTo.
  RECT* Room(size_t count) {
    if (capacity_ - size_ < count) Grow(size_ + count);
    return data_ + size_;
  }
  void CommitTo(const RECT* end) { size_ = static_cast<size_t>(end - data_); }
  void Append(const RECT& rect) {
    RECT* at = Room(1);
    *at = rect;
    CommitTo(at + 1);
  }
  void Append(const RECT* from, size_t count);
  // Puts `with` in the place of the elements from `first` to before `last`.
  void Replace(size_t first, size_t last, const RectList& with);
  void Assign(const RectList& other);
  // Gives back the memory behind the end.
  void Trim();
  void Swap(RectList& other) noexcept;

 private:
  void Grow(size_t least);

  RECT* data_ = nullptr;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

// Whether two rectangles have a pixel in common; one without pixels lies strictly inside.
bool BoundsMeet(const RECT& a, const RECT& b);

// Rectangles of one band share top and bottom and stand by rising left without overlap; bands stand
// by rising top without overlap.
class RegionSet {
 public:
  RegionSet() = default;
  // Corners in any order.
  static RegionSet FromRect(int32_t left, int32_t top, int32_t right, int32_t bottom);
  // Takes a list that is banded already, empty rectangles excluded. `coalesced` tells that no two
  // bands that touch have the same runs.
  static RegionSet FromBands(RectList rects, bool coalesced);

  const RectList& rects() const { return rects_; }
  bool empty() const { return rects_.empty(); }
  bool coalesced() const { return coalesced_; }
  // All zero for an empty set.
  const RECT& bounds() const { return bounds_; }
  // NULLREGION, SIMPLEREGION or COMPLEXREGION.
  int Kind() const;
  bool Contains(int32_t x, int32_t y) const;
  // `rect` has its corners in order. One without pixels meets a set as on Windows: when it lies
  // strictly inside the bounds and its corner, or its place, in the set.
  bool Meets(const RECT& rect) const;

  void Assign(const RegionSet& other);
  void Offset(int32_t x, int32_t y);
  // Puts `with` in the place of the rectangles from `first` to before `last`. The whole is banded
  // again, and coalesced when told.
  void Replace(size_t first, size_t last, const RectList& with, bool coalesced);

 private:
  void Measure();

  RECT bounds_{0, 0, 0, 0};
  RectList rects_;
  bool coalesced_ = true;
};

// Writes the combination of two sets under an RGN_ mode other than RGN_COPY. `result` may be one of
// the operands.
void CombineSets(RegionSet& result, const RegionSet& a, const RegionSet& b, int mode);

// What a frame of the given thickness along the inner edge of the set covers.
RegionSet FrameOf(const RegionSet& set, int32_t width, int32_t height);

}  // namespace headless

#endif
