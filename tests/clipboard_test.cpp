// The clipboard, and capture from the screen.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "device/realized_palette.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

void EmptyTheClipboard() {
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  CloseClipboard();
}

// Puts the formats of `flags` on the clipboard, and leaves it empty in the end.
class ClipboardScope {
 public:
  ClipboardScope(BitmapHandle* bitmap, uint32_t flags) {
    EXPECT_EQ(Vn_CopyToClipboardExt(nullptr, bitmap, COPY_EMPTY | flags), OK);
  }
  ClipboardScope(const ClipboardScope&) = delete;
  ClipboardScope& operator=(const ClipboardScope&) = delete;
  ~ClipboardScope() { EmptyTheClipboard(); }
};

// In random colours, as a paste gives it.
class Picture : public RandomBitmap {
 public:
  explicit Picture(int32_t bits, Random random = Random(7))
      : RandomBitmap(random, 29, 13, bits, STORAGE_AUTO, RandomColors(random, 256).data()) {
    get()->ColorOrder = ORDER_BGR;
  }
};

TEST(Clipboard, KeepsWhatItGives) {
  Picture bitmap(24);
  ASSERT_EQ(Vn_CopyToClipboard(nullptr, bitmap), 1);
  EXPECT_TRUE(Vn_ClipboardReady());
  for (int pastes = 0; pastes < 2; ++pastes) {
    Bitmap pasted;
    ASSERT_EQ(Vn_CopyFromClipboard(nullptr, pasted), 1);
    EXPECT_EQ(SeenColors(pasted), SeenColors(bitmap));
  }
  EmptyTheClipboard();
  EXPECT_FALSE(Vn_ClipboardReady());
  Bitmap none;
  EXPECT_EQ(Vn_CopyFromClipboard(nullptr, none), 0);
}

HEADLESS_TEST(Clipboard, HoldsTheFormatsAskedFor) {
  Picture deep(24);
  for (const int32_t screenBits : {8, 24}) {
    const DisplayScope display(screenBits);
    for (uint32_t flags = 0; flags < 16; flags += 2) {
      SCOPED_TRACE(Told(screenBits, "bits, flags", flags));
      const ClipboardScope clipboard(deep, flags);
      EXPECT_EQ(IsClipboardFormatAvailable(CF_DIB), (flags & COPY_DIB) != 0);
      EXPECT_EQ(IsClipboardFormatAvailable(CF_BITMAP), (flags & COPY_DDB) != 0);
      // A true-colour screen needs no palette.
      EXPECT_EQ(IsClipboardFormatAvailable(CF_PALETTE), (flags & COPY_PALETTE) && screenBits == 8);
      EXPECT_EQ(Vn_ClipboardReady() != 0, (flags & (COPY_DIB | COPY_DDB)) != 0);
    }
    // The device bitmap alone, read through the clipboard's palette or the system's.
    for (const uint32_t palette : {0u, uint32_t{COPY_PALETTE}}) {
      const ClipboardScope clipboard(deep, COPY_DDB | palette);
      Bitmap first, second;
      ASSERT_EQ(Vn_CopyFromClipboard(nullptr, first), 1);
      EXPECT_EQ(first->BitsPerPixel, screenBits);
      if (screenBits == 24) {
        EXPECT_EQ(SeenColors(first), SeenColors(deep));
      }
      const ClipboardScope again(first, COPY_DDB);
      ASSERT_EQ(Vn_CopyFromClipboard(nullptr, second), 1);
      EXPECT_EQ(SeenColors(second), SeenColors(first));
    }
  }
}

HEADLESS_TEST(Clipboard, FailsWhileSomebodyElseHoldsIt) {
  Picture bitmap(8);
  EmptyTheClipboard();
  std::thread([&] {
    ASSERT_TRUE(OpenClipboard(nullptr));
    std::thread([&] {
      EXPECT_EQ(Vn_CopyToClipboardExt(nullptr, bitmap, 15), ERR_INVALID_PARAMETER);
      EXPECT_EQ(Vn_CopyToClipboard(nullptr, bitmap), 0);
      Bitmap pasted;
      EXPECT_EQ(Vn_CopyFromClipboard(nullptr, pasted), 0);
      EXPECT_FALSE(EmptyClipboard());
      EXPECT_FALSE(CloseClipboard());
    }).join();
    EXPECT_TRUE(CloseClipboard());
  }).join();
  EXPECT_FALSE(Vn_ClipboardReady());
  BitmapHandle none = {};
  EXPECT_EQ(Vn_CopyToClipboardExt(nullptr, &none, 15), ERR_NO_BITMAP);
}

// A block from elsewhere that is too short, for its colours or for its rows.
HEADLESS_TEST(Clipboard, ReadsNothingBehindAForeignBlock) {
  Picture bitmap(8);
  const HGLOBAL whole = Vn_ConvertToDIB(bitmap);
  const SIZE_T size = GlobalSize(whole);
  for (const SIZE_T bytes : {SIZE_T{39}, SIZE_T{40}, SIZE_T{500}, size - 1, size}) {
    SCOPED_TRACE(bytes);
    const HGLOBAL cut = GlobalAlloc(GMEM_MOVEABLE, bytes);
    std::memcpy(GlobalLock(cut), GlobalLock(whole), bytes);
    GlobalUnlock(cut);
    ASSERT_TRUE(OpenClipboard(nullptr));
    EXPECT_EQ(SetClipboardData(CF_DIB, cut), cut);
    CloseClipboard();
    Bitmap pasted;
    EXPECT_EQ(Vn_CopyFromClipboard(nullptr, pasted), bytes == size);
  }
  GlobalFree(whole);
  EmptyTheClipboard();
}

HEADLESS_TEST(Clipboard, OwnsWhatItIsGiven) {
  Headless_Counts before, after;
  Headless_GetCounts(&before);
  HPALETTE palette = Vn_CreateFixedPalette(4);
  EXPECT_EQ(SetClipboardData(CF_PALETTE, palette), nullptr);  // not open
  ASSERT_TRUE(OpenClipboard(nullptr));
  EXPECT_EQ(SetClipboardData(CF_BITMAP, palette), nullptr);  // of another kind
  EXPECT_EQ(SetClipboardData(CF_DIB, nullptr), nullptr);
  EXPECT_EQ(SetClipboardData(CF_PALETTE, palette), palette);
  EXPECT_NE(SetClipboardData(CF_PALETTE, Vn_CreateFixedPalette(1)), nullptr);
  EXPECT_EQ(Vn_GetPaletteSize(palette), 0u) << "the one before is gone";
  EXPECT_EQ(Vn_GetPaletteSize(static_cast<HPALETTE>(GetClipboardData(CF_PALETTE))), 2u);
  EXPECT_TRUE(EmptyClipboard());
  EXPECT_EQ(GetClipboardData(CF_PALETTE), nullptr);
  CloseClipboard();
  Headless_GetCounts(&after);
  EXPECT_EQ(after.objects, before.objects);
}

HEADLESS_TEST(ScreenCapture, TakesWhatThePaintLeft) {
  for (const int32_t screenBits : {1, 4, 8, 24, 32}) {
    SCOPED_TRACE(screenBits);
    const DisplayScope display(screenBits);
    const ScreenDC screen;
    Picture bitmap(24);
    const RECT where = {10, 20, 10 + bitmap->Width, 20 + bitmap->Height};
    const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
    ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &where, nullptr, SRCCOPY), OK);
    // The bottom above the top counts by magnitude, from the top down.
    const RECT turned = {where.left, where.top, where.right, where.top - bitmap->Height};
    for (const RECT& rect : {where, turned}) {
      Bitmap captured;
      ASSERT_EQ(Vn_ScreenCaptureBitmap(screen.get(), captured, &rect), OK);
      EXPECT_EQ(captured->BitsPerPixel, screenBits == 32 ? 24 : screenBits);
      if (screenBits >= 24) {
        EXPECT_EQ(SeenColors(captured), SeenColors(bitmap));
      }
      for (int32_t line = 0; line < bitmap->Height; ++line) {
        for (int32_t x = 0; x < bitmap->Width; ++x) {
          ASSERT_EQ(Vn_GetPixelColor(captured, bitmap->Height - 1 - line, x),
                    GetPixel(screen.get(), 10 + x, 20 + line));
        }
      }
    }
  }
}

TEST(ScreenCapture, RefusesEmptyRectangles) {
  const ScreenDC screen;
  Bitmap bitmap;
  const auto capture = [&](BitmapHandle* to, const RECT* rect) {
    return Vn_ScreenCaptureBitmap(screen.get(), to, rect);
  };
  const RECT good = {0, 0, 4, 4};
  for (const RECT& rect : {RECT{4, 0, 4, 9}, RECT{5, 0, 4, 9}, RECT{0, 7, 4, 7}})
    EXPECT_EQ(capture(bitmap, &rect), ERR_INVALID_PARAMETER);
  EXPECT_EQ(capture(bitmap, nullptr), ERR_INVALID_PARAMETER);
  EXPECT_EQ(capture(nullptr, &good), ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace vn::test
