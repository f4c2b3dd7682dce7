// Whole paints against the slow model on screens of every depth; bands, storage kinds, printers,
// exhausted memory.
#ifndef _WIN32

#include <cstring>
#include <map>

#include "kernel/guards.h"
#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixels.h"
#include "tests/support/slow_paint.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

constexpr uint32_t kDefaultMode = MODE_DEVICE_INDEXES | MODE_DITHER;
constexpr RGBQUAD kBlack = {0, 0, 0, 0}, kWhite = {255, 255, 255, 0};
constexpr RGBQUAD kBlackWhite[2] = {kBlack, kWhite};
constexpr RGBQUAD kWhiteBlack[2] = {kWhite, kBlack};
constexpr RGBQUAD kRedBlue[2] = {{0, 0, 255, 0}, {255, 0, 0, 0}};

RECT RectOf(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  return {left, top, right, bottom};
}

// A screen whose palette, if it is a palette device, can be set whole.
Headless_Display Screen(int32_t bits) {
  Headless_Display display = DisplayOf(bits);
  display.width = 96;
  display.height = 64;
  display.reservedColors = 0;
  return display;
}

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

Bytes ScreenBytes() {
  Headless_Surface screen;
  Headless_GetScreen(&screen);
  return Bytes(screen.bits, screen.bits + ptrdiff_t{screen.stride} * screen.height);
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
  info.header.biWidth = picture.Width();
  info.header.biHeight = picture.Height();
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<WORD>(picture.bits);
  std::copy(picture.colors.begin(), picture.colors.end(), info.colors);
  if (picture.indexes) WriteIdentityIndexes(info.Indexes());
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

// Paints by the library all of `bitmap`.
VnStatus PaintAll(BitmapHandle* bitmap, const RECT& to) {
  const ScreenDC screen;
  return Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY);
}

const RECT* Pointer(const std::optional<RECT>& rect) { return rect ? &*rect : nullptr; }

// Paints by the library and by the model and compares what the screen shows. Returns the model's
// picture.
SlowPicture ComparePaints(const SlowPaint& paint, uint32_t background, uint32_t rasterOp) {
  const ScreenDC screen;
  const HDC context = screen.get();
  const DisplayModeScope mode(~0u, paint.mode);
  const PaintPaletteScope palette(context, paint.bitmap);
  const SlowPicture picture = PaintSlowly(paint);
  PatBlt(context, 0, 0, 96, 64, background);
  {
    BandWatch watch;
    EXPECT_EQ(Vn_PaintDC(context, paint.bitmap, Pointer(paint.source), Pointer(paint.sourceClip),
                         &paint.destination, Pointer(paint.destinationClip), rasterOp),
              picture.status);
    EXPECT_EQ(watch.Rows(), picture.Height());
  }
  const Bytes painted = ScreenBytes();
  PatBlt(context, 0, 0, 96, 64, background);
  ShowPicture(context, picture, rasterOp);
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
  const int32_t scale = random.Between(0, 4);  // not, by whole numbers, across, down, both
  if (scale == 1) across *= random.Between(1, 4), down *= random.Between(1, 4);
  if (scale == 2 || scale == 4) across = random.Between(1, 120);
  if (scale >= 3) down = random.Between(1, 90);
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
                                  << ", screen " << rawBits << ", mode " << paint.mode);
  const SlowPicture picture = ComparePaints(paint, random.Chance(2) ? WHITENESS : BLACKNESS,
                                            rasterOps[random.Between(0, 3)]);
  if (!picture.lines.empty()) ++(*kinds)[picture.kind];
}

HEADLESS_TEST(Paint, MatchesTheModelOnEveryScreen) {
  for (const int32_t bits : {1, 4, 8, 16, 24, 32}) {
    const DisplayScope display(Screen(bits));
    Random random(static_cast<uint64_t>(bits) + 100);
    std::map<int32_t, int> kinds;
    for (int round = 0; round < 700 && !testing::Test::HasFailure(); ++round) {
      SCOPED_TRACE(testing::Message() << "round " << round);
      CheckRandomPaint(random, bits, &kinds);
    }
    // Every kind that the screen has must have been met often enough to mean something.
    for (int32_t kind = 0; kind < 7; ++kind) {
      const bool gray = kind == PAINT_GRAY || kind == PAINT_GRAY_INVERTED;
      const bool has = bits == 1 ? !gray : bits <= 8 || kind != PAINT_DITHER;
      EXPECT_TRUE(kinds[kind] > 5 || !has) << "kind " << kind << " on " << bits << " bits";
    }
  }
}

HEADLESS_TEST(Paint, BandsHoldAsManyRowsAsFit) {
  const DisplayScope display(Screen(24));
  struct Expectation {
    int32_t bits, width, height, firstRows, lastRows;
    size_t bands;
  };
  for (const Expectation& e :
       {Expectation{8, 4000, 100, 16, 4, 7}, Expectation{24, 30000, 3, 1, 1, 3},
        Expectation{1, 64, 40, 40, 40, 1}, Expectation{8, 65533, 2, 1, 1, 2},
        Expectation{8, 65536, 2, 1, 1, 2}, Expectation{32, 16384, 2, 1, 1, 2}}) {
    SCOPED_TRACE(testing::Message() << e.bits << " bits, " << e.width << " by " << e.height);
    Bitmap bitmap(static_cast<uint32_t>(e.width), static_cast<uint32_t>(e.height), e.bits);
    BandWatch watch;
    ASSERT_EQ(PaintAll(bitmap, RectOf(0, 0, e.width, e.height)), OK);
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
  const DisplayScope display(Screen(8));
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
      }
    }
  }
}

struct Way {
  int32_t bits;
  uint32_t mode;
  RECT to;
};
constexpr Way kWays[] = {{24, kDefaultMode, {0, 0, 90, 30}},
                         {24, kDefaultMode, {5, 5, 65, 45}},
                         {32, 0, {-7, -3, 20, 70}},
                         {4, MODE_DITHER | MODE_FIXED_PALETTE, {0, 0, 60, 40}},
                         {1, MODE_BITONAL_VOTE, {0, 0, 17, 11}},
                         {1, MODE_BITONAL_GRAY, {0, 0, 25, 33}},
                         {1, MODE_BITONAL_GRAY, {1, 1, 61, 41}}};

HEADLESS_TEST(Paint, StorageKindsShowTheSame) {
  const DisplayScope display(Screen(8));
  std::vector<Bytes> first;
  WithEachStorage([&](const StorageKind& kind) {
    std::vector<Bytes> shown;
    for (const Way& way : kWays) {
      Random random(51);
      Bitmap bitmap(60, 40, way.bits, VIEW_TOP_FIRST, ORDER_BGR,
                    way.bits == 1 ? kBlackWhite : nullptr, kind.request);
      ASSERT_EQ(bitmap->Flags & (FLAG_IN_MEMORY | FLAG_ON_DISK | FLAG_ALLOCATED), kind.flags);
      FillRandom(bitmap, random);
      const ScreenDC screen;
      const DisplayModeScope mode(~0u, way.mode);
      const PaintPaletteScope palette(screen.get(), bitmap);
      PatBlt(screen.get(), 0, 0, 96, 64, BLACKNESS);
      ASSERT_EQ(PaintAll(bitmap, way.to), OK);
      shown.push_back(ScreenBytes());
    }
    if (first.empty()) first = shown;
    EXPECT_TRUE(shown == first);
  });
}

// A driver may spoil what it is given.
HEADLESS_TEST(Paint, PrintersGetACopyOfTheInfo) {
  Headless_Display display = Screen(8);
  display.technology = DT_RASPRINTER;
  const DisplayScope scope(display);
  Bitmap bitmap(20, 10, 24);
  ThreadSettings& settings = CurrentThreadSettings();
  for (const int32_t width : {20, 33}) {
    settings.PaintInfo.header.biWidth = 4711;
    const BitmapInfo256 before = settings.PaintInfo;
    settings.PrinterPaintInfo = {};
    ASSERT_EQ(PaintAll(bitmap, RectOf(0, 0, width, 10)), OK);
    EXPECT_EQ(std::memcmp(&before, &settings.PaintInfo, sizeof before), 0);
    EXPECT_EQ(settings.PrinterPaintInfo.header.biWidth, width);
    EXPECT_EQ(settings.PrinterPaintInfo.Indexes()[255], 255);
  }
}

}  // namespace
}  // namespace vn::test

#endif
