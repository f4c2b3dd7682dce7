// Regions made from pixels and shown on a device.
#include <gtest/gtest.h>

#include "kernel/pixel_format.h"
#include "tests/support/bitmaps.h"
#include "tests/support/frame_region.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

constexpr int32_t kSide = 48;
constexpr COLORREF kInk = RGB(8, 0xFF, 0x42);  // a colour that 16 bits can hold

// Pixels of the ink and of colours that differ from it in one channel, in short runs.
void DrawRuns(BitmapHandle* bitmap, Random& random) {
  const COLORREF colors[] = {kInk, kInk, kInk ^ 8, kInk ^ 0x800, kInk ^ 0x80000};
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    for (int32_t x = 0; x < bitmap->Width;) {
      const COLORREF color = colors[random.Between(0, 4)];
      // A row in three repeats the one above.
      const bool repeats = y > 0 && y % 3 != 0;
      for (int32_t end = x + random.Between(1, 9); x < end && x < bitmap->Width; ++x)
        Vn_PutPixelColor(bitmap, y, x, repeats ? Vn_GetPixelColor(bitmap, y - 1, x) : color);
    }
  }
}

Colors InkTable(int32_t bits) {
  Colors table(FullColorCount(static_cast<uint32_t>(bits)));
  for (size_t i = 0; i < table.size(); ++i) {
    const COLORREF color = kInk ^ (i % 2 ? 0 : 8u << (i / 2 % 3 * 8));
    table[i] = {GetBValue(color), GetGValue(color), GetRValue(color), 0};
  }
  return table;
}

PixelSet Selected(const BitmapHandle* bitmap) {
  PixelSet set(0, kSide);
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    for (int32_t x = 0; x < bitmap->Width; ++x)
      set.Set(x, y, Vn_IsPtInBitmapRgn(bitmap, y, x) != 0);
  }
  return set;
}

PixelSet Inked(BitmapHandle* bitmap) {
  PixelSet set(0, kSide);
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    for (int32_t x = 0; x < bitmap->Width; ++x)
      set.Set(x, y, Vn_GetPixelColor(bitmap, y, x) == kInk);
  }
  return set;
}

bool Combined(uint32_t mode, bool before, bool ink) {
  switch (mode) {
    case REGION_COMBINE_AND:
      return before && ink;
    case REGION_COMBINE_REPLACE:
      return ink;
    case REGION_COMBINE_NEW_MINUS_OLD:
      return ink && !before;
    case REGION_COMBINE_OLD_MINUS_NEW:
      return before && !ink;
    case REGION_COMBINE_OR:
      return before || ink;
    default:
      return before != ink;
  }
}

std::vector<RECT> RectsIn(const BitmapHandle* bitmap) {
  return {bitmap->Region->begin(), bitmap->Region->end()};
}

// The list is the one that the platform's own region of these pixels gives, bounds included.
void ExpectPlatformList(BitmapHandle* bitmap, const PixelSet& pixels) {
  RegionUnion shape;
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      if (pixels.At(x, y)) shape.Add({x, y, x + 1, y + 1});
    }
  }
  const Region region(shape.Finish());
  Plain other(bitmap->Width, bitmap->Height);
  other.Select(region.get());
  const std::vector<RECT> ours = RectsIn(bitmap), theirs = other.Rects();
  ASSERT_EQ(ours.size(), theirs.size());
  for (size_t i = 0; i < ours.size(); ++i)
    EXPECT_EQ(Text(ours[i]), Text(theirs[i]));
  EXPECT_EQ(Text(bitmap->Region->header.rcBound), Text(other->Region->header.rcBound));
}

TEST(RegionColor, SelectsExactlyOneColour) {
  Random random(71);
  for (int round = 0; round < 240; ++round) {
    const int32_t bits = kDepths[round % 6];
    const auto mode = static_cast<uint32_t>(random.Between(0, 6));
    SCOPED_TRACE(testing::Message() << "round " << round << ", mode " << mode);
    Bitmap bitmap(static_cast<uint32_t>(random.Between(1, kSide)),
                  static_cast<uint32_t>(random.Between(1, kSide)), bits,
                  random.Chance(2) ? VIEW_BOTTOM_FIRST : VIEW_TOP_FIRST,
                  random.Chance(2) ? ORDER_BGR : ORDER_RGB,
                  bits <= 8 ? InkTable(bits).data() : nullptr);
    DrawRuns(bitmap, random);
    const RECT box = RandomRect(random, 0, kSide);
    if (random.Chance(2)) Vn_SetBitmapRgnRect(bitmap, nullptr, &box, REGION_COMBINE_REPLACE);
    const PixelSet before = Selected(bitmap);
    PixelSet wanted = PixelSet::Of(before, Inked(bitmap),
                                   [&](bool old, bool ink) { return Combined(mode, old, ink); });
    if (mode == REGION_COMBINE_REPLACE_INVERTED) {
      const PixelSet ink = Inked(bitmap);
      wanted = PixelSet(0, kSide);
      wanted.ForRect({0, 0, bitmap->Width, bitmap->Height}, [](bool) { return true; });
      wanted = PixelSet::Of(wanted, ink, [](bool all, bool on) { return all && !on; });
    }

    if (bits <= 8 && random.Chance(2)) Vn_CreatePaletteColors(bitmap);
    ASSERT_EQ(Vn_SetBitmapRgnColor(bitmap, kInk | 0x5A000000, mode), OK);
    EXPECT_TRUE(Selected(bitmap) == wanted);
    EXPECT_EQ((bitmap->Flags & FLAG_PALETTE_INDEXES) != 0, bits <= 8);
    EXPECT_EQ(bitmap->Flags & FLAG_LOCKED, 0u);
    ExpectPlatformList(bitmap, wanted);
  }
}

TEST(RegionColor, AColourThatIsNowhereSelectsNothing) {
  Bitmap bitmap(5, 4, 24);
  EXPECT_EQ(Vn_SetBitmapRgnColor(bitmap, 0x123456, REGION_COMBINE_REPLACE), OK);
  uint32_t area = 1;
  EXPECT_EQ(Vn_GetBitmapRgnArea(bitmap, &area), OK);
  EXPECT_TRUE(Vn_BitmapHasRgn(bitmap) && area == 0);
  EXPECT_EQ(Vn_SetBitmapRgnColor(bitmap, 0, 7), ERR_INVALID_PARAMETER);
  BitmapHandle none{};
  EXPECT_EQ(Vn_SetBitmapRgnColor(&none, 0, 1), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_SetBitmapRgnColor(nullptr, 0, 7), ERR_NO_BITMAP);
}

COLORREF At(HDC context, int32_t x, int32_t y) { return GetPixel(context, x, y); }

HEADLESS_TEST(RegionPaint, StaysWithinTheRegion) {
  const DisplayScope display(24);
  const ScreenDC screen;
  const HDC context = screen.get();
  Random random(73);
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(testing::Message() << "round " << round);
    Bitmap bitmap(static_cast<uint32_t>(random.Between(1, 30)),
                  static_cast<uint32_t>(random.Between(1, 30)), 24,
                  random.Chance(2) ? VIEW_BOTTOM_FIRST : VIEW_TOP_FIRST);
    const RECT box = RandomRect(random, -5, 35);
    if (!random.Chance(5)) Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, REGION_COMBINE_REPLACE);
    const RECT to = {random.Between(0, 9), random.Between(0, 9), random.Between(10, kSide),
                     random.Between(10, kSide)};
    const RegionTransform onto = {VIEW_TOP_FIRST, to.right - to.left,
                                  bitmap->Width,  to.bottom - to.top,
                                  bitmap->Height, to.left,
                                  to.top};
    HRGN handle = nullptr;
    ASSERT_EQ(Vn_GetBitmapRgnHandle(bitmap, &onto, &handle), OK);
    const Region shape(handle);
    PatBlt(context, 0, 0, kSide, kSide, WHITENESS);  // the picture is black
    const Region clip(CreateRectRgn(1, 1, 3, 3));
    SelectClipRgn(context, clip.get());
    ASSERT_EQ(Vn_PaintRgnDC(context, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
    EXPECT_EQ(At(context, 5, 5), CLR_INVALID) << "the caller's clip is back";
    SelectClipRgn(context, nullptr);
    for (int32_t y = 0; y < kSide; ++y) {
      for (int32_t x = 0; x < kSide; ++x) {
        const bool painted = PtInRegion(shape.get(), x, y) && x >= to.left && x < to.right &&
                             y >= to.top && y < to.bottom;
        ASSERT_EQ(At(context, x, y), painted ? 0u : 0xFFFFFFu) << x << ", " << y;
      }
    }
  }
  EXPECT_EQ(Vn_PaintRgnDC(context, nullptr, nullptr, nullptr, nullptr, nullptr, SRCCOPY),
            ERR_NO_BITMAP);
  Bitmap bitmap(1, 1, 8);
  EXPECT_EQ(Vn_PaintRgnDC(context, bitmap, nullptr, nullptr, nullptr, nullptr, SRCCOPY),
            ERR_INVALID_PARAMETER);
}

// Eight frames later the dashes are where they were; in between they move up a row each time.
HEADLESS_TEST(RegionFrame, Marches) {
  const DisplayScope display(24);
  const ScreenDC screen;
  Plain plain(30, 20);
  const RECT box = {4, 3, 25, 18};
  ASSERT_EQ(Vn_SetBitmapRgnRect(plain, nullptr, &box, REGION_COMBINE_REPLACE), OK);
  constexpr COLORREF kText = 0x0000FF, kBackground = 0xFF0000, kGround = 0xFFFFFF;
  SetTextColor(screen.get(), kText);
  SetBkColor(screen.get(), kBackground);
  for (int32_t frame = 0; frame < 8; ++frame) {
    PatBlt(screen.get(), 0, 0, 30, 20, WHITENESS);
    ASSERT_EQ(FrameRegion(screen.get(), plain, nullptr, static_cast<uint32_t>(frame)), OK);
    for (int32_t y = 0; y < 20; ++y) {
      for (int32_t x = 0; x < 30; ++x) {
        const bool in = x >= 4 && x < 25 && y >= 3 && y < 18;
        const bool inner = x >= 5 && x < 24 && y >= 4 && y < 17;
        const COLORREF dash = (x + y + frame + 4) / 4 % 2 ? kText : kBackground;
        ASSERT_EQ(At(screen.get(), x, y), in && !inner ? dash : kGround) << x << ", " << y;
      }
    }
  }
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), plain, nullptr, 8), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), nullptr, nullptr, 8), ERR_NO_BITMAP);
}

}  // namespace
}  // namespace vn::test
