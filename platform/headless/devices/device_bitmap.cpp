// Bitmaps of a device: CreateBitmap, CreateCompatibleBitmap.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/headless/devices/context.h"
#include "platform/headless/surfaces/bitmap.h"
#include "platform/headless/surfaces/device_colors.h"

namespace headless {
namespace {

// Most bytes that the rows of one bitmap may take.
constexpr uint64_t kLargestBitmap = uint64_t{1} << 31;

// Depths between those that exist are taken up to the next one; 0 for what is too deep.
uint32_t ExistingDepth(uint32_t bits) {
  for (const uint32_t depth : {1u, 4u, 8u, 16u, 24u, 32u}) {
    if (bits <= depth) return depth;
  }
  return 0;
}

HBITMAP AddBitmap(int width, int height, uint32_t bits, std::shared_ptr<ColorTable> colors,
                  const void* rows) {
  if (width == 0 || height == 0) return DefaultBitmap();
  const int64_t w = std::abs(static_cast<int64_t>(width));
  const int64_t h = std::abs(static_cast<int64_t>(height));
  const uint64_t bytes = RowBytes(static_cast<uint64_t>(w), bits) * static_cast<uint64_t>(h);
  if (w > INT32_MAX || h > INT32_MAX || bytes > kLargestBitmap) return nullptr;
  auto bitmap = std::make_unique<Bitmap>(static_cast<int32_t>(w), static_cast<int32_t>(h), bits,
                                         std::move(colors));
  if (rows) {
    const uint64_t rowBytes = WordRowBytes(static_cast<uint64_t>(w), bits);
    const auto* from = static_cast<const uint8_t*>(rows);
    for (int32_t y = 0; y < bitmap->surface.height; ++y, from += rowBytes) {
      std::memcpy(bitmap->surface.Row(y), from, rowBytes);
    }
  }
  return AddNew<HBITMAP>(std::move(bitmap));
}

// What the pixels of a device bitmap of up to 8 bits show: the device's own colours at its depth,
// else the fixed ones. A monochrome bitmap has none.
std::shared_ptr<ColorTable> ColorsFor(const Device& device, uint32_t bits) {
  if (bits == 1 || bits > 8) return nullptr;
  if (bits == static_cast<uint32_t>(device.traits.bitsPerPixel)) return device.Colors();
  return FixedColors(bits);
}

}  // namespace
}  // namespace headless

using namespace headless;

// A size of 0 gives the default bitmap; signs of sizes are not looked at.
HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, LPCVOID bits) {
  return Enter<HBITMAP>(nullptr, [&]() -> HBITMAP {
    const uint32_t depth = ExistingDepth(bitsPerPixel);
    if (planes != 1 || bitsPerPixel == 0 || depth == 0) return nullptr;
    return AddBitmap(width, height, depth, ColorsFor(*Screen(), depth), bits);
  });
}

// Takes the depth of the device, or of the bitmap that a memory context draws on.
HBITMAP CreateCompatibleBitmap(HDC context, int width, int height) {
  return Enter<HBITMAP>(nullptr, [&]() -> HBITMAP {
    const auto* found = Find<Context>(context);
    const Surface* target = found ? found->Target() : nullptr;
    if (!target) return nullptr;
    const uint32_t bits = target->layout.bits;
    return AddBitmap(width, height, bits, ColorsFor(found->device(), bits), nullptr);
  });
}
