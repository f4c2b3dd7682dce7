// DIB sections: bitmaps whose pixels the caller sees, in their own memory or in a file mapping.
#include <algorithm>
#include <cstring>

#include "platform/headless/devices/context.h"
#include "platform/headless/drawing/dib_format.h"
#include "platform/headless/surfaces/bitmap.h"

namespace headless {
namespace {

HBITMAP MakeSection(const DibFormat& format, const ColorTable& colors, HANDLE section, DWORD offset,
                    LPVOID* bits) {
  constexpr uint64_t kLargest = uint64_t{1} << 31;
  if (!section && format.bytes() > kLargest) return nullptr;
  Pages memory;
  std::shared_ptr<Mapping> mapping;
  uint8_t* rows = nullptr;
  if (section) {
    mapping = FindMapping(section);
    // Rows lie on 4-byte boundaries in the mapping as elsewhere.
    if (!mapping || offset % 4 != 0 || mapping->size() < offset ||
        mapping->size() - offset < format.bytes()) {
      return nullptr;
    }
    rows = mapping->base() + offset;
  } else {
    memory = Pages::ZeroedOrThrow(format.bytes());
    rows = memory.base();
  }
  Surface surface = DibSurface(format, rows);
  if (format.layout.indexed()) surface.colors = std::make_shared<ColorTable>(colors);
  const auto made =
      AddNew<HBITMAP>(std::make_unique<Bitmap>(surface, std::move(memory), std::move(mapping)));
  if (made && bits) *bits = rows;
  return made;
}

// The colour table of the DIB section that a context draws on, null if it has none.
ColorTable* SectionColors(HDC context) {
  const auto* found = Find<Context>(context);
  const auto* bitmap = found ? Find<Bitmap>(found->state.bitmap) : nullptr;
  return bitmap && bitmap->section() ? bitmap->surface.colors.get() : nullptr;
}

}  // namespace
}  // namespace headless

using namespace headless;

// The context matters for DIB_PAL_COLORS alone.
HBITMAP CreateDIBSection(HDC context, const BITMAPINFO* info, UINT usage, LPVOID* bits,
                         HANDLE section, DWORD offset) {
  if (bits) *bits = nullptr;
  return Enter<HBITMAP>(nullptr, [&]() -> HBITMAP {
    DibFormat format;
    ColorTable colors;
    if (usage > DIB_PAL_COLORS || !ReadDibFormat(info, &format) ||
        !ReadDibColors(format, usage, Find<Context>(context), &colors)) {
      return nullptr;
    }
    for (RGBQUAD& entry : colors.entries)
      entry.rgbReserved = 0;
    return MakeSection(format, colors, section, offset, bits);
  });
}

UINT GetDIBColorTable(HDC context, UINT first, UINT count, RGBQUAD* colors) {
  return Enter<UINT>(0, [&]() -> UINT {
    const ColorTable* table = SectionColors(context);
    if (!table || first >= table->count) return 0;
    const UINT given = std::min<UINT>(count, table->count - first);
    std::copy_n(table->entries.begin() + first, given, colors);
    return given;
  });
}

UINT SetDIBColorTable(HDC context, UINT first, UINT count, const RGBQUAD* colors) {
  return Enter<UINT>(0, [&]() -> UINT {
    ColorTable* table = SectionColors(context);
    if (!table || first >= table->count) return 0;
    const UINT taken = std::min<UINT>(count, table->count - first);
    for (UINT i = 0; i < taken; ++i)
      table->entries[first + i] = QuadOf(RgbOf(colors[i]));
    return taken;
  });
}
