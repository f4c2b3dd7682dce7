// Random bitmaps of a case, and what a case folds of them.
#ifndef VNCORE_TESTS_CASES_BITMAPS_H
#define VNCORE_TESTS_CASES_BITMAPS_H

#include <vector>

#include "kernel/owned_bitmap.h"
#include "tests/cases/case.h"

namespace vn::cases {

struct Shape {
  uint32_t width, height;
  int32_t bits;
  uint32_t order, origin;
  int32_t storage;
};

inline constexpr int32_t kDepths[] = {1, 4, 8, 16, 24, 32};

// Any depth, order, origin and storage; 1 to `maxWidth` by 1 to `maxHeight` pixels.
Shape RandomShape(Case& test, int32_t maxWidth, int32_t maxHeight);

// `count` random colours; now and then with flags, gray entries, repeated ones, or a gray
// ramp, rising or falling.
std::vector<RGBQUAD> RandomColors(Case& test, size_t count);

class Bitmap : public OwnedBitmap {
 public:
  // Random pixels, and up to 8 bits the fixed palette or a random one.
  Bitmap(Case& test, const Shape& shape);
  Bitmap() = default;
};

// The fields that tell what the bitmap is; not where it is stored.
void FoldRecord(Case& test, BitmapHandle* bitmap);
// The pixels of all rows, without the fill at a row's end.
void FoldPixels(Case& test, BitmapHandle* bitmap);
// The entries of a palette object.
void FoldPalette(Case& test, const char* what, HPALETTE palette);

// Hears the progress of an operation for the length of a scope, and folds it. Stops the operation
// at call number `stopAt` (the first being 0), if that is not negative, with the code `stopCode`.
class ProgressScope {
 public:
  explicit ProgressScope(Case& test, int32_t stopAt = -1, VnStatus stopCode = 0);
  ProgressScope(const ProgressScope&) = delete;
  ProgressScope& operator=(const ProgressScope&) = delete;
  ~ProgressScope();

 private:
  VnStatusCallBack before_;
};

}  // namespace vn::cases

#endif
