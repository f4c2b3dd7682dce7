// A slow set of pixels, one flag for each, to hold regions against.
#ifndef VNCORE_TESTS_SUPPORT_PIXEL_SET_H
#define VNCORE_TESTS_SUPPORT_PIXEL_SET_H

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <vncore/vncore.h>
#include "kernel/platform_objects.h"
#include "region/region_record.h"
#include "region/region_union.h"
#include "tests/support/random.h"

namespace vn::test {

// The rectangles of a platform region, in its order.
inline std::vector<RECT> RectsOf(HRGN region) {
  const DWORD bytes = GetRegionData(region, 0, nullptr);
  std::vector<uint32_t> words(bytes / 4 + 1);
  auto* data = reinterpret_cast<RGNDATA*>(words.data());
  EXPECT_EQ(GetRegionData(region, bytes, data), bytes);
  const auto* rects = reinterpret_cast<const RECT*>(words.data() + sizeof(RGNDATAHEADER) / 4);
  EXPECT_EQ(data->rdh.nRgnSize, data->rdh.nCount * sizeof(RECT));
  return {rects, rects + data->rdh.nCount};
}

// Pixels of a window from (low, low) to (high, high); what lies outside is not held.
class PixelSet {
 public:
  PixelSet(int32_t low, int32_t high)
      : low_(low), side_(high - low), on_(static_cast<size_t>(side_) * side_) {}

  bool At(int32_t x, int32_t y) const { return Holds(x, y) && on_[Index(x, y)]; }
  void Set(int32_t x, int32_t y, bool on) {
    if (Holds(x, y)) on_[Index(x, y)] = on;
  }
  template <class Change>
  void ForRect(const RECT& rect, Change change) {
    for (int32_t y = rect.top; y < rect.bottom; ++y) {
      for (int32_t x = rect.left; x < rect.right; ++x)
        Set(x, y, change(At(x, y)));
    }
  }
  template <class Combine>
  static PixelSet Of(const PixelSet& a, const PixelSet& b, Combine combine) {
    PixelSet result = a;
    for (size_t i = 0; i < a.on_.size(); ++i)
      result.on_[i] = combine(a.on_[i], b.on_[i]);
    return result;
  }
  // Of rectangles that must not overlap.
  static PixelSet Of(int32_t low, int32_t high, const std::vector<RECT>& rects) {
    PixelSet set(low, high);
    for (const RECT& rect : rects) {
      set.ForRect(rect, [&](bool on) {
        EXPECT_FALSE(on) << "rectangles overlap at " << rect.left << ", " << rect.top;
        return true;
      });
    }
    return set;
  }
  int32_t Count() const { return static_cast<int32_t>(std::count(on_.begin(), on_.end(), true)); }
  // All zero when there is no pixel.
  RECT Bounds() const {
    RECT box{0, 0, 0, 0};
    bool any = false;
    for (int32_t y = low_; y < low_ + side_; ++y) {
      for (int32_t x = low_; x < low_ + side_; ++x) {
        if (!At(x, y)) continue;
        if (!any) box = {x, y, x + 1, y + 1};
        any = true;
        box.left = std::min<LONG>(box.left, x);
        box.right = std::max<LONG>(box.right, x + 1);
        box.bottom = y + 1;
      }
    }
    return box;
  }
  bool operator==(const PixelSet& other) const = default;

 private:
  bool Holds(int32_t x, int32_t y) const {
    return x >= low_ && y >= low_ && x < low_ + side_ && y < low_ + side_;
  }
  size_t Index(int32_t x, int32_t y) const {
    return static_cast<size_t>(y - low_) * side_ + static_cast<size_t>(x - low_);
  }
  int32_t low_, side_;
  std::vector<bool> on_;
};

inline std::string Text(const RECT& rect) {
  return std::to_string(rect.left) + "," + std::to_string(rect.top) + "," +
         std::to_string(rect.right) + "," + std::to_string(rect.bottom);
}

inline RECT RandomRect(Random& random, int32_t low, int32_t high) {
  const int32_t left = random.Between(low, high - 1), top = random.Between(low, high - 1);
  return {left, top, random.Between(left + 1, high), random.Between(top + 1, high)};
}

using Region = OwnedObject<HRGN>;

// A record without pixels: a region needs no more.
class Plain {
 public:
  Plain(int32_t width, int32_t height, uint32_t origin = VIEW_BOTTOM_FIRST) {
    handle_.Width = width;
    handle_.Height = height;
    handle_.ViewOrigin = origin;
  }
  Plain(const Plain&) = delete;
  Plain& operator=(const Plain&) = delete;
  ~Plain() { Vn_FreeBitmapRgn(&handle_); }
  BitmapHandle* operator->() { return &handle_; }
  operator BitmapHandle*() { return &handle_; }

  void Select(HRGN shape) {
    EXPECT_EQ(Vn_SetBitmapRgnHandle(&handle_, nullptr, shape, REGION_COMBINE_REPLACE), OK);
  }
  std::vector<RECT> Rects() { return {handle_.Region->begin(), handle_.Region->end()}; }
  // What Vn_GetBitmapRgnHandle gives, which fills the cache.
  Region Get(const RegionTransform* transform = nullptr) {
    HRGN got = nullptr;
    EXPECT_EQ(Vn_GetBitmapRgnHandle(&handle_, transform, &got), OK);
    return Region(got);
  }

 private:
  BitmapHandle handle_{};
};

}  // namespace vn::test

#endif
