// Whole paints against the slow model on screens of every depth; bands, printers.
#ifndef _WIN32

#include <cstring>
#include <map>

#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "kernel/thread_settings.h"
#include "tests/support/dib_info.h"
#include "tests/support/screen.h"
#include "tests/support/slow_paint.h"

namespace vn::test {
namespace {

constexpr uint32_t kDefaultMode = MODE_DEVICE_INDEXES | MODE_DITHER;
constexpr RGBQUAD kBlack = {0, 0, 0, 0}, kWhite = {255, 255, 255, 0};
constexpr RGBQUAD kBlackWhite[2] = {kBlack, kWhite};
constexpr RGBQUAD kWhiteBlack[2] = {kWhite, kBlack};
constexpr RGBQUAD kRedBlue[2] = {{0, 0, 255, 0}, {255, 0, 0, 0}};

// Every device call of a paint, held to what the renderers promise.
class BandWatch {
 public:
  BandWatch() { Headless_ObserveStretch(&Observe, this); }
  BandWatch(const BandWatch&) = delete;
  BandWatch& operator=(const BandWatch&) = delete;
  ~BandWatch() { Headless_ObserveStretch(nullptr, nullptr); }

  struct Band {
    Headless_StretchCall call;
    BITMAPINFOHEADER header;
  };
  std::vector<Band> bands;

  int32_t Rows() const {
    int32_t rows = 0;
    for (const Band& band : bands)
      rows += band.call.height;
    return rows;
  }

 private:
  static void Observe(void* data, const Headless_StretchCall* call) {
    const BITMAPINFOHEADER& header = call->info->bmiHeader;
    static_cast<BandWatch*>(data)->bands.push_back({*call, header});
    EXPECT_EQ(call->width, call->srcWidth);
    EXPECT_EQ(call->height, call->srcHeight);
    EXPECT_EQ(call->srcY, 0);
    EXPECT_EQ(header.biSize, 40u);
    EXPECT_EQ(header.biPlanes, 1);
    EXPECT_EQ(header.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(header.biWidth, call->srcX + call->width);
    EXPECT_EQ(header.biHeight, call->height);
    const auto bits = static_cast<int64_t>(header.biBitCount) * header.biWidth;
    const int64_t bytes = (bits + 31) / 32 * 4 * header.biHeight;
    EXPECT_EQ(static_cast<int64_t>(header.biSizeImage), bytes);
    EXPECT_TRUE(bytes <= 65536 || header.biHeight == 1) << bytes << " bytes in a band";
    EXPECT_EQ(header.biClrUsed, header.biBitCount <= 8 ? 1u << header.biBitCount : 0u);
  }
};

// The model's picture by one device call, as one DIB.
void ShowPicture(HDC context, const SlowPicture& picture, uint32_t rasterOp) {
  if (picture.lines.empty()) return;
  DibInfo info = DibOf(picture.Width(), picture.Height(), picture.bits);
  std::copy(picture.colors.begin(), picture.colors.end(), info.colors);
  if (picture.indexes) WriteIdentityIndexes(info.indexes);
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
                picture.Width(), picture.Height(), pixels.data(), info.get(),
                picture.indexes ? DIB_PAL_COLORS : DIB_RGB_COLORS, rasterOp);
}

// Paints by the library all of `bitmap`.
VnStatus PaintAll(BitmapHandle* bitmap, const RECT& to) {
  const ScreenDC screen;
  return Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY);
}

const RECT* Pointer(const std::optional<RECT>& rect) { return rect ? &*rect : nullptr; }

// Paints by the library and by the model and compares what the screen shows. Returns the model's
// picture.
SlowPicture ComparePaints(const SlowPaint& paint, uint32_t ground, uint32_t rasterOp) {
  const ScreenDC screen;
  const DisplayModeScope mode(~0u, paint.mode);
  const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), paint.bitmap));
  const SlowPicture picture = PaintSlowly(paint);
  const auto painted = ShownBy(screen.get(), ground, [&] {
    BandWatch watch;
    EXPECT_EQ(
        Vn_PaintDC(screen.get(), paint.bitmap, Pointer(paint.source), Pointer(paint.sourceClip),
                   &paint.destination, Pointer(paint.destinationClip), rasterOp),
        picture.status);
    EXPECT_EQ(watch.Rows(), picture.Height());
  });
  EXPECT_TRUE(painted ==
              ShownBy(screen.get(), ground, [&] { ShowPicture(screen.get(), picture, rasterOp); }))
      << "the screen differs";
  EXPECT_EQ(paint.bitmap->Flags & FLAG_LOCKED, 0u);
  return picture;
}

Colors RandomTable(Random& random, int32_t bits) {
  const size_t count = size_t{1} << bits;
  if (bits == 1 && !random.Chance(4)) {
    const RGBQUAD* ramp = random.Chance(2) ? kBlackWhite : kWhiteBlack;
    return Colors(ramp, ramp + 2);
  }
  const RGBQUAD* fixed = Vn_IntGetFixedPalette(bits);
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
  return {left, top, random.Between(left + 1, width + reach),
          random.Between(top + 1, height + reach)};
}

SlowPaint RandomPaint(Random& random, BitmapHandle* bitmap, int32_t rawBits) {
  constexpr uint32_t kLeftOut = MODE_BITONAL_GRAY | MODE_BITONAL_VOTE;
  const auto mode = static_cast<uint32_t>(random.Between(0, 255)) & ~kLeftOut;
  SlowPaint paint{bitmap, mode, rawBits, {}, {}, {}, {}};
  const int32_t width = bitmap->Width, height = bitmap->Height;
  RECT source = {0, 0, width, height};
  if (random.Chance(2)) paint.source = source = RandomRect(random, width, height, 6);
  if (random.Chance(2)) paint.sourceClip = RandomRect(random, width, height, 6);
  const int32_t left = random.Between(-40, 60), top = random.Between(-30, 40);
  int32_t across = source.right - source.left, down = source.bottom - source.top;
  const int32_t scale = random.Between(0, 4);  // not, by whole numbers, across, down, both
  if (scale == 1) across *= random.Between(1, 4), down *= random.Between(1, 4);
  if (scale == 2 || scale == 4) across = random.Between(1, 120);
  if (scale >= 3) down = random.Between(1, 90);
  paint.destination = {left, top, left + across, top + down};
  if (random.Chance(2)) {
    const int32_t x = random.Between(-10, 80), y = random.Between(-10, 50);
    paint.destinationClip = RECT{x, y, x + random.Between(0, 70), y + random.Between(0, 50)};
  }
  return paint;
}

void CheckRandomPaint(Random& random, int32_t rawBits, std::map<int32_t, int>* kinds) {
  const int32_t bits = random.Chance(2) ? 1 : kDepths[random.Between(1, 5)];
  const Colors colors = bits <= 8 ? RandomTable(random, bits) : Colors(1);
  const int32_t width = random.Between(1, 75), height = random.Between(1, 40);
  RandomBitmap bitmap(random, width, height, bits, STORAGE_AUTO, colors.data());
  const SlowPaint paint = RandomPaint(random, bitmap, rawBits);
  const uint32_t rasterOps[] = {SRCCOPY, SRCCOPY, SRCINVERT, NOTSRCCOPY};
  SCOPED_TRACE(Told(bits, "bits,", width, "by", height, ", screen", rawBits, ", mode", paint.mode));
  const SlowPicture picture =
      ComparePaints(paint, random.Chance(2) ? WHITENESS : BLACKNESS, random.OneOf(rasterOps));
  if (!picture.lines.empty()) ++(*kinds)[picture.kind];
}

HEADLESS_TEST(Paint, MatchesTheModelOnEveryScreen) {
  for (const int32_t bits : {1, 4, 8, 16, 24, 32}) {
    const DisplayScope display(SmallScreen(bits));
    Random random(static_cast<uint64_t>(bits) + 100);
    std::map<int32_t, int> kinds;
    for (int round = 0; round < 700 && !testing::Test::HasFailure(); ++round) {
      SCOPED_TRACE(Told("round", round));
      CheckRandomPaint(random, bits, &kinds);
    }
    // Every kind that the screen has must have been met often enough to mean something.
    for (const int32_t kind : {PAINT_DIRECT, PAINT_EXPAND, PAINT_DITHER})
      EXPECT_TRUE(kinds[kind] > 5 || (kind == PAINT_DITHER && bits > 8)) << kind << " on " << bits;
  }
}

// On two colours gray is no gain, and there remains the vote.
HEADLESS_TEST(Paint, GrayAndVoteGoByTheScreen) {
  const DisplayModeScope mode(~0u, MODE_BITONAL_GRAY | MODE_BITONAL_VOTE);
  for (const int32_t screenBits : {1, 4, 24}) {
    const DisplayScope display(SmallScreen(screenBits));
    const ScreenDC screen;
    for (const bool inverted : {false, true}) {
      Bitmap bitmap(8, 8, 1, VIEW_TOP_FIRST, ORDER_BGR, inverted ? kWhiteBlack : kBlackWhite);
      int32_t bits, kind;
      Vn_GetDitherFlags(screen.get(), bitmap, &bits, &kind);
      EXPECT_EQ(kind, screenBits == 1 ? inverted ? PAINT_VOTE_INVERTED : PAINT_VOTE
                      : inverted      ? PAINT_GRAY_INVERTED
                                      : PAINT_GRAY);
    }
  }
}

HEADLESS_TEST(Paint, BandsHoldAsManyRowsAsFit) {
  const DisplayScope display(SmallScreen(24));
  struct Expectation {
    int32_t bits, width, height, firstRows, lastRows;
    size_t bands;
  };
  for (const Expectation& e :
       {Expectation{8, 4000, 100, 16, 4, 7}, Expectation{24, 30000, 3, 1, 1, 3},
        Expectation{1, 64, 40, 40, 40, 1}, Expectation{8, 65533, 2, 1, 1, 2},
        Expectation{8, 65536, 2, 1, 1, 2}, Expectation{32, 16384, 2, 1, 1, 2}}) {
    SCOPED_TRACE(Told(e.bits, "bits,", e.width, "by", e.height));
    Bitmap bitmap(e.width, e.height, e.bits);
    BandWatch watch;
    ASSERT_EQ(PaintAll(bitmap, RECT{0, 0, e.width, e.height}), OK);
    ASSERT_EQ(watch.bands.size(), e.bands);
    EXPECT_EQ(watch.bands.front().call.height, e.firstRows);
    EXPECT_EQ(watch.bands.back().call.height, e.lastRows);
    int32_t y = e.height;
    for (const BandWatch::Band& band : watch.bands) {
      y -= band.call.height;
      EXPECT_EQ(band.call.y, y) << "bands go up the device";
    }
    EXPECT_EQ(y, 0);
  }
}

// Rows of packed pixels go out in whole bytes at 1:1, and columns from 65536 on wrap.
HEADLESS_TEST(Paint, PackedRowsStartAtAByte) {
  const DisplayScope display(SmallScreen(8));
  Random random(31);
  for (const int32_t bits : {1, 4}) {
    Bitmap bitmap(66000, 3, bits, VIEW_BOTTOM_FIRST, ORDER_RGB,
                  bits == 1 ? kRedBlue : RandomColors(random, 16).data());
    FillRandom(bitmap, random);
    for (const int32_t column : {5, 65533, 65536 + 21}) {
      for (const uint32_t mode : {kDefaultMode, uint32_t{MODE_DITHER | MODE_FIXED_PALETTE}}) {
        SlowPaint paint{bitmap, mode, 8, RECT{column, 0, column + 40, 3}, {}, RECT{3, 4, 43, 7},
                        {}};
        SCOPED_TRACE(Told(bits, "bits, column", column, ", mode", mode));
        ComparePaints(paint, BLACKNESS, SRCCOPY);
      }
    }
  }
}

// A driver may spoil what it is given.
HEADLESS_TEST(Paint, PrintersGetACopyOfTheInfo) {
  Headless_Display display = SmallScreen(8);
  display.technology = DT_RASPRINTER;
  const DisplayScope scope(display);
  Bitmap bitmap(20, 10, 24);
  ThreadSettings& settings = CurrentThreadSettings();
  for (const int32_t width : {20, 33}) {
    settings.PaintInfo.header.biWidth = 4711;
    const BitmapInfo256 before = settings.PaintInfo;
    settings.PrinterPaintInfo = {};
    ASSERT_EQ(PaintAll(bitmap, RECT{0, 0, width, 10}), OK);
    EXPECT_EQ(std::memcmp(&before, &settings.PaintInfo, sizeof before), 0);
    EXPECT_EQ(settings.PrinterPaintInfo.header.biWidth, width);
    EXPECT_EQ(settings.PrinterPaintInfo.Indexes()[255], 255);
  }
}

}  // namespace
}  // namespace vn::test

#endif
