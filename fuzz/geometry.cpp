// Scaling and geometry: whatever moves pixels to other places, and the region with them.
#include <algorithm>
#include <cmath>
#include <cstring>

#include <vncore/platform/headless/headless.h>
#include "fuzz/calls.h"

namespace vn::fuzz {

namespace {

constexpr double kMostTurned = 1 << 19;  // pixels

// The buffer holds the larger of the two rows.
void Stream(World&, Input& input) {
  const int32_t oldWidth = input.Number(), oldHeight = input.Number();
  const int32_t newWidth = input.Number(), newHeight = input.Number();
  const int32_t bits = input.OneOf({1, 4, 8, 16, 24, 32});
  ResizeState* state = nullptr;
  if (Vn_StartResize(oldWidth, oldHeight, newWidth, newHeight, &state) != OK) return;
  const int32_t pixels = std::max(oldWidth, newWidth);
  if (pixels <= 1 << 13) {
    const auto bytes = static_cast<size_t>((int64_t{pixels} * bits + 31) / 32 * 4);
    const auto buffer = Buffer(input, bytes);
    for (uint32_t rows = input.Below(8); rows > 0; --rows) {
      uint32_t width = 0, count = 0;
      const auto row = static_cast<uint32_t>(input.Number());
      Vn_Resize(buffer.get(), row, bits, &width, &count, state);
    }
  }
  Vn_StopResize(state);
}

// Both have the same depth, for which the caller answers.
void Resize(World& world, Input& input) {
  BitmapHandle* const source = world.Bitmap(input);
  BitmapHandle* const target = world.Bitmap(input);
  if (source->BitsPerPixel != target->BitsPerPixel || source == target) return;
  Vn_ResizeBitmap(source, target);
}

// After a stop or for want of memory palettes and region may have been freed while the record names
// them, which only a platform that counts can tell. Any other failure leaves all as it was.
void Scale(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const Size size = world.TakeSize(input, bitmap->BitsPerPixel);
  Headless_Counts before, after;
  Headless_GetCounts(&before);
  const VnStatus status =
      Vn_SizeBitmap(bitmap, static_cast<int32_t>(size.width), static_cast<int32_t>(size.height));
  Headless_GetCounts(&after);
  if (status == OK || std::memcmp(&before, &after, sizeof before) == 0) return;
  if (status != kStop && status != ERR_NO_MEMORY) std::abort();
  bitmap->Palette = bitmap->PaintPalette = nullptr;
  bitmap->Region = nullptr;
}

// Rows are worked on at 24 bits.
void Resample(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const Size size = world.TakeSize(input, std::max(bitmap->BitsPerPixel, 24), bitmap->BitsPerPixel);
  Vn_ResampleBitmap(bitmap, static_cast<int32_t>(size.width), static_cast<int32_t>(size.height));
}

// Turns and shears grow what they move: a long line becomes a square of its length. What would take
// seconds is left alone.
template <auto Function>
void Turn(World& world, Input& input) {
  Input ahead = input;
  const BitmapHandle* const bitmap = world.Bitmap(ahead);
  const double side = std::fabs(bitmap->Width) + std::fabs(bitmap->Height);
  if (side * side > kMostTurned) return;
  Decoded<Function>(world, input);
}

const Call kCalls[] = {
    &Stream,
    &Resize,
    &Scale,
    &Decoded<&Vn_FillBitmap>,
    &Decoded<&Vn_PutPixelColor>,
    &Decoded<&Vn_OffsetBitmapRgn>,
    &Decoded<&Vn_SetBitmapRgnRoundRect>,
    &Decoded<&Vn_FlipBitmap>,
    &Decoded<&Vn_ReverseBitmap>,
    &Turn<&Vn_RotateBitmap>,
    &Turn<&Vn_RotateBitmapFine>,
    &Turn<&Vn_IntRotateBitmapFine>,
    &Resample,
    &Turn<&Vn_ShearBitmap>,
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
