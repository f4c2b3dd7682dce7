// Compositing: fill, clear, row segments, and what lays one bitmap over another.
#include "fuzz/calls.h"

#include <vector>

namespace vn::fuzz {

namespace {

// Segments of the row's own region, or any that lie in the row.
void PutSegments(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  if (bitmap->Width < 1 || bitmap->Width > 1 << 16 || bitmap->Height < 1) return;
  const int32_t row = input.Between(0, bitmap->Height - 1);
  std::vector<int32_t> segments(static_cast<size_t>(bitmap->Width) * 2 + 4);
  int32_t count = 0;
  if (input.Flag()) {
    Vn_GetBitmapClipSegments(bitmap, row, segments.data(), &count);
  } else {
    for (count = static_cast<int32_t>(input.Below(3)) * 2; count > 0; count -= 2) {
      const int32_t left = input.Between(0, bitmap->Width);
      const int32_t right = input.Between(left, bitmap->Width);
      segments.insert(segments.begin(), {left, right});
    }
    count = static_cast<int32_t>(segments.size() - static_cast<size_t>(bitmap->Width) * 2 - 4);
  }
  const auto source = Buffer(input, bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  Vn_PutBitmapRowSegments(bitmap, source.get(), static_cast<uint32_t>(row), 0, segments.data(),
                          count);
  Vn_UnlockBitmap(bitmap, state);
}

// Rectangles that mostly meet, and flags of every group.
void Combine(World& world, Input& input) {
  BitmapHandle* const target = world.Bitmap(input);
  BitmapHandle* const source = input.Below(8) == 7 ? nullptr : world.Bitmap(input);
  const int32_t x = input.Number(), y = input.Number();
  const int32_t width = input.Number(), height = input.Number();
  const int32_t sourceX = input.Number(), sourceY = input.Number();
  const uint32_t operands = input.Byte(), operation = input.Below(13), result = input.Below(5);
  Vn_CombineBitmap(target, x, y, width, height, source, sourceX, sourceY,
                   operands | operation << 8 | result << 12);
}

const Call kCalls[] = {
    &PutSegments,
    &Decoded<&Vn_FillBitmap>,
    &Decoded<&Vn_ClearBitmap>,
    &Decoded<&Vn_PutPixelColor>,
    &Decoded<&Vn_OffsetBitmapRgn>,
    &Decoded<&Vn_SetBitmapRgnHandle>,
    &Combine,
    &Decoded<&Vn_UnderlayBitmap>,
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
