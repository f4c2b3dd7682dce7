// Bitmap objects.
#include "platform/headless/surfaces/bitmap.h"

#include <cstring>

namespace headless {

Bitmap::Bitmap(int32_t width, int32_t height, uint32_t bits, std::shared_ptr<ColorTable> colors)
    : Object(OBJ_BITMAP), section_(false) {
  const auto stride = static_cast<size_t>(RowBytes(static_cast<uint64_t>(width), bits));
  memory_ = Pages::ZeroedOrThrow(stride * static_cast<size_t>(height));
  surface = {memory_.base(),   static_cast<ptrdiff_t>(stride), width, height, LayoutOf(bits),
             std::move(colors)};
}

Bitmap::Bitmap(const Surface& rows, Pages memory, std::shared_ptr<Mapping> mapping)
    : Object(OBJ_BITMAP),
      surface(rows),
      memory_(std::move(memory)),
      mapping_(std::move(mapping)),
      section_(true) {}

// A BITMAP; its bits are told for a DIB section only.
int Bitmap::Describe(int bytes, void* result) const {
  if (!result) return sizeof(BITMAP);
  if (bytes < static_cast<int>(sizeof(BITMAP))) return 0;
  const auto width = static_cast<uint64_t>(surface.width);
  const uint64_t rowBytes =
      section_ ? RowBytes(width, surface.layout.bits) : WordRowBytes(width, surface.layout.bits);
  BITMAP answer{};
  answer.bmWidth = surface.width;
  answer.bmHeight = surface.height;
  answer.bmWidthBytes = static_cast<LONG>(rowBytes);
  answer.bmPlanes = 1;
  answer.bmBitsPixel = static_cast<WORD>(surface.layout.bits);
  answer.bmBits = section_ ? bits() : nullptr;
  std::memcpy(result, &answer, sizeof answer);
  return sizeof answer;
}

HBITMAP DefaultBitmap() {
  static const HGDIOBJ handle = AddStockObject(std::make_unique<Bitmap>(1, 1, 1, nullptr));
  return static_cast<HBITMAP>(handle);
}

}  // namespace headless
