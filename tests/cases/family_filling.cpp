// Segment writes, fill and clear, with and without regions.
#include <algorithm>
#include <optional>

#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

void RandomRegion(Case& test, BitmapHandle* bitmap) {
  for (int32_t i = test.Pick(0, 3); i > 0; --i) {
    const int32_t left = test.Pick(-5, bitmap->Width), top = test.Pick(-5, bitmap->Height);
    const int32_t width = test.Pick(0, 40), height = EllipseHeight(width, test.Pick(0, 20));
    const RECT box = {left, top, left + width, top + height};
    const auto mode = static_cast<uint32_t>(test.Pick(0, 6));
    test.Fold("region", test.random.Chance(2) ? Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, mode)
                                              : Vn_SetBitmapRgnRect(bitmap, nullptr, &box, mode));
  }
}

void SegmentCase(Case& test, Bitmap& bitmap) {
  const int32_t unit = bitmap->BitsPerPixel == 1 ? 8 : bitmap->BitsPerPixel == 4 ? 2 : 1;
  std::vector<uint8_t> source(bitmap->BytesPerLine + 16);
  for (int32_t i = test.Pick(1, 6); i > 0; --i) {
    test.random.Fill(source.data(), source.size());
    const int32_t half = bitmap->Width / unit / 2;
    const int32_t offset = test.Pick(-half, half) * unit;
    const int32_t end = std::min(bitmap->Width, bitmap->Width - offset);
    std::vector<int32_t> segments;
    for (int32_t at = std::max(0, -offset) + test.Pick(0, 9); at < end; at += test.Pick(0, 9)) {
      segments.push_back(at);
      segments.push_back(at = test.Pick(at + 1, end));
    }
    const auto row = static_cast<uint32_t>(test.Pick(0, bitmap->Height - 1));
    test.Note("row %u, offset %d, %d entries", row, offset, static_cast<int>(segments.size()));
    const int32_t state = Vn_LockBitmap(bitmap);
    test.Fold("Vn_PutBitmapRowSegments",
              Vn_PutBitmapRowSegments(bitmap, source.data(), row, offset, segments.data(),
                                      static_cast<int32_t>(segments.size())));
    Vn_UnlockBitmap(bitmap, state);
  }
}

void FillCase(Case& test, Bitmap& bitmap, const Shape& shape) {
  RandomRegion(test, bitmap);
  const int32_t stopAt = test.random.Chance(4) ? test.Pick(0, 1) : -1;
  // A temporary file tells its progress by rows, and which request gives one depends on the world.
  std::optional<ProgressScope> progress;
  if (shape.storage == STORAGE_MEMORY) progress.emplace(test, stopAt, -7);
  if (test.random.Chance(3)) {
    test.Fold("Vn_ClearBitmap", Vn_ClearBitmap(bitmap));
  } else {
    const auto color = static_cast<COLORREF>(test.random.Next() & 0xFFFFFF);
    test.Fold("Vn_FillBitmap", Vn_FillBitmap(bitmap, color));
  }
}

void Run(Case& test) {
  const Shape shape = RandomShape(test, 70, 25);
  Bitmap bitmap(test, shape);
  if (test.random.Chance(2)) {
    SegmentCase(test, bitmap);
  } else {
    FillCase(test, bitmap, shape);
  }
  FoldRecord(test, bitmap);
  FoldPixels(test, bitmap);
}

const Registration registration({"filling", 3000, 0xFDB64FDEE0EAD041u, Run});

}  // namespace

}  // namespace vn::cases
