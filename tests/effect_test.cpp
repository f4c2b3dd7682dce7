// Effects: the pieces of each, and what a screen shows of them.
#include "device/effect_pieces.h"
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

// Keeps all pieces.
class PieceList : public PieceSink {
 public:
  PieceList(uint32_t effect, const RECT& area) { WalkPieces(effect, area, *this); }

  bool Begin(uint32_t count, Count kind) override {
    told = count;
    exact = kind == Count::kExact;
    return true;
  }
  bool Unit(const RECT* first, size_t count) override {
    ++units;
    pieces.insert(pieces.end(), first, first + count);
    return true;
  }

  uint32_t told = 0, units = 0;
  bool exact = false;
  std::vector<RECT> pieces;
};

std::vector<std::string> Texts(const std::vector<RECT>& rects) {
  std::vector<std::string> texts;
  for (const RECT& rect : rects)
    texts.push_back(Text(rect));
  return texts;
}

TEST(EffectPieces, CoverTheAreaAndStayWithinIt) {
  Random random(81);
  for (int round = 0; round < 60; ++round) {
    const int32_t left = random.Between(-30, 30), top = random.Between(-30, 30);
    const RECT area = {left, top, left + random.Between(1, round % 2 ? 9 : 70),
                       top + random.Between(1, round % 3 ? 70 : 3)};
    for (uint32_t effect = 1; effect < EFFECT_COUNT; ++effect) {
      SCOPED_TRACE(testing::Message() << "effect " << effect << ", area " << Text(area));
      const PieceList list(effect, area);
      EXPECT_TRUE(!list.exact || list.told == list.units);
      PixelSet covered(-60, 120);
      const int32_t beyond = effect == EFFECT_SPIRAL_OUT ? 15 : 0;
      for (const RECT& piece : list.pieces) {
        ASSERT_TRUE(piece.left < piece.right && piece.top < piece.bottom) << Text(piece);
        ASSERT_TRUE(piece.left >= area.left - beyond && piece.top >= area.top - beyond &&
                    piece.right <= area.right + beyond && piece.bottom <= area.bottom + beyond)
            << Text(piece);
        covered.ForRect(piece, [](bool) { return true; });
      }
      for (int32_t y = area.top; y < area.bottom; ++y) {
        for (int32_t x = area.left; x < area.right; ++x)
          ASSERT_TRUE(covered.At(x, y)) << x << ", " << y;
      }
    }
  }
}

// The first two pieces and the last one of each effect over 10,20 to 50,40.
TEST(EffectPieces, ComeInTheirOrder) {
  const char* const expected[EFFECT_COUNT][3] = {{},
                                                 {"10,20,50,21", "10,21,50,22", "10,39,50,40"},
                                                 {"10,39,50,40", "10,38,50,39", "10,20,50,21"},
                                                 {"10,20,11,40", "11,20,12,40", "49,20,50,40"},
                                                 {"49,20,50,40", "48,20,49,40", "10,20,11,40"},
                                                 {"12,20,14,22", "18,38,20,40", "10,20,12,22"},
                                                 {"14,20,18,24", "42,36,46,40", "10,20,14,24"},
                                                 {"18,20,26,28", "26,36,34,40", "10,20,18,28"},
                                                 {"26,20,42,36", "10,36,26,40", "10,20,26,36"},
                                                 {"10,21,50,22", "10,30,50,31", "10,20,50,21"},
                                                 {"11,20,12,40", "34,20,35,40", "10,20,11,40"},
                                                 {"29,20,30,40", "30,20,31,40", "49,20,50,40"},
                                                 {"10,29,50,30", "10,30,50,31", "10,39,50,40"},
                                                 {"10,29,50,30", "10,30,50,31", "10,37,50,38"},
                                                 {"29,20,30,40", "30,20,31,40", "45,20,46,40"},
                                                 {"10,20,11,40", "49,20,50,40", "20,30,40,31"},
                                                 {"19,29,20,31", "40,29,41,31", "11,39,49,40"},
                                                 {"10,20,11,40", "49,20,50,40", "18,32,42,33"},
                                                 {"19,29,20,31", "40,29,41,31", "13,37,47,38"},
                                                 {"10,20,11,36", "11,20,12,36", "10,36,26,37"},
                                                 {"4,30,20,31", "4,31,20,32", "4,14,5,30"},
                                                 {"10,20,50,21", "10,39,50,40", "10,30,50,31"},
                                                 {"10,20,11,40", "49,20,50,40", "30,20,31,40"},
                                                 {"10,20,11,40", "49,20,50,40", "34,20,35,40"},
                                                 {"10,20,50,21", "10,39,50,40", "10,32,50,33"},
                                                 {"10,20,11,40", "18,20,19,40", "49,20,50,40"},
                                                 {"49,20,50,40", "41,20,42,40", "10,20,11,40"},
                                                 {"10,39,50,40", "10,31,50,32", "10,24,50,25"},
                                                 {"10,20,50,21", "10,28,50,29", "10,35,50,36"}};
  for (uint32_t effect = 1; effect < EFFECT_COUNT; ++effect) {
    const std::vector<std::string> seen = Texts(PieceList(effect, {10, 20, 50, 40}).pieces);
    ASSERT_GE(seen.size(), 3u);
    EXPECT_EQ(seen[0], expected[effect][0]) << effect;
    EXPECT_EQ(seen[1], expected[effect][1]) << effect;
    EXPECT_EQ(seen.back(), expected[effect][2]) << effect;
  }
}

TEST(EffectPieces, OddAndTinyAreas) {
  EXPECT_EQ(
      Texts(PieceList(EFFECT_COLUMNS_IN, {0, 0, 5, 1}).pieces),
      Texts({{0, 0, 1, 1}, {4, 0, 5, 1}, {1, 0, 2, 1}, {3, 0, 4, 1}, {2, 0, 3, 1}, {2, 0, 3, 1}}));
  const PieceList frames(EFFECT_FRAMES_OUT, {0, 0, 100, 10});
  EXPECT_EQ(frames.told, 5u);
  EXPECT_EQ(Text(frames.pieces[2]), "5,4,95,5");
  EXPECT_EQ(Text(frames.pieces[3]), "5,5,95,6");
  const PieceList dissolve(EFFECT_DISSOLVE_8, {0, 0, 640, 480});
  EXPECT_EQ(dissolve.told, 4800u);
  EXPECT_EQ(Text(dissolve.pieces.back()), "0,0,8,8");
  EXPECT_EQ(Texts(PieceList(EFFECT_DISSOLVE_16, {3, 3, 19, 10}).pieces), Texts({{3, 3, 19, 10}}));
  // A register of 23 bits visits the powers of two alone.
  EXPECT_EQ(PieceList(EFFECT_DISSOLVE_2, {0, 0, 4098, 4096}).pieces.size(), 24u);
  // Where rings begin at the edge both ways, the spirals are each other's reverse.
  std::vector<RECT> out = PieceList(EFFECT_SPIRAL_OUT, {0, 0, 64, 90}).pieces;
  std::reverse(out.begin(), out.end());
  EXPECT_EQ(Texts(out), Texts(PieceList(EFFECT_SPIRAL_IN, {0, 0, 64, 90}).pieces));
}

constexpr int32_t kWidth = 96, kHeight = 64;

Headless_Display Screen(int32_t bits) {
  return {kWidth, kHeight, bits, bits == 8, 20, DT_RASDISPLAY, 96};
}

Bytes ScreenBytes() {
  Headless_Surface screen;
  Headless_GetScreen(&screen);
  return Bytes(screen.bits, screen.bits + static_cast<size_t>(screen.stride) * kHeight);
}

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
    const DisplayScope display(Screen(bits));
    Random random(static_cast<uint64_t>(bits) + 90);
    for (int round = 0; round < 20 * EFFECT_COUNT && !testing::Test::HasFailure(); ++round) {
      const uint32_t effect = static_cast<uint32_t>(round) % EFFECT_COUNT;
      Bitmap bitmap(static_cast<uint32_t>(random.Between(1, 75)),
                    static_cast<uint32_t>(random.Between(1, 50)), kDepths[random.Between(0, 5)],
                    random.Chance(2) ? VIEW_BOTTOM_FIRST : VIEW_TOP_FIRST,
                    random.Chance(2) ? ORDER_BGR : ORDER_RGB);
      FillRandom(bitmap, random);
      Painting p(random, *bitmap.get());
      if (effect == EFFECT_SPIRAL_OUT) p.clipOrNull = nullptr;  // it may reach beyond
      const auto mode = random.Chance(3) ? 12u : static_cast<uint32_t>(random.Between(0, 255));
      SCOPED_TRACE(testing::Message()
                   << "effect " << effect << ", screen " << bits << ", bitmap "
                   << bitmap->BitsPerPixel << ", mode " << mode << ", source "
                   << (p.sourceOrNull ? Text(p.source) : "all") << " "
                   << (p.sourceClipOrNull ? Text(p.sourceClip) : "all") << " of " << bitmap->Width
                   << "x" << bitmap->Height << " to " << Text(p.destination) << " clip "
                   << (p.clipOrNull ? Text(p.destinationClip) : "none"));
      const ScreenDC screen;
      const DisplayModeScope scope(~0u, mode);
      const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
      int32_t deviceBits, kind;
      Vn_GetDitherFlags(screen.get(), bitmap, &deviceBits, &kind);
      const bool reduce = kind == PAINT_DITHER && !(mode & MODE_ORDERED_DITHER);
      reductions += reduce;

      PatBlt(screen.get(), 0, 0, kWidth, kHeight, WHITENESS);
      PaintPlainly(screen.get(), bitmap, p, effect, deviceBits, reduce);
      const Bytes expected = ScreenBytes();
      PatBlt(screen.get(), 0, 0, kWidth, kHeight, WHITENESS);
      ASSERT_EQ(Vn_PaintDCEffect(screen.get(), bitmap, p.sourceOrNull, p.sourceClipOrNull,
                                 &p.destination, p.clipOrNull, SRCCOPY, effect),
                OK);
      EXPECT_TRUE(ScreenBytes() == expected);
      EXPECT_EQ(Vn_GetDisplayMode(), mode);
      EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u);
    }
  }
  EXPECT_GT(reductions, 300);
}

// Counts the device calls of a scope.
class StretchCount {
 public:
  StretchCount() { Headless_ObserveStretch(&Observe, this); }
  StretchCount(const StretchCount&) = delete;
  StretchCount& operator=(const StretchCount&) = delete;
  ~StretchCount() { Headless_ObserveStretch(nullptr, nullptr); }
  uint32_t calls = 0;

 private:
  static void Observe(void* data, const Headless_StretchCall*) {
    ++static_cast<StretchCount*>(data)->calls;
  }
};

HEADLESS_TEST(Effect, TellsItsProgressAndStopsAtOnce) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  Bitmap bitmap(40, 30, 24);
  const RECT to = {0, 0, 40, 30}, elsewhere = {50, 0, 60, 30};
  const auto paint = [&](uint32_t effect, const RECT* clip = nullptr) {
    return Vn_PaintDCEffect(screen.get(), bitmap, nullptr, nullptr, &to, clip, SRCCOPY, effect);
  };
  const DisplayModeScope mode(MODE_SHORT_ROWS, 0);
  for (uint32_t effect = 1; effect < EFFECT_COUNT; ++effect) {
    SCOPED_TRACE(testing::Message() << "effect " << effect);
    const PieceList list(effect, to);
    {
      const StatusLog log;
      EXPECT_EQ(paint(effect, &elsewhere), OK);
      EXPECT_TRUE(log.percents().empty());
      EXPECT_EQ(paint(effect), OK);
      EXPECT_EQ(log.percents().back(), 100);
      EXPECT_TRUE(!list.exact || log.percents() == ExpectedPercents(list.units));
      EXPECT_TRUE(std::is_sorted(log.percents().begin(), log.percents().end()));
      EXPECT_EQ(std::count(log.percents().begin(), log.percents().end(), 100), 1);
    }
    // Half of one percent's pieces come before the callback is heard again.
    const StatusLog stopping(2);
    const VnStatusCallBack callback = Vn_GetStatusCallBack();
    const StretchCount count;
    EXPECT_EQ(paint(effect), 77);
    EXPECT_GE(count.calls, 1u);
    EXPECT_LE(count.calls, list.pieces.size() / 10 + 4);
    EXPECT_EQ(Vn_GetStatusCallBack(), callback);
    EXPECT_EQ(Vn_GetDisplayMode() & MODE_SHORT_ROWS, 0u);
  }
  const StatusLog log(1, 0);
  EXPECT_EQ(paint(EFFECT_PLAIN), OK);
  EXPECT_TRUE(log.percents().empty());
  EXPECT_EQ(paint(EFFECT_DISSOLVE_2), 0);
}

// The callback sees the effect's mode, and what it changes of the picture's plan counts at once.
HEADLESS_TEST(Effect, TheCallbackHasItsSay) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  Bitmap bitmap(10, 10, 24);
  FillRandom(bitmap, *std::make_unique<Random>(5));
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
    const auto at = static_cast<std::ptrdiff_t>(firstRow * kWidth);
    const Bytes now = ScreenBytes();
    return std::equal(shown.begin() + at, shown.begin() + at + 5 * kWidth, now.begin() + at);
  };
  EXPECT_TRUE(equal(MODE_DITHER, 0));
  EXPECT_TRUE(equal(0, 5));
}

HEADLESS_TEST(Effect, RefusesWhatItCannotPaint) {
  const DisplayScope display(Screen(24));
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
