// Reading of a BITMAPINFO.
#include "platform/headless/dib_format.h"

#include <algorithm>
#include <cstring>

namespace headless {

bool ReadDibFormat(const BITMAPINFO* info, DibFormat* format) {
  if (!info) return false;
  const BITMAPINFOHEADER& header = info->bmiHeader;
  const uint32_t bits = header.biBitCount;
  const bool exists = bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
  const bool fields = header.biCompression == BI_BITFIELDS && (bits == 16 || bits == 32);
  if (header.biSize < sizeof header || !exists || (header.biCompression != BI_RGB && !fields)) {
    return false;
  }
  if (header.biWidth <= 0 || header.biHeight == 0 || header.biHeight == INT32_MIN) return false;

  *format = {};
  format->width = header.biWidth;
  format->height = header.biHeight < 0 ? -header.biHeight : header.biHeight;
  format->topDown = header.biHeight < 0;
  format->layout = LayoutOf(bits);
  format->stride = RowBytes(static_cast<uint64_t>(header.biWidth), bits);
  const auto* after = reinterpret_cast<const uint8_t*>(info) + header.biSize;
  if (fields) {
    uint32_t masks[3];
    // In a header that has room for them the masks are its own fields, at the same place.
    std::memcpy(masks, reinterpret_cast<const uint8_t*>(info) + sizeof header, sizeof masks);
    format->layout = {bits, masks[0], masks[1], masks[2]};
    return masks[0] != 0 && masks[1] != 0 && masks[2] != 0;
  }
  if (bits <= 8) {
    const uint32_t full = 1u << bits;
    format->colorCount = header.biClrUsed == 0 ? full : std::min<uint32_t>(header.biClrUsed, full);
    format->table = after;
  }
  return true;
}

bool ReadDibColors(const DibFormat& format, UINT usage, const Context* context,
                   ColorTable* colors) {
  *colors = {};
  colors->count = format.layout.indexed() ? 1u << format.layout.bits : 0;
  if (colors->count == 0) return true;
  if (usage == DIB_RGB_COLORS) {
    std::memcpy(colors->entries.data(), format.table, format.colorCount * sizeof(RGBQUAD));
    return true;
  }
  const Palette* palette = context ? context->SelectedPalette() : nullptr;
  if (!palette || palette->entries.empty()) return false;
  const size_t count = std::min<size_t>(palette->entries.size(), format.colorCount);
  for (uint32_t i = 0; i < format.colorCount; ++i) {
    WORD index;
    std::memcpy(&index, format.table + i * sizeof index, sizeof index);
    colors->entries[i] = QuadOf(RgbOf(palette->entries[index % count]));
  }
  return true;
}

Surface DibSurface(const DibFormat& format, uint8_t* bits) {
  const auto stride = static_cast<ptrdiff_t>(format.stride);
  Surface surface;
  surface.top = format.topDown ? bits : bits + stride * (format.height - 1);
  surface.pitch = format.topDown ? stride : -stride;
  surface.width = format.width;
  surface.height = format.height;
  surface.layout = format.layout;
  return surface;
}

}  // namespace headless
