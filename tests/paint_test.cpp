// Whole paints against the slow model on screens of every depth; bands, storage kinds, printers,
// exhausted memory.
#ifndef _WIN32

#include <cstring>
#include <map>

#include "kernel/guards.h"
#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"
#include "tests/support/failure_walk.h"
#include "tests/support/painting.h"
#include "tests/support/pixels.h"
#include "tests/support/slow_paint.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

std::string Text(const std::optional<RECT>& r) {
  if (!r) return "none";
  return std::to_string(r->left) + "," + std::to_string(r->top) + "," + std::to_string(r->right) +
         "," + std::to_string(r->bottom);
}

Bytes ScreenBytes() {
  Headless_Surface screen;
  Headless_GetScreen(&screen);
  return Bytes(screen.bits,
               screen.bits + size_t{screen.stride} * static_cast<size_t>(screen.height));
}

// The paint palette of a bitmap, selected and realised.
class PaintPaletteScope {
 public:
  PaintPaletteScope(HDC context, BitmapHandle* bitmap)
      : context_(context), palette_(Vn_CreatePaintPalette(context, bitmap)) {
    if (!palette_) return;
    before_ = SelectPalette(context_, palette_.get(), FALSE);
    RealizePalette(context_);
  }
  PaintPaletteScope(const PaintPaletteScope&) = delete;
  PaintPaletteScope& operator=(const PaintPaletteScope&) = delete;
  ~PaintPaletteScope() {
    if (before_) SelectPalette(context_, before_, FALSE);
  }
  HPALETTE get() const { return palette_.get(); }

 private:
  HDC context_;
  OwnedObject<HPALETTE> palette_;
  HPALETTE before_ = nullptr;
};

// The model's picture by one device call, as one DIB.
void ShowPicture(HDC context, const SlowPicture& picture, uint32_t rasterOp) {
  if (picture.lines.empty()) return;
  BitmapInfo256 info{};
  info.header.biSize = sizeof info.header;
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<WORD>(picture.bits);
  info.header.biWidth = picture.Width();
  info.header.biHeight = picture.Height();
  info.header.biClrUsed = picture.bits <= 8 ? 1u << picture.bits : 0;
  if (picture.indexes) {
    WriteIdentityIndexes(info.Indexes());
  } else {
    std::copy(picture.colors.begin(), picture.colors.end(), info.colors);
  }
  Bytes pixels;
  for (size_t line = picture.lines.size(); line-- > 0;) {
    const size_t bits = picture.lines[line].size() * static_cast<size_t>(picture.bits);
    Bytes row((bits + 31) / 32 * 4);
    for (size_t x = 0; x < picture.lines[line].size(); ++x) {
      SetPixelBits(&row, x, picture.bits, picture.lines[line][x]);
    }
    pixels.insert(pixels.end(), row.begin(), row.end());
  }
  StretchDIBits(context, picture.x, picture.y, picture.Width(), picture.Height(), 0, 0,
                picture.Width(), picture.Height(), pixels.data(), info.Info(),
                picture.indexes ? DIB_PAL_COLORS : DIB_RGB_COLORS, rasterOp);
}

const RECT* Pointer(const std::optional<RECT>& rect) { return rect ? &*rect : nullptr; }

// Paints by the library and by the model and compares what the screen shows. Returns the model's
// picture.
SlowPicture ComparePaints(const SlowPaint& paint, uint32_t background, uint32_t rasterOp) {
  const ScreenDC screen;
  const HDC context = screen.get();
  const DisplayModeScope mode(~0u, paint.mode);
  const PaintPaletteScope palette(context, paint.bitmap);
  const auto cleared = [&] { PatBlt(context, 0, 0, 96, 64, background); };
  cleared();
  VnStatus status;
  BandWatch watch;
  status = Vn_PaintDC(context, paint.bitmap, Pointer(paint.source), Pointer(paint.sourceClip),
                      &paint.destination, Pointer(paint.destinationClip), rasterOp);
  const int32_t rows = watch.Rows();
  const Bytes painted = ScreenBytes();
  Headless_ObserveStretch(nullptr, nullptr);

  const SlowPicture picture = PaintSlowly(paint);
  cleared();
  ShowPicture(context, picture, rasterOp);
  EXPECT_EQ(status, picture.status);
  EXPECT_EQ(rows, picture.Height());
  EXPECT_TRUE(painted == ScreenBytes()) << "the screen differs";
  EXPECT_EQ(paint.bitmap->Flags & FLAG_LOCKED, 0u);
  return picture;
}

Colors RandomTable(Random& random, int32_t bits) {
  const size_t count = size_t{1} << bits;
  if (bits == 1 && !random.Chance(4)) {
    const RGBQUAD* ramp = random.Chance(2) ? kBlackWhite : kWhiteBlack;
    return Colors(ramp, ramp + 2);
  }
  const RGBQUAD* fixed = Vn_IntGetFixedPalette(static_cast<uint32_t>(bits));
  Colors colors(fixed, fixed + count);
  if (random.Chance(3)) return colors;
  if (random.Chance(4)) {
    colors.back().rgbGreen ^= 1;
    return colors;
  }
  return RandomColors(random, count);
}

// Around the bitmap, its edges well inside and outside.
RECT RandomRect(Random& random, int32_t width, int32_t height, int32_t reach) {
  const int32_t left = random.Between(-reach, width - 1), top = random.Between(-reach, height - 1);
  return RectOf(left, top, random.Between(left + 1, width + reach),
                random.Between(top + 1, height + reach));
}

SlowPaint RandomPaint(Random& random, BitmapHandle* bitmap, int32_t rawBits) {
  SlowPaint paint{bitmap, static_cast<uint32_t>(random.Between(0, 255)), rawBits, {}, {}, {}, {}};
  const int32_t width = bitmap->Width, height = bitmap->Height;
  RECT source = RectOf(0, 0, width, height);
  if (random.Chance(2)) paint.source = source = RandomRect(random, width, height, 6);
  if (random.Chance(2)) paint.sourceClip = RandomRect(random, width, height, 6);
  const int32_t left = random.Between(-40, 60), top = random.Between(-30, 40);
  int32_t across = source.right - source.left, down = source.bottom - source.top;
  switch (random.Between(0, 5)) {
    case 0:
    case 1:
      break;
    case 2:
      across = random.Between(1, 120);
      break;
    case 3:
      down = random.Between(1, 90);
      break;
    case 4:
      across = across * random.Between(1, 4), down = down * random.Between(1, 4);
      break;
    default:
      across = random.Between(1, 120), down = random.Between(1, 90);
  }
  paint.destination = RectOf(left, top, left + across, top + down);
  if (random.Chance(2)) {
    const int32_t x = random.Between(-10, 80), y = random.Between(-10, 50);
    paint.destinationClip = RectOf(x, y, x + random.Between(0, 70), y + random.Between(0, 50));
  }
  return paint;
}

void CheckRandomPaint(Random& random, int32_t rawBits, std::map<int32_t, int>* kinds) {
  const int32_t bits = random.Chance(2) ? 1 : kDepths[random.Between(1, 5)];
  const Colors colors = bits <= 8 ? RandomTable(random, bits) : Colors(1);
  Bitmap bitmap(static_cast<uint32_t>(random.Between(1, 75)),
                static_cast<uint32_t>(random.Between(1, 40)), bits,
                random.Chance(2) ? VIEW_BOTTOM_FIRST : VIEW_TOP_FIRST,
                random.Chance(2) ? ORDER_BGR : ORDER_RGB, colors.data());
  FillRandom(bitmap, random);
  const SlowPaint paint = RandomPaint(random, bitmap, rawBits);
  const uint32_t rasterOps[] = {SRCCOPY, SRCCOPY, SRCINVERT, NOTSRCCOPY};
  SCOPED_TRACE(testing::Message() << bits << " bits, " << bitmap->Width << " by " << bitmap->Height
                                  << ", origin " << bitmap->ViewOrigin << ", order "
                                  << bitmap->ColorOrder << ", screen " << rawBits << ", mode "
                                  << paint.mode << ", source " << Text(paint.source) << " clip "
                                  << Text(paint.sourceClip) << ", destination "
                                  << Text(paint.destination) << " clip "
                                  << Text(paint.destinationClip));
  const SlowPicture picture = ComparePaints(paint, random.Chance(2) ? WHITENESS : BLACKNESS,
                                            rasterOps[random.Between(0, 3)]);
  SCOPED_TRACE(testing::Message() << "kind " << picture.kind);
  if (!picture.lines.empty()) ++(*kinds)[picture.kind];
}

void CheckScreen(int32_t bits, std::vector<int32_t> kindsExpected) {
  const DisplayScope display(Screen(bits));
  Random random(static_cast<uint64_t>(bits) + 100);
  std::map<int32_t, int> kinds;
  for (int round = 0; round < 700 && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "round " << round);
    CheckRandomPaint(random, bits, &kinds);
  }
  for (const int32_t kind : kindsExpected)
    EXPECT_GT(kinds[kind], 5) << "kind " << kind;
}

// Every kind must have been met often enough to mean something.
HEADLESS_TEST(Paint, MatchesTheModelOn1Bit) { CheckScreen(1, {0, 1, 2, 5, 6}); }
HEADLESS_TEST(Paint, MatchesTheModelOn4Bits) { CheckScreen(4, {0, 1, 2, 3, 4, 5, 6}); }
HEADLESS_TEST(Paint, MatchesTheModelOn8Bits) { CheckScreen(8, {0, 1, 2, 3, 4, 5, 6}); }
HEADLESS_TEST(Paint, MatchesTheModelOn16Bits) { CheckScreen(16, {0, 1, 3, 4, 5, 6}); }
HEADLESS_TEST(Paint, MatchesTheModelOn24Bits) { CheckScreen(24, {0, 1, 3, 4, 5, 6}); }
HEADLESS_TEST(Paint, MatchesTheModelOn32Bits) { CheckScreen(32, {0, 1, 3, 4, 5, 6}); }

// The way from the picture to the eye, without the model: which colours, and which way up.
HEADLESS_TEST(Paint, ShowsThePictureTheRightWayUp) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  for (const uint32_t origin : {VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST}) {
    Bitmap bitmap(4, 3, 24, origin);
    const uint32_t top = origin == VIEW_TOP_FIRST ? 0 : 2;
    Bytes row(12, 0);
    row[2] = 255;  // the leftmost pixel of the top line is red
    WriteRow(bitmap, top, row);
    for (const int32_t scale : {1, 5}) {
      PatBlt(screen.get(), 0, 0, 96, 64, WHITENESS);
      const RECT to = RectOf(10, 20, 10 + 4 * scale, 20 + 3 * scale);
      ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
      EXPECT_EQ(GetPixel(screen.get(), 10, 20), RGB(255, 0, 0));
      EXPECT_EQ(GetPixel(screen.get(), 10 + scale - 1, 20 + scale - 1), RGB(255, 0, 0));
      EXPECT_EQ(GetPixel(screen.get(), 10 + scale, 20), RGB(0, 0, 0));
      EXPECT_EQ(GetPixel(screen.get(), 10, 20 + scale), RGB(0, 0, 0));
      EXPECT_EQ(GetPixel(screen.get(), 9, 20), RGB(255, 255, 255));
      EXPECT_EQ(GetPixel(screen.get(), 10 + 4 * scale, 20), RGB(255, 255, 255));
    }
  }
}

HEADLESS_TEST(Paint, DithersToTheRealisedPalette) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  for (const uint32_t order : {ORDER_BGR, ORDER_RGB}) {
    Bitmap bitmap(8, 8, 24, VIEW_BOTTOM_FIRST, order);
    Bytes row;
    for (int x = 0; x < 8; ++x) {
      row.insert(row.end(), {0, 109, 255});
      if (order == ORDER_RGB) std::swap(row.end()[-3], row.end()[-1]);
    }
    for (uint32_t y = 0; y < 8; ++y)
      WriteRow(bitmap, y, row);
    const PaintPaletteScope palette(screen.get(), bitmap);
    const RECT to = RectOf(0, 0, 16, 24);
    ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
    for (int y = 0; y < 24; ++y) {
      for (int x = 0; x < 16; ++x) {
        ASSERT_EQ(GetPixel(screen.get(), x, y), RGB(255, 109, 0)) << x << "," << y;
      }
    }
  }
}

HEADLESS_TEST(Paint, ThinLinesSurviveTheVote) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  for (const bool darkInk : {true, false}) {
    // A line one pixel wide across paper, in either sense of the palette, shrunk by 4.
    Bitmap bitmap(64, 64, 1, VIEW_TOP_FIRST, ORDER_RGB, darkInk ? kBlackWhite : kWhiteBlack);
    const auto paper = static_cast<uint8_t>(darkInk ? 0xFF : 0);
    Bytes row(8, paper);
    row[3] ^= 0x10;
    for (uint32_t y = 0; y < 64; ++y)
      WriteRow(bitmap, y, row);
    const DisplayModeScope mode(~0u, MODE_BITONAL_VOTE | MODE_DITHER);
    const RECT to = RectOf(0, 0, 16, 16);
    ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
    for (int x = 0; x < 16; ++x) {
      const COLORREF expected = x == 27 / 4 ? RGB(0, 0, 0) : RGB(255, 255, 255);
      EXPECT_EQ(GetPixel(screen.get(), x, 8), expected) << x;
    }
  }
}

// Halves of 2 by 2 blocks average to these levels.
HEADLESS_TEST(Paint, GrayAveragesBlocks) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  Bitmap bitmap(10, 2, 1, VIEW_TOP_FIRST, ORDER_RGB, kBlackWhite);
  WriteRow(bitmap, 0, {0x1D, 0xC0, 0, 0});  // 00 01 11 01 11
  WriteRow(bitmap, 1, {0x13, 0xC0, 0, 0});  // 00 01 00 11 11
  const DisplayModeScope mode(~0u, MODE_BITONAL_GRAY);
  const RECT to = RectOf(0, 0, 5, 1);
  ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
  const int levels[] = {0, 127, 127, 191, 255};
  for (int x = 0; x < 5; ++x) {
    EXPECT_EQ(GetPixel(screen.get(), x, 0), RGB(levels[x], levels[x], levels[x])) << x;
  }
}

HEADLESS_TEST(Paint, BandsHoldAsManyRowsAsFit) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  struct Expectation {
    int32_t bits;
    uint32_t width, height;
    int32_t firstRows, lastRows;
    size_t bands;
  };
  for (const Expectation& e :
       {Expectation{8, 4000, 100, 16, 4, 7}, Expectation{24, 30000, 3, 1, 1, 3},
        Expectation{1, 64, 40, 40, 40, 1}, Expectation{8, 65533, 2, 1, 1, 2},
        Expectation{8, 65536, 2, 1, 1, 2}, Expectation{32, 16384, 2, 1, 1, 2}}) {
    SCOPED_TRACE(testing::Message() << e.bits << " bits, " << e.width << " by " << e.height);
    Bitmap bitmap(e.width, e.height, e.bits);
    const auto width = static_cast<int32_t>(e.width), height = static_cast<int32_t>(e.height);
    for (const int32_t twice : {1, 2}) {
      // Scaled, such a row's products of widths would leave their words.
      if (twice == 2 && e.width > 40000) continue;
      const RECT to = RectOf(0, 0, width, height * twice);
      BandWatch watch;
      ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
      EXPECT_EQ(watch.Rows(), height * twice);
      if (twice == 1) {
        ASSERT_EQ(watch.bands.size(), e.bands);
        EXPECT_EQ(watch.bands.front().call.height, e.firstRows);
        EXPECT_EQ(watch.bands.back().call.height, e.lastRows);
      }
      int32_t y = height * twice;
      for (const BandWatch::Band& band : watch.bands) {
        y -= band.call.height;
        EXPECT_EQ(band.call.y, y) << "bands go up the device";
      }
    }
  }
}

// Rows of packed pixels go out in whole bytes at 1:1, and columns from 65536 on wrap.
HEADLESS_TEST(Paint, PackedRowsStartAtAByte) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  Random random(31);
  for (const int32_t bits : {1, 4}) {
    Bitmap bitmap(66000, 3, bits, VIEW_BOTTOM_FIRST, ORDER_RGB,
                  bits == 1 ? kRedBlue : RandomColors(random, 16).data());
    FillRandom(bitmap, random);
    for (const int32_t column : {5, 65533, 65536 + 21}) {
      for (const uint32_t mode : {kDefaultMode, uint32_t{MODE_DITHER | MODE_FIXED_PALETTE}}) {
        SlowPaint paint{bitmap, mode, 8, RectOf(column, 0, column + 40, 3), {}, RectOf(3, 4, 43, 7),
                        {}};
        SCOPED_TRACE(testing::Message() << bits << " bits, column " << column << ", mode " << mode);
        ComparePaints(paint, BLACKNESS, SRCCOPY);
        const DisplayModeScope scope(~0u, mode);
        BandWatch watch;
        Vn_PaintDC(screen.get(), bitmap, Pointer(paint.source), nullptr, &paint.destination,
                   nullptr, SRCCOPY);
        ASSERT_EQ(watch.bands.size(), 1u);
        const int32_t skipped = mode == kDefaultMode ? column % (8 / bits) : 0;
        EXPECT_EQ(watch.bands[0].call.srcX, skipped);
        EXPECT_EQ(watch.bands[0].header.biWidth, 40 + skipped);
      }
    }
  }
}

// Rectangles that leave the words: nothing is promised but that nothing breaks.
HEADLESS_TEST(Paint, SurvivesRectanglesOfAnySize) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  Random random(41);
  const int32_t edges[] = {INT32_MIN, INT32_MIN + 1, -0x40000000, -70000,        -1,       0, 1,
                           50,        70000,         0x3FFFFFFF,  INT32_MAX - 1, INT32_MAX};
  const auto edge = [&] { return edges[random.Between(0, 11)]; };
  const auto any = [&] { return RectOf(edge(), edge(), edge(), edge()); };
  const RECT near = RectOf(-20, -20, 200, 100);
  for (int round = 0; round < 4000; ++round) {
    const int32_t bits = kDepths[random.Between(0, 5)];
    Bitmap bitmap(static_cast<uint32_t>(random.Between(1, 40)),
                  static_cast<uint32_t>(random.Between(1, 20)), bits,
                  random.Chance(2) ? VIEW_BOTTOM_FIRST : VIEW_TOP_FIRST);
    const DisplayModeScope mode(~0u, static_cast<uint32_t>(random.Between(0, 255)));
    const RECT source = any(), clip = any(), to = any();
    Vn_PaintDC(screen.get(), bitmap, random.Chance(2) ? &source : nullptr,
               random.Chance(2) ? &clip : nullptr, &to, &near, SRCCOPY);
  }
}

HEADLESS_TEST(Paint, StorageKindsShowTheSame) {
  const DisplayScope display(Screen(8));
  struct Way {
    int32_t bits;
    uint32_t mode;
    RECT to;
  };
  const Way ways[] = {{24, kDefaultMode, RectOf(0, 0, 90, 30)},
                      {24, kDefaultMode, RectOf(5, 5, 65, 45)},
                      {32, 0, RectOf(-7, -3, 20, 70)},
                      {4, MODE_DITHER | MODE_FIXED_PALETTE, RectOf(0, 0, 60, 40)},
                      {1, MODE_BITONAL_VOTE, RectOf(0, 0, 17, 11)},
                      {1, MODE_BITONAL_GRAY, RectOf(0, 0, 25, 33)},
                      {1, MODE_BITONAL_GRAY, RectOf(1, 1, 61, 41)}};
  std::vector<Bytes> first;
  WithEachStorage([&](const StorageKind& kind) {
    std::vector<Bytes> shown;
    for (const Way& way : ways) {
      Random random(51);
      Bitmap bitmap(60, 40, way.bits, VIEW_TOP_FIRST, ORDER_BGR,
                    way.bits == 1 ? kBlackWhite : nullptr, kind.request);
      ASSERT_EQ(bitmap->Flags & (FLAG_IN_MEMORY | FLAG_ON_DISK | FLAG_ALLOCATED), kind.flags);
      FillRandom(bitmap, random);
      const ScreenDC screen;
      const DisplayModeScope mode(~0u, way.mode);
      const PaintPaletteScope palette(screen.get(), bitmap);
      PatBlt(screen.get(), 0, 0, 96, 64, BLACKNESS);
      ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &way.to, nullptr, SRCCOPY), OK);
      shown.push_back(ScreenBytes());
    }
    if (first.empty()) first = shown;
    EXPECT_TRUE(shown == first);
  });
}

HEADLESS_TEST(Paint, MemoryFailuresPaintNothing) {
  const DisplayScope display(Screen(8));
  struct Way {
    int32_t bits;
    uint32_t mode;
    RECT to;
  };
  for (const Way& way :
       {Way{24, kDefaultMode, RectOf(0, 0, 90, 30)},
        Way{8, MODE_DITHER | MODE_FIXED_PALETTE, RectOf(0, 0, 60, 40)},
        Way{32, 0, RectOf(0, 0, 60, 40)}, Way{1, MODE_BITONAL_VOTE, RectOf(0, 0, 17, 11)},
        Way{1, MODE_BITONAL_GRAY, RectOf(0, 0, 25, 33)},
        Way{1, MODE_BITONAL_GRAY, RectOf(0, 0, 60, 40)}}) {
    SCOPED_TRACE(testing::Message() << way.bits << " bits, mode " << way.mode);
    const RGBQUAD* table = way.bits == 1 ? kBlackWhite : nullptr;
    const Colors colors(256, kWhite);
    Bitmap bitmap(60, 40, way.bits, VIEW_TOP_FIRST, ORDER_BGR, table ? table : colors.data());
    const ScreenDC screen;
    const DisplayModeScope mode(~0u, way.mode);
    WalkFailures(
        HEADLESS_MEMORY,
        [&](FailureRound& round) {
          BandWatch watch;
          const VnStatus status = round.Run([&] {
            return Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &way.to, nullptr, SRCCOPY);
          });
          EXPECT_EQ(status, round.Failed() ? ERR_NO_MEMORY : OK);
          EXPECT_EQ(watch.bands.empty(), round.Failed());
          EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u);
        },
        2);
  }
}

// A driver may spoil what it is given.
HEADLESS_TEST(Paint, PrintersGetACopyOfTheInfo) {
  Headless_Display display = Screen(8);
  display.technology = DT_RASPRINTER;
  const DisplayScope scope(display);
  const ScreenDC screen;
  Bitmap bitmap(20, 10, 24);
  ThreadSettings& settings = CurrentThreadSettings();
  for (const int32_t width : {20, 33}) {
    settings.PaintInfo.header.biWidth = 4711;
    const BitmapInfo256 before = settings.PaintInfo;
    settings.PrinterPaintInfo = {};
    BandWatch watch;
    const RECT to = RectOf(0, 0, width, 10);
    ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
    EXPECT_EQ(std::memcmp(&before, &settings.PaintInfo, sizeof before), 0);
    EXPECT_EQ(settings.PrinterPaintInfo.header.biWidth, width);
    EXPECT_EQ(settings.PrinterPaintInfo.Indexes()[255], 255);
  }
}

HEADLESS_TEST(Paint, VotesWithColoursKeepTheIdentityTable) {
  const DisplayScope display(Screen(8));
  const ScreenDC screen;
  Bitmap bitmap(20, 10, 1, VIEW_TOP_FIRST, ORDER_BGR, kWhiteBlack);
  const DisplayModeScope mode(~0u, kDefaultMode | MODE_BITONAL_VOTE | MODE_FIXED_PALETTE);
  const RECT to = RectOf(0, 0, 7, 7);
  ASSERT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
  for (uint16_t i = 0; i < 256; ++i) {
    ASSERT_EQ(CurrentThreadSettings().PaintInfo.Indexes()[i], i);
  }
}

}  // namespace
}  // namespace vn::test

#endif
