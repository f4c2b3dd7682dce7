// Painting from a caller's rows.
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

constexpr int32_t kWidth = 160, kHeight = 120;

Headless_Display Screen(int32_t bits) {
  return {kWidth, kHeight, bits, bits == 8, 20, DT_RASDISPLAY, 96};
}

Bytes ScreenBytes() {
  Headless_Surface screen;
  Headless_GetScreen(&screen);
  return Bytes(screen.bits, screen.bits + static_cast<size_t>(screen.stride) * kHeight);
}

// The status of a band is OK, or on the direct path anything that is no failure.
void PaintInBands(HDC screen, BitmapHandle* bitmap, const RECT& to, Random& random) {
  Bytes rows = ReadAll(bitmap);
  const Bytes before = rows;
  BitmapHandle record = *bitmap;  // without storage of its own
  record.Flags &= ~uint32_t{FLAG_ALLOCATED | FLAG_IN_MEMORY};
  record.Bits = nullptr;
  for (int32_t first = 0; first < bitmap->Height;) {
    const int32_t count = std::min(random.Between(1, 9), bitmap->Height - first);
    ASSERT_GE(Vn_PaintDCBuffer(screen, &record, nullptr, nullptr, &to, nullptr, SRCCOPY,
                               rows.data() + static_cast<uint32_t>(first) * record.BytesPerLine,
                               first, count),
              0);
    first += count;
  }
  EXPECT_TRUE(rows == before);
}

// Bands arrive as they do from a file, and the picture is what one paint would have made of it:
// dithered without errors, widened, direct, and enlarged by whole numbers.
HEADLESS_TEST(PaintBuffer, BandsMakeUpThePicture) {
  for (const int32_t bits : {1, 4, 8, 24}) {
    const DisplayScope display(Screen(bits));
    Random random(static_cast<uint64_t>(bits) + 60);
    for (int round = 0; round < 60; ++round) {
      Bitmap bitmap(static_cast<uint32_t>(random.Between(1, 50)),
                    static_cast<uint32_t>(random.Between(1, 40)), kDepths[round % 6],
                    random.Chance(2) ? VIEW_BOTTOM_FIRST : VIEW_TOP_FIRST);
      FillRandom(bitmap, random);
      const int32_t scale = random.Between(1, 3);
      const uint32_t mode = static_cast<uint32_t>(random.Between(0, 255)) | MODE_ORDERED_DITHER;
      const DisplayModeScope scope(~0u, mode & ~uint32_t{MODE_BITONAL_GRAY | MODE_BITONAL_VOTE});
      const ScreenDC screen;
      const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
      const RECT to = {0, 7, bitmap->Width * scale, 7 + bitmap->Height * scale};
      SCOPED_TRACE(testing::Message() << "round " << round << ", screen " << bits << ", scale "
                                      << scale << ", mode " << mode);
      PatBlt(screen.get(), 0, 0, kWidth, kHeight, WHITENESS);
      ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
      const Bytes expected = ScreenBytes();
      PatBlt(screen.get(), 0, 0, kWidth, kHeight, WHITENESS);
      PaintInBands(screen.get(), bitmap, to, random);
      ASSERT_TRUE(ScreenBytes() == expected);
    }
  }
}

// Rows that need nothing done are sent whole, from device column 0 on.
HEADLESS_TEST(PaintBuffer, TheDirectPathHasItsOwnWays) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  const HDC context = screen.get();
  Bitmap bitmap(10, 20, 24, VIEW_TOP_FIRST);
  const uint32_t stride = bitmap->BytesPerLine;
  Bytes rows(5 * stride);
  for (uint32_t y = 0; y < 5; ++y)
    std::fill_n(rows.begin() + y * stride, stride, static_cast<uint8_t>(50 * y));
  const Bytes before = rows;
  const RECT to = {30, 40, 40, 60}, clip = {33, 57, 35, 90}, elsewhere = {0, 0, 9, 9};
  const auto paint = [&](const RECT* destinationClip, int32_t first, int32_t count) {
    return Vn_PaintDCBuffer(context, bitmap, nullptr, nullptr, &to, destinationClip, SRCCOPY,
                            rows.data(), first, count);
  };
  PatBlt(context, 0, 0, kWidth, kHeight, WHITENESS);
  // Rows 16 to 19 exist, 17 is the first within the clip; all five are sent from there on.
  EXPECT_EQ(paint(&clip, 16, 5), static_cast<VnStatus>(stride));
  for (int32_t y = 0; y < kHeight; ++y) {
    const bool sent = y >= 57 && y < 62;
    const auto level = static_cast<BYTE>(50 * (y - 57));
    EXPECT_EQ(GetPixel(context, 0, y), sent ? RGB(level, level, level) : 0xFFFFFFu) << y;
    EXPECT_EQ(GetPixel(context, 10, y), 0xFFFFFFu);
  }
  EXPECT_TRUE(rows == before);
  EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u);

  // One row need not be turned over, and the usage of its table is told.
  EXPECT_EQ(paint(nullptr, 0, 1), DIB_RGB_COLORS);
  EXPECT_EQ(paint(nullptr, 0, 0), OK);
  EXPECT_EQ(paint(nullptr, INT32_MIN, -1), OK);
  EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u);
  EXPECT_EQ(paint(&elsewhere, 0, 5), OK);
  EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u) << "the clip misses the destination";
  const RECT belowTheRows = {30, 50, 40, 60};
  EXPECT_EQ(paint(&belowTheRows, 0, 5), OK);
  EXPECT_NE(bitmap->Flags & FLAG_LOCKED, 0u) << "the clip misses the rows";
  Vn_ReleaseBitmap(bitmap);

  EXPECT_EQ(
      Vn_PaintDCBuffer(context, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY, nullptr, 0, 5),
      ERR_NO_BITMAP);
  EXPECT_EQ(
      Vn_PaintDCBuffer(nullptr, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY, rows.data(), 0, 5),
      ERR_INVALID_PARAMETER);
}

// Without memory for the spare row, rows go out as they lie.
HEADLESS_TEST(PaintBuffer, RowsStayWithoutMemoryToTurnThem) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  Bitmap bitmap(1, 2, 24, VIEW_TOP_FIRST);
  Bytes rows = {1, 1, 1, 0, 2, 2, 2, 0};
  const Bytes before = rows;
  const RECT to = {0, 0, 1, 2};
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(Vn_PaintDCBuffer(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY,
                             rows.data(), 0, 2),
            4);
  Headless_FailNth(HEADLESS_MEMORY, 0);
  EXPECT_EQ(GetPixel(screen.get(), 0, 0), RGB(2, 2, 2));
  EXPECT_TRUE(rows == before);
}

// The two kinds of 1-bit pictures that need neighbours are shown as they are.
HEADLESS_TEST(PaintBuffer, BitonalRowsStayBitonal) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  Bitmap bitmap(40, 6, 1);
  Random random(7);
  FillRandom(bitmap, random);
  Bytes rows = ReadAll(bitmap);
  for (const RECT& to : {RECT{0, 0, 40, 6}, RECT{0, 0, 20, 3}}) {
    const auto shown = [&](uint32_t mode, bool buffer) {
      const DisplayModeScope scope(~0u, mode);
      PatBlt(screen.get(), 0, 0, kWidth, kHeight, WHITENESS);
      if (buffer) {
        Vn_PaintDCBuffer(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY, rows.data(),
                         0, 6);
      } else {
        Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY);
      }
      return ScreenBytes();
    };
    const Bytes plain = shown(0, false);
    EXPECT_TRUE(shown(MODE_BITONAL_GRAY, true) == plain);
    EXPECT_TRUE(shown(MODE_BITONAL_VOTE, true) == plain);
  }
}

}  // namespace
}  // namespace vn::test
