// Effects: what a screen shows in the end, and what the callback may do. Their pieces and progress are
// in the numbered cases.
#include "device/effect_pieces.h"
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "tests/support/pixel_set.h"
#include "tests/support/screen.h"

namespace vn::test {
namespace {

struct Painting {
  RECT source, sourceClip, destination, destinationClip;
  const RECT *sourceOrNull = nullptr, *sourceClipOrNull = nullptr, *clipOrNull = nullptr;

  Painting(Random& random, const BitmapHandle& bitmap)
      : source(RandomRect(random, 0, std::min(bitmap.Width, bitmap.Height))),
        sourceClip(RandomRect(random, 0, 40)),
        destination(RandomRect(random, -10, 70)),
        destinationClip(RandomRect(random, -10, 90)) {
    if (random.Chance(2)) sourceOrNull = &source;
    if (random.Chance(2)) clipOrNull = &destinationClip;
    const RECT& from = sourceOrNull ? source : RECT{0, 0, bitmap.Width, bitmap.Height};
    if (random.Chance(2)) {
      destination.right = destination.left + from.right - from.left;
      destination.bottom = destination.top + from.bottom - from.top;
      // Scaled, a paint steps from the clip's edge on, between the pixels of the device.
      if (random.Chance(2)) sourceClipOrNull = &sourceClip;
    }
  }
};

// What the effect must end with: a plain paint of the picture, reduced where errors would spread.
void PaintPlainly(HDC screen, BitmapHandle* bitmap, const Painting& p, uint32_t effect,
                  int32_t deviceBits, bool reduce) {
  Bitmap reduced;
  if (reduce) {
    ASSERT_EQ(Vn_ColorResBitmap(bitmap, reduced, static_cast<uint32_t>(deviceBits), 0x10001,
                                nullptr, 0, nullptr, 0),
              OK);
  }
  const bool all = !ShowsSource(effect);
  ASSERT_EQ(Vn_PaintDC(screen, reduce ? reduced.get() : bitmap, all ? nullptr : p.sourceOrNull,
                       all ? nullptr : p.sourceClipOrNull, &p.destination, p.clipOrNull, SRCCOPY),
            OK);
}

HEADLESS_TEST(Effect, EndsWithThePlainPaint) {
  int reductions = 0;
  for (const int32_t bits : {1, 4, 8, 24}) {
    const DisplayScope display(SmallScreen(bits));
    Random random(static_cast<uint64_t>(bits) + 90);
    for (int round = 0; round < 20 * EFFECT_COUNT && !testing::Test::HasFailure(); ++round) {
      const uint32_t effect = static_cast<uint32_t>(round) % EFFECT_COUNT;
      const int32_t width = random.Between(1, 75), height = random.Between(1, 50);
      RandomBitmap bitmap(random, width, height, kDepths[random.Between(0, 5)]);
      Painting p(random, *bitmap.get());
      if (effect == EFFECT_SPIRAL_OUT) p.clipOrNull = nullptr;  // it may reach beyond
      const auto mode = random.Chance(3) ? 12u : static_cast<uint32_t>(random.Between(0, 255));
      SCOPED_TRACE(testing::Message()
                   << "effect " << effect << ", screen " << bits << ", bitmap "
                   << bitmap->BitsPerPixel << ", mode " << mode << ", source "
                   << (p.sourceOrNull ? Text(p.source) : "all") << " "
                   << (p.sourceClipOrNull ? Text(p.sourceClip) : "all") << " of " << width << "x"
                   << height << " to " << Text(p.destination) << " clip "
                   << (p.clipOrNull ? Text(p.destinationClip) : "none"));
      const ScreenDC screen;
      const DisplayModeScope scope(~0u, mode);
      const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
      int32_t deviceBits, kind;
      Vn_GetDitherFlags(screen.get(), bitmap, &deviceBits, &kind);
      const bool reduce = kind == PAINT_DITHER && !(mode & MODE_ORDERED_DITHER);
      reductions += reduce;

      const Bytes expected = ShownBy(screen.get(), WHITENESS, [&] {
        PaintPlainly(screen.get(), bitmap, p, effect, deviceBits, reduce);
      });
      EXPECT_TRUE(expected == ShownBy(screen.get(), WHITENESS, [&] {
                    EXPECT_EQ(
                        Vn_PaintDCEffect(screen.get(), bitmap, p.sourceOrNull, p.sourceClipOrNull,
                                         &p.destination, p.clipOrNull, SRCCOPY, effect),
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

HEADLESS_TEST(Effect, RefusesWhatItCannotPaint) {
  const DisplayScope display(SmallScreen(24));
  const ScreenDC screen;
  Bitmap bitmap(4, 4, 24);
  BitmapHandle none{};
  const RECT to = {0, 0, 4, 4};
  const auto paint = [](HDC context, BitmapHandle* picture, const RECT* where, uint32_t effect) {
    return Vn_PaintDCEffect(context, picture, nullptr, nullptr, where, nullptr, SRCCOPY, effect);
  };
  EXPECT_EQ(paint(screen.get(), bitmap, &to, EFFECT_COUNT), ERR_INVALID_PARAMETER);
  EXPECT_EQ(paint(nullptr, bitmap, &to, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(paint(screen.get(), nullptr, &to, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(paint(screen.get(), &none, &to, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(paint(screen.get(), bitmap, nullptr, 0), ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace vn::test
