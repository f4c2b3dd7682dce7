// Painting from a caller's rows. The ways of the direct path are in the numbered cases.
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "tests/support/screen.h"

namespace vn::test {
namespace {

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
    const DisplayScope display(SmallScreen(bits));
    Random random(static_cast<uint64_t>(bits) + 60);
    for (int round = 0; round < 60; ++round) {
      const int32_t width = random.Between(1, 50), height = random.Between(1, 40);
      RandomBitmap bitmap(random, width, height, kDepths[round % 6]);
      const int32_t scale = random.Between(1, 3);
      const uint32_t mode = static_cast<uint32_t>(random.Between(0, 255)) | MODE_ORDERED_DITHER;
      const DisplayModeScope scope(~0u, mode & ~uint32_t{MODE_BITONAL_GRAY | MODE_BITONAL_VOTE});
      const ScreenDC screen;
      const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
      const RECT to = {0, 7, width * scale, 7 + height * scale};
      SCOPED_TRACE(Told("round", round, ", screen", bits, ", scale", scale, ", mode", mode));
      const Bytes expected = ShownBy(screen.get(), WHITENESS, [&] {
        EXPECT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
      });
      ASSERT_TRUE(expected == ShownBy(screen.get(), WHITENESS,
                                      [&] { PaintInBands(screen.get(), bitmap, to, random); }));
    }
  }
}

// Without memory for the spare row, rows go out as they lie.
HEADLESS_TEST(PaintBuffer, RowsStayWithoutMemoryToTurnThem) {
  const DisplayScope display(SmallScreen(24));
  const ScreenDC screen;
  Bitmap bitmap(1, 2, 24, VIEW_TOP_FIRST);
  Bytes rows = {1, 1, 1, 0, 2, 2, 2, 0};
  const RECT to = {0, 0, 1, 2};
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(Vn_PaintDCBuffer(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY,
                             rows.data(), 0, 2),
            4);
  Headless_FailNth(HEADLESS_MEMORY, 0);
  EXPECT_EQ(GetPixel(screen.get(), 0, 0), RGB(2, 2, 2));
}

}  // namespace
}  // namespace vn::test
