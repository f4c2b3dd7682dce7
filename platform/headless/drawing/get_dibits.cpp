// GetDIBits: a bitmap's rows in the layout that the caller names.
#include <algorithm>
#include <cstring>

#include "platform/headless/devices/context.h"
#include "platform/headless/drawing/dib_format.h"
#include "platform/headless/surfaces/bitmap.h"
#include "platform/headless/surfaces/blit.h"
#include "platform/headless/surfaces/device_colors.h"

namespace headless {
namespace {

// What a header tells of a bitmap whose depth is not asked for: its own.
void DescribeBitmap(const Surface& surface, BITMAPINFOHEADER* header) {
  const uint32_t bits = surface.layout.bits;
  header->biWidth = surface.width;
  header->biHeight = surface.height;
  header->biPlanes = 1;
  header->biBitCount = static_cast<WORD>(bits);
  header->biCompression = bits == 16 || surface.layout != LayoutOf(bits) ? BI_BITFIELDS : BI_RGB;
  header->biSizeImage = static_cast<DWORD>(RowBytes(static_cast<uint64_t>(surface.width), bits) *
                                           static_cast<uint64_t>(surface.height));
  header->biXPelsPerMeter = 0;
  header->biYPelsPerMeter = 0;
  header->biClrUsed = 0;
  header->biClrImportant = 0;
}

// The colours that a DIB of the bitmap gets: its own at the same depth, else the fixed ones.
const ColorTable& AnswerColors(const Surface& surface, uint32_t bits) {
  return surface.layout.bits == bits && surface.colors ? *surface.colors : *FixedColors(bits);
}

void WriteTable(const ColorTable& colors, UINT usage, const DibFormat& format, BITMAPINFO* info) {
  auto* at = reinterpret_cast<uint8_t*>(info) + info->bmiHeader.biSize;
  if (usage == DIB_RGB_COLORS) {
    for (uint32_t i = 0; i < colors.count; ++i)
      std::memcpy(at + i * format.entryBytes, &colors.entries[i], format.entryBytes);
    return;
  }
  for (uint32_t i = 0; i < colors.count; ++i) {
    const auto index = static_cast<WORD>(i);
    std::memcpy(at + i * sizeof index, &index, sizeof index);
  }
}

// Zeroes the rows that are not drawn whole, up to their padding.
void ClearOutside(const Surface& target, const Axis& columns, const Axis& rows, uint64_t stride) {
  const uint64_t drawn = uint64_t{static_cast<uint32_t>(columns.count)} * target.layout.bits;
  for (int32_t y = 0; y < target.height; ++y) {
    const bool inside = y >= rows.first && y - rows.first < rows.count;
    const auto from = static_cast<size_t>(inside ? drawn / 8 : 0);
    std::memset(target.Row(y) + from, 0, static_cast<size_t>(stride) - from);
  }
}

// The DIB and the bitmap share their upper left corner. Lines count from the DIB's lowest one, for
// top-down DIBs too, and are written from the start of `bits` on; what lies outside of the bitmap
// is zero. The number of lines that the bitmap has.
int ReadLines(const Surface& surface, const DibFormat& format, const ColorTable* colors, UINT first,
              UINT lines, void* bits) {
  DibFormat part = format;
  part.height = static_cast<int32_t>(lines);
  Surface target = DibSurface(part, static_cast<uint8_t*>(bits));
  if (colors) target.colors = std::make_shared<ColorTable>(*colors);
  const ColorTable* from = surface.monochrome() ? FixedColors(1).get() : surface.colors.get();
  const ColorMap map(surface.layout, from, target, {});
  const int32_t top = format.height - static_cast<int32_t>(first) - part.height;
  const Axis rows = MakeAxis(0, part.height, part.height, top, part.height, surface.height);
  const Axis columns = MakeAxis(0, format.width, format.width, 0, format.width, surface.width);
  ClearOutside(target, columns, rows, format.stride);
  Blit({&target, nullptr, columns, rows, &surface, &map, nullptr, {}, RasterOp(SRCCOPY)});
  return rows.count;
}

}  // namespace
}  // namespace headless

using namespace headless;

// A depth of 0 asks for the bitmap's own header. Without bits, or without a line to read, it
// answers the DIB's size and colours; that counts as 1 line. 0 for a failure.
int GetDIBits(HDC context, HBITMAP bitmap, UINT firstLine, UINT lines, LPVOID bits,
              BITMAPINFO* info, UINT usage) {
  return Enter<int>(0, [&]() -> int {
    const auto* found = Find<Bitmap>(bitmap);
    if (!Find<Context>(context) || !found || !info || usage > DIB_PAL_COLORS) return 0;
    const Surface& surface = found->surface;
    BITMAPINFOHEADER& header = info->bmiHeader;
    const bool core = header.biSize < sizeof header;
    if (!core && header.biBitCount == 0) {
      DescribeBitmap(surface, &header);
      return surface.height;
    }
    DibFormat format;
    if (!ReadDibFormat(info, &format)) return 0;
    const ColorTable* colors = nullptr;
    if (format.layout.indexed()) {
      colors = &AnswerColors(surface, format.layout.bits);
      WriteTable(*colors, usage, format, info);
    }
    if (!core) {
      header.biClrUsed = 0;
      header.biSizeImage = static_cast<DWORD>(format.bytes());
    }
    const auto height = static_cast<UINT>(format.height);
    if (!bits || lines == 0 || firstLine >= height) return 1;
    return ReadLines(surface, format, colors, firstLine, std::min(lines, height - firstLine), bits);
  });
}
