// Reading of a BITMAPINFO.
#include "platform/headless/drawing/dib_format.h"

#include <algorithm>
#include <cstring>

namespace headless {

namespace {

constexpr DWORD kCoreHeaderBytes = 12;
constexpr DWORD kRuns8 = 1, kRuns4 = 2;  // values of biCompression

// A header in its long form. False for a length that no header has.
bool ReadHeader(const BITMAPINFO* info, BITMAPINFOHEADER* header) {
  DWORD bytes;
  std::memcpy(&bytes, info, sizeof bytes);
  *header = {};
  if (bytes >= sizeof *header) {
    std::memcpy(header, info, sizeof *header);
    return true;
  }
  if (bytes != kCoreHeaderBytes) return false;
  WORD words[4];
  std::memcpy(words, reinterpret_cast<const uint8_t*>(info) + sizeof bytes, sizeof words);
  header->biSize = bytes;
  header->biWidth = words[0];
  header->biHeight = words[1];
  header->biPlanes = words[2];
  header->biBitCount = words[3];
  return true;
}

bool DepthExists(uint32_t bits) {
  return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

bool CompressionFits(const BITMAPINFOHEADER& header, bool runsAllowed) {
  const uint32_t bits = header.biBitCount;
  switch (header.biCompression) {
    case BI_RGB:
      return true;
    case kRuns8:
    case kRuns4:
      return runsAllowed && bits == (header.biCompression == kRuns8 ? 8 : 4) &&
             header.biHeight > 0 && header.biSizeImage > 0;
    case BI_BITFIELDS:
      return bits == 16 || bits == 32;
    default:
      return false;
  }
}

}  // namespace

bool ReadDibFormat(const BITMAPINFO* info, DibFormat* format, bool runsAllowed) {
  BITMAPINFOHEADER header;
  if (!info || !ReadHeader(info, &header)) return false;
  const uint32_t bits = header.biBitCount;
  if (!DepthExists(bits) || !CompressionFits(header, runsAllowed)) return false;
  if (header.biPlanes == 0 || header.biWidth <= 0 || header.biHeight == 0 ||
      header.biHeight == INT32_MIN)
    return false;

  *format = {};
  format->width = header.biWidth;
  format->height = header.biHeight < 0 ? -header.biHeight : header.biHeight;
  format->topDown = header.biHeight < 0;
  format->layout = LayoutOf(bits);
  format->stride = RowBytes(static_cast<uint64_t>(header.biWidth), bits);
  const auto* start = reinterpret_cast<const uint8_t*>(info);
  if (header.biCompression == BI_BITFIELDS) {
    uint32_t masks[3];
    // In a header that has room for them the masks are its own fields, at the same place.
    std::memcpy(masks, start + sizeof header, sizeof masks);
    format->layout = {bits, masks[0], masks[1], masks[2]};
    return masks[0] != 0 && masks[1] != 0 && masks[2] != 0;
  }
  if (header.biCompression != BI_RGB) format->runBytes = header.biSizeImage;
  if (bits <= 8) {
    const uint32_t full = 1u << bits;
    format->colorCount = header.biClrUsed == 0 ? full : std::min<uint32_t>(header.biClrUsed, full);
    format->entryBytes = header.biSize == kCoreHeaderBytes ? 3 : 4;
    format->table = start + header.biSize;
  }
  return true;
}

bool ReadDibColors(const DibFormat& format, UINT usage, const Context* context,
                   ColorTable* colors) {
  *colors = {};
  colors->count = format.layout.indexed() ? 1u << format.layout.bits : 0;
  if (colors->count == 0) return true;
  if (usage == DIB_RGB_COLORS) {
    for (uint32_t i = 0; i < format.colorCount; ++i)
      std::memcpy(&colors->entries[i], format.table + i * format.entryBytes, format.entryBytes);
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
