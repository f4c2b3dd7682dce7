// The GDI half of the platform: handles, palettes and their realisation, contexts, DIB sections.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <thread>
#include <vector>

#include <vncore/platform/win32.h>
#include "kernel/platform_objects.h"
#include "tests/support/dib_info.h"
#include "tests/support/headless_control.h"
#include "tests/support/random.h"

namespace vn::test {
namespace {

struct Log {
  WORD version = 0x300, count = 0;
  PALETTEENTRY entries[256] = {};
  const LOGPALETTE* get() const { return reinterpret_cast<const LOGPALETTE*>(this); }
};

Log RandomLog(Random& random, int count) {
  Log log;
  log.count = static_cast<WORD>(count);
  for (int i = 0; i < count; ++i)
    random.Fill(&log.entries[i], 3);
  return log;
}

// A 256-pixel row of all values with the identity table of indexes.
struct IdentityRow {
  IdentityRow() : info(DibOf(256, 1, 8)) {
    for (int i = 0; i < 256; ++i) {
      info.indexes[i] = static_cast<WORD>(i);
      row[i] = static_cast<uint8_t>(i);
    }
  }
  int Draw(HDC context, int y, UINT usage) {
    return StretchDIBits(context, 0, y, 256, 1, 0, 0, 256, 1, row, info.get(), usage, SRCCOPY);
  }
  DibInfo info;
  uint8_t row[256];
};

TEST(PlatformGdi, EveryCallOnADeadHandleFails) {
  Random random(1);
  const Log log = RandomLog(random, 16);
  const HPALETTE palette = CreatePalette(log.get());
  const HBITMAP bitmap = CreateBitmap(4, 4, 1, 1, nullptr);
  const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
  const HDC context = CreateCompatibleDC(nullptr);
  const HGDIOBJ all[] = {palette, bitmap, brush, context};
  for (const HGDIOBJ object : all) {
    EXPECT_NE(GetObjectType(object), 0u);
    EXPECT_TRUE(DeleteObject(object));
    EXPECT_EQ(GetObjectType(object), 0u);
    EXPECT_FALSE(DeleteObject(object));
  }
  PALETTEENTRY entry{};
  BITMAP header;
  EXPECT_EQ(GetPaletteEntries(palette, 0, 1, &entry), 0u);
  EXPECT_EQ(SetPaletteEntries(palette, 0, 1, &entry), 0u);
  EXPECT_EQ(GetObjectA(palette, 2, &header), 0);
  EXPECT_EQ(GetObjectA(bitmap, sizeof header, &header), 0);
  EXPECT_EQ(CreatePatternBrush(bitmap), nullptr);
  EXPECT_EQ(GetDeviceCaps(context, BITSPIXEL), 0);
  EXPECT_EQ(SaveDC(context), 0);
  EXPECT_EQ(CreateCompatibleDC(context), nullptr);
  IdentityRow row;
  EXPECT_EQ(row.Draw(context, 0, DIB_RGB_COLORS), 0);
  const HDC alive = CreateCompatibleDC(nullptr);
  for (const HGDIOBJ object : all)
    EXPECT_EQ(SelectObject(alive, object), nullptr);
  EXPECT_EQ(SelectPalette(alive, palette, FALSE), nullptr);
  EXPECT_FALSE(BitBlt(alive, 0, 0, 1, 1, context, 0, 0, SRCCOPY));
  // A live handle of another type is no better.
  EXPECT_EQ(GetPaletteEntries(reinterpret_cast<HPALETTE>(alive), 0, 1, &entry), 0u);
  EXPECT_EQ(SelectPalette(alive, reinterpret_cast<HPALETTE>(alive), FALSE), nullptr);
  DeleteDC(alive);
}

HEADLESS_TEST(PlatformGdi, HandleValuesDoNotComeAgain) {
  std::set<HGDIOBJ> seen;
  for (int i = 0; i < 20000; ++i) {
    const HGDIOBJ brush = CreateSolidBrush(0);
    EXPECT_TRUE(seen.insert(brush).second);
    DeleteObject(brush);
  }
}

TEST(PlatformGdi, SelectedObjectsDieWhenLetGo) {
  const HDC first = CreateCompatibleDC(nullptr), second = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateBitmap(4, 4, 1, 1, nullptr);
  const HGDIOBJ before = SelectObject(first, bitmap);
  EXPECT_EQ(SelectObject(second, bitmap), nullptr);  // in one context at a time
  EXPECT_EQ(SelectObject(first, bitmap), bitmap);
  EXPECT_TRUE(DeleteObject(bitmap));
  EXPECT_EQ(GetObjectType(bitmap), static_cast<DWORD>(OBJ_BITMAP));
  EXPECT_EQ(SelectObject(first, before), bitmap);
  EXPECT_EQ(GetObjectType(bitmap), 0u);

  const HBRUSH brush = CreateSolidBrush(RGB(9, 9, 9));
  EXPECT_EQ(SelectObject(first, brush), GetStockObject(WHITE_BRUSH));
  EXPECT_NE(SelectObject(second, brush), nullptr);  // brushes can be in many
  EXPECT_TRUE(DeleteObject(brush));
  DeleteDC(first);
  EXPECT_EQ(GetObjectType(brush), static_cast<DWORD>(OBJ_BRUSH));
  DeleteDC(second);
  EXPECT_EQ(GetObjectType(brush), 0u);

  EXPECT_TRUE(DeleteObject(GetStockObject(BLACK_BRUSH)));
  EXPECT_EQ(GetObjectType(GetStockObject(BLACK_BRUSH)), static_cast<DWORD>(OBJ_BRUSH));
}

TEST(PlatformGdi, PaletteEntriesAreCutAtTheEnd) {
  Random random(5);
  Log log = RandomLog(random, 10);
  log.entries[7] = log.entries[3];
  const OwnedObject<HPALETTE> palette(CreatePalette(log.get()));
  WORD count = 0;
  EXPECT_EQ(GetObjectA(palette.get(), sizeof count, &count), 2);
  EXPECT_EQ(count, 10);
  PALETTEENTRY entries[16];
  EXPECT_EQ(GetPaletteEntries(palette.get(), 6, 10, entries), 4u);
  EXPECT_EQ(std::memcmp(entries, log.entries + 6, 4 * sizeof entries[0]), 0);
  EXPECT_EQ(GetPaletteEntries(palette.get(), 0, 0, entries), 10u);  // asks for the size
  EXPECT_EQ(GetPaletteEntries(palette.get(), 10, 1, entries), 0u);
  EXPECT_EQ(SetPaletteEntries(palette.get(), 10, 1, entries), 0u);
  EXPECT_EQ(SetPaletteEntries(palette.get(), 9, 5, entries), 1u);
  EXPECT_EQ(GetNearestPaletteIndex(palette.get(), RGB(log.entries[7].peRed, log.entries[7].peGreen,
                                                      log.entries[7].peBlue)),
            3u);  // the first of equals
  EXPECT_TRUE(ResizePalette(palette.get(), 12));
  EXPECT_EQ(GetPaletteEntries(palette.get(), 8, 4, entries), 4u);
  EXPECT_EQ(entries[3].peRed, 0);
  const auto stock = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
  EXPECT_EQ(GetPaletteEntries(stock, 0, 0, nullptr), 20u);
  EXPECT_EQ(SetPaletteEntries(stock, 0, 1, entries), 0u);
}

// In the order of the system's own entries: reserved colours at both ends, between them anything.
HEADLESS_TEST(PlatformGdi, ARealizedPaletteIsShownIndexByIndex) {
  const DisplayScope display(8);
  Random random(7);
  const ScreenDC screen;
  const HDC dc = screen.get();
  PALETTEENTRY system[256];
  ASSERT_EQ(GetSystemPaletteEntries(dc, 0, 256, system), 256u);
  Log log = RandomLog(random, 256);
  std::memcpy(log.entries, system, 10 * sizeof system[0]);
  std::memcpy(log.entries + 246, system + 246, 10 * sizeof system[0]);
  const OwnedObject<HPALETTE> palette(CreatePalette(log.get()));
  const HPALETTE before = SelectPalette(dc, palette.get(), FALSE);
  IdentityRow row;
  Headless_Surface shown;
  EXPECT_EQ(RealizePalette(dc), 256u);
  EXPECT_EQ(RealizePalette(dc), 0u);
  EXPECT_EQ(row.Draw(dc, 3, DIB_PAL_COLORS), 1);
  Headless_GetScreen(&shown);
  EXPECT_EQ(std::memcmp(shown.bits + 3 * shown.stride, row.row, 256), 0);
  // A changed palette is shown by its nearest colours until it is realised again.
  PALETTEENTRY red = {250, 3, 3, 0};
  SetPaletteEntries(palette.get(), 100, 1, &red);
  EXPECT_EQ(row.Draw(dc, 4, DIB_PAL_COLORS), 1);
  EXPECT_NE(GetPixel(dc, 100, 4), RGB(250, 3, 3));
  EXPECT_GT(RealizePalette(dc), 0u);
  EXPECT_EQ(GetPixel(dc, 100, 3), RGB(250, 3, 3));  // the slot's colour changed on the screen
  SelectPalette(dc, before, FALSE);
}

TEST(PlatformGdi, ADibSectionOverAMappingIsTheMappingsBytes) {
  const HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr,
                                            SEC_COMMIT | PAGE_READWRITE, 0, 200000, nullptr);
  auto* view = static_cast<uint8_t*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
  const HDC context = CreateCompatibleDC(nullptr);
  DibInfo info = DibOf(10, 6, 24);
  void* bits = nullptr;
  constexpr uint32_t kOffset = 65536 + 4, kStride = 32;
  const HBITMAP section =
      CreateDIBSection(context, info.get(), DIB_RGB_COLORS, &bits, mapping, kOffset);
  ASSERT_NE(section, nullptr);
  const HGDIOBJ before = SelectObject(context, section);
  view[kOffset + 5 * kStride] = 7;  // the last row in memory is the uppermost
  EXPECT_EQ(GetPixel(context, 0, 0), RGB(0, 0, 7));
  PatBlt(context, 0, 5, 10, 1, WHITENESS);
  EXPECT_EQ(view[kOffset], 255);
  EXPECT_EQ(view[kOffset + kStride], 0);
  BITMAP object;
  EXPECT_EQ(GetObjectA(section, sizeof object, &object), static_cast<int>(sizeof object));
  EXPECT_EQ(object.bmBits, bits);
  EXPECT_EQ(object.bmWidthBytes, 32);

  EXPECT_EQ(
      CreateDIBSection(context, DibOf(200, 6, 24).get(), DIB_RGB_COLORS, &bits, mapping, 199000),
      nullptr);  // beyond the mapping's end
  EXPECT_EQ(bits, nullptr);
  EXPECT_EQ(CreateDIBSection(context, info.get(), DIB_RGB_COLORS, &bits,
                             reinterpret_cast<HANDLE>(uintptr_t{0x7FF0}), 0),
            nullptr);
  // The section holds the pages by itself.
  UnmapViewOfFile(view);
  CloseHandle(mapping);
  EXPECT_EQ(GetPixel(context, 9, 5), RGB(255, 255, 255));
  SelectObject(context, before);
  DeleteObject(section);
  DeleteDC(context);
}

// Monochrome bitmaps take colours from the contexts that they meet.
TEST(PlatformGdi, MonochromeBitmapsTakeTextAndBackgroundColours) {
  const WORD rows[] = {0x00A5, 0x003C};  // 1010'0101 and 0011'1100
  const OwnedObject<HBITMAP> bitmap(CreateBitmap(8, 2, 1, 1, rows));
  const HDC mono = CreateCompatibleDC(nullptr);
  const HGDIOBJ before = SelectObject(mono, bitmap.get());
  {
    const HDC color = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    const OwnedObject<HBITMAP> section(
        CreateDIBSection(color, DibOf(8, 2, 24).get(), DIB_RGB_COLORS, &bits, nullptr, 0));
    const HGDIOBJ first = SelectObject(color, section.get());
    SetTextColor(color, RGB(1, 2, 3));
    SetBkColor(color, RGB(250, 0, 9));
    EXPECT_TRUE(BitBlt(color, 0, 0, 8, 2, mono, 0, 0, SRCCOPY));
    EXPECT_EQ(GetPixel(color, 0, 0), RGB(250, 0, 9));
    EXPECT_EQ(GetPixel(color, 1, 0), RGB(1, 2, 3));
    EXPECT_EQ(GetPixel(color, 1, 1), RGB(1, 2, 3));
    EXPECT_EQ(GetPixel(color, 2, 1), RGB(250, 0, 9));
    // Back: what has the source's background colour becomes 1, which shows as white.
    EXPECT_TRUE(PatBlt(mono, 0, 0, 8, 2, BLACKNESS));
    EXPECT_TRUE(BitBlt(mono, 0, 0, 8, 2, color, 0, 0, SRCCOPY));
    for (int x = 0; x < 8; ++x) {
      EXPECT_EQ(GetPixel(mono, x, 0), 0xA5 >> (7 - x) & 1 ? 0xFFFFFFu : 0u) << x;
    }
    SelectObject(color, first);
    DeleteDC(color);
  }
  SelectObject(mono, before);
  DeleteDC(mono);
}

HEADLESS_TEST(PlatformGdi, ContextsAnswerForTheirSurface) {
  for (const int32_t bits : {1, 4, 8, 16, 24, 32}) {
    const DisplayScope display(bits);
    HDC dc = GetDC(nullptr);
    EXPECT_EQ(GetDeviceCaps(dc, BITSPIXEL), bits);
    EXPECT_EQ((GetDeviceCaps(dc, RASTERCAPS) & RC_PALETTE) != 0, bits == 8);
    EXPECT_EQ(GetDeviceCaps(dc, SIZEPALETTE), bits == 8 ? 256 : 0);
    const HDC memory = CreateCompatibleDC(dc);
    EXPECT_EQ(GetDeviceCaps(memory, BITSPIXEL), 1);  // the default bitmap
    const OwnedObject<HBITMAP> bitmap(CreateCompatibleBitmap(dc, 5, 5));
    const HGDIOBJ before = SelectObject(memory, bitmap.get());
    EXPECT_EQ(GetDeviceCaps(memory, BITSPIXEL), bits);
    // White goes everywhere and comes back, on every depth.
    DibInfo info = DibOf(1, 1, 24);
    const uint8_t white[4] = {255, 255, 255};
    for (const HDC target : {dc, memory}) {
      StretchDIBits(target, 1, 1, 1, 1, 0, 0, 1, 1, white, info.get(), DIB_RGB_COLORS, SRCCOPY);
      EXPECT_EQ(GetPixel(target, 1, 1), RGB(255, 255, 255)) << bits;
      EXPECT_EQ(GetPixel(target, 2, 1), RGB(0, 0, 0)) << bits;
      EXPECT_EQ(GetPixel(target, 1000, 1), CLR_INVALID);
    }
    SelectObject(memory, before);
    DeleteDC(memory);

    // Another display: contexts of the earlier one are dead, and its impossible kinds refused.
    const Headless_Display impossible = {10, 10, 16, 1, 20, DT_RASDISPLAY, 96};
    EXPECT_EQ(Headless_SetDisplay(&impossible), 0);
    EXPECT_EQ(GetDeviceCaps(dc, BITSPIXEL), bits);
    const Headless_Display next = DisplayOf(24);
    EXPECT_EQ(Headless_SetDisplay(&next), 1);
    EXPECT_EQ(GetDeviceCaps(dc, BITSPIXEL), 0);
    EXPECT_EQ(ReleaseDC(nullptr, dc), 0);
  }
}

HEADLESS_TEST(PlatformGdi, ASurfaceOfOtherFieldsTakesEveryPixel) {
  DibInfo info = DibOf(9, 1, 16);
  info.header.biCompression = BI_BITFIELDS;
  const uint32_t masks[] = {0xF800, 0x7E0, 0x1F};
  std::memcpy(info.colors, masks, sizeof masks);
  const HDC context = CreateCompatibleDC(nullptr);
  void* bits = nullptr;
  const OwnedObject<HBITMAP> section(
      CreateDIBSection(context, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0));
  ASSERT_TRUE(section);
  const HGDIOBJ before = SelectObject(context, section.get());
  Random random(3);
  uint8_t row[28];
  random.Fill(row, sizeof row);
  StretchDIBits(context, 0, 0, 9, 1, 0, 0, 9, 1, row, DibOf(9, 1, 24).get(), DIB_RGB_COLORS,
                SRCCOPY);
  for (int x = 0; x < 9; ++x) {
    const uint8_t* c = row + 3 * x;
    EXPECT_EQ(static_cast<uint16_t*>(bits)[x], c[2] >> 3 << 11 | c[1] >> 2 << 5 | c[0] >> 3) << x;
  }
  SelectObject(context, before);
  DeleteDC(context);
}

// Lines and polygons of one slope look the same however far away they begin.
HEADLESS_TEST(PlatformGdi, FiguresComeFromAfar) {
  constexpr LONG kFar = (1 << 27) - 50;
  for (const int width : {0, 1, 2, 9}) {
    std::vector<uint8_t> seen[2];
    for (const LONG reach : {LONG{100}, kFar}) {
      void* bits = nullptr;
      const HDC context = CreateCompatibleDC(nullptr);
      const OwnedObject<HBITMAP> section(
          CreateDIBSection(context, DibOf(64, 40, 24).get(), DIB_RGB_COLORS, &bits, nullptr, 0));
      const OwnedObject<HPEN> pen(CreatePen(width ? PS_SOLID : PS_NULL, width, 0x332211));
      const HGDIOBJ before = SelectObject(context, section.get());
      SelectObject(context, pen.get());
      const POINT shape[] = {
          {-reach, -reach}, {reach, reach}, {reach + 17, reach}, {17 - reach, -reach}};
      EXPECT_TRUE(Polygon(context, shape, 4));
      const POINT line[] = {{-reach, 30 + reach}, {reach, 30 - reach}};
      EXPECT_TRUE(Polyline(context, line, 2));
      SelectObject(context, before);
      DeleteDC(context);
      const auto* const first = static_cast<const uint8_t*>(bits);
      seen[reach == kFar].assign(first, first + 64 * 40 * 3);
    }
    EXPECT_EQ(seen[0], seen[1]) << width;
  }
}

TEST(PlatformGdi, GetPixelEndsWithTheSurface) {
  const HDC memory = CreateCompatibleDC(nullptr);
  for (const LONG height : {3L, -3L}) {
    void* bits = nullptr;
    const OwnedObject<HBITMAP> section(
        CreateDIBSection(memory, DibOf(5, height, 24).get(), DIB_RGB_COLORS, &bits, nullptr, 0));
    ASSERT_TRUE(section);
    const HGDIOBJ before = SelectObject(memory, section.get());
    EXPECT_EQ(GetPixel(memory, 4, 2), RGB(0, 0, 0));
    for (const POINT& point : {POINT{4, 3}, POINT{5, 2}, POINT{-1, 0}, POINT{0, -1}, POINT{0, 3}})
      EXPECT_EQ(GetPixel(memory, point.x, point.y), CLR_INVALID) << point.x << ", " << point.y;
    SelectObject(memory, before);
  }
  DeleteDC(memory);
}

}  // namespace
}  // namespace vn::test
