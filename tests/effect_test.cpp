// Effects: what a screen shows in the end, and what the callback may do. Their pieces and progress are
// in the numbered cases.
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "tests/support/pixel_set.h"
#include "tests/support/screen.h"

namespace vn::test {
namespace {

// A plain paint of the picture, reduced where errors would spread.
HEADLESS_TEST(Effect, EndsWithThePlainPaint) {
  int reductions = 0;
  for (const int32_t bits : {1, 4, 8, 24}) {
    const DisplayScope display(SmallScreen(bits));
    Random random(bits + 90);
    for (int round = 0; round < 20 * EFFECT_COUNT && !testing::Test::HasFailure(); ++round) {
      const uint32_t effect = round % EFFECT_COUNT;
      const int32_t width = random.Between(1, 75), height = random.Between(1, 50);
      RandomBitmap bitmap(random, width, height, random.OneOf(kDepths));
      RECT to = RandomRect(random, -10, 70);
      if (random.Chance(2)) to.right = to.left + width, to.bottom = to.top + height;
      // The spiral may reach beyond.
      const RECT clip =
          effect == EFFECT_SPIRAL_OUT ? RECT{0, 0, 160, 120} : RandomRect(random, -10, 90);
      const uint32_t mode = random.Chance(3) ? 12 : random.Between(0, 255);
      SCOPED_TRACE(Told("effect", effect, "screen", bits, "bitmap", bitmap->BitsPerPixel, "mode",
                        mode, width, "x", height, "to", Text(to), "clip", Text(clip)));
      const ScreenDC screen;
      const DisplayModeScope scope(~0u, mode);
      const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
      int32_t deviceBits, kind;
      Vn_GetDitherFlags(screen.get(), bitmap, &deviceBits, &kind);
      Bitmap reduced;
      BitmapHandle* shown = bitmap;
      if (kind == PAINT_DITHER && !(mode & MODE_ORDERED_DITHER)) {
        ++reductions;
        shown = reduced;
        Vn_ColorResBitmap(bitmap, reduced, deviceBits, 0x10001, nullptr, 0, nullptr, 0);
      }
      const Bytes expected = ShownBy(screen.get(), WHITENESS, [&] {
        EXPECT_EQ(Vn_PaintDC(screen.get(), shown, nullptr, nullptr, &to, &clip, SRCCOPY), OK);
      });
      EXPECT_TRUE(expected == ShownBy(screen.get(), WHITENESS, [&] {
                    EXPECT_EQ(Vn_PaintDCEffect(screen.get(), bitmap, nullptr, nullptr, &to, &clip,
                                               SRCCOPY, effect),
                              OK);
                  }));
      EXPECT_EQ(Vn_GetDisplayMode(), mode);
      EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u);
    }
  }
  EXPECT_GT(reductions, 300);
}

// The callback sees the effect's mode, and what it changes of the picture's plan counts at once.
HEADLESS_TEST(Effect, TheCallbackHasItsSay) {
  const DisplayScope display(SmallScreen(8));
  const ScreenDC screen;
  Random random(5);
  RandomBitmap bitmap(random, 10, 10, 24);
  static uint32_t seen;
  const DisplayModeScope mode(~0u, MODE_DITHER | MODE_ORDERED_DITHER);
  const RECT to = {0, 0, 10, 10};
  const VnStatusCallBack before = Vn_SetStatusCallBack([](int32_t percent) -> VnStatus {
    seen = Vn_GetDisplayMode();
    if (percent == 50) Vn_SetDisplayMode(MODE_DITHER, 0);
    return OK;
  });
  EXPECT_EQ(Vn_PaintDCEffect(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY,
                             EFFECT_ROWS_DOWN),
            OK);
  Vn_SetStatusCallBack(before);
  EXPECT_EQ(seen, uint32_t{MODE_ORDERED_DITHER | MODE_SHORT_ROWS});
  EXPECT_EQ(Vn_GetDisplayMode(), uint32_t{MODE_ORDERED_DITHER});
  const Bytes shown = ScreenBytes();
  const auto equal = [&](uint32_t bits, int32_t firstRow) {
    const DisplayModeScope again(~0u, MODE_ORDERED_DITHER | bits);
    EXPECT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
    const auto at = static_cast<std::ptrdiff_t>(firstRow * 160);
    const Bytes now = ScreenBytes();
    return std::equal(shown.begin() + at, shown.begin() + at + 5 * 160, now.begin() + at);
  };
  EXPECT_TRUE(equal(MODE_DITHER, 0));
  EXPECT_TRUE(equal(0, 5));
}

// What a callback paints has colours of its own, and the pieces that follow have theirs.
HEADLESS_TEST(Effect, TheCallbackMayPaint) {
  const DisplayScope display(SmallScreen(24));
  const ScreenDC screen;
  Random random(6);
  const Colors colors = RandomColors(random, 256), otherColors = RandomColors(random, 256);
  RandomBitmap bitmap(random, 10, 10, 8, STORAGE_AUTO, colors.data());
  RandomBitmap other(random, 10, 10, 8, STORAGE_AUTO, otherColors.data());
  const DisplayModeScope mode(~0u, 0);
  static HDC context;
  static BitmapHandle* painted;
  context = screen.get();
  painted = other;
  const auto aside = [](int32_t) -> VnStatus {
    const RECT to = {20, 0, 30, 10};
    return Vn_PaintDC(context, painted, nullptr, nullptr, &to, nullptr, SRCCOPY);
  };
  const RECT to = {0, 0, 10, 10};
  const Bytes expected = ShownBy(context, WHITENESS, [&] {
    EXPECT_EQ(aside(0), OK);
    EXPECT_EQ(Vn_PaintDC(context, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
  });
  EXPECT_TRUE(ShownBy(context, WHITENESS, [&] {
                const VnStatusCallBack before = Vn_SetStatusCallBack(aside);
                EXPECT_EQ(Vn_PaintDCEffect(context, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY,
                                           EFFECT_ROWS_DOWN),
                          OK);
                Vn_SetStatusCallBack(before);
              }) == expected);
}

HEADLESS_TEST(Effect, RefusesWhatItCannotPaint) {
  const ScreenDC screen;
  Bitmap bitmap(4, 4, 24);
  const RECT to = {0, 0, 4, 4};
  const auto paint = [&](HDC context, const RECT* where, uint32_t effect) {
    return Vn_PaintDCEffect(context, bitmap, nullptr, nullptr, where, nullptr, SRCCOPY, effect);
  };
  EXPECT_EQ(paint(screen.get(), &to, EFFECT_COUNT), ERR_INVALID_PARAMETER);
  EXPECT_EQ(paint(nullptr, &to, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(paint(screen.get(), nullptr, 0), ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace vn::test
