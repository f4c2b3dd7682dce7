// Drawing of the platform against slow models that work pixel by pixel, in both worlds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "kernel/platform_objects.h"
#include "platform/win32.h"
#include "tests/support/random.h"

namespace vn::test {
namespace {

constexpr int32_t kDepths[] = {1, 4, 8, 16, 24, 32};

struct Info {
  BITMAPINFOHEADER header;
  union {
    RGBQUAD colors[256];
    WORD indexes[512];
  };
  BITMAPINFO* get() { return reinterpret_cast<BITMAPINFO*>(this); }
};

// Pixels of a DIB by number, from the left and from the top.
struct Pixels {
  uint8_t* bits;
  int32_t width, height, depth;
  bool topDown;
  std::vector<uint32_t> colors;  // 0xRRGGBB

  uint8_t* Row(int32_t y) const {
    return bits + (width * depth + 31) / 32 * 4 * (topDown ? y : height - 1 - y);
  }
  uint32_t Get(int32_t x, int32_t y) const {
    const uint8_t* row = Row(y);
    if (depth < 8) return row[x * depth / 8] >> (8 - depth - x * depth % 8) & ((1 << depth) - 1);
    uint32_t value = 0;
    std::memcpy(&value, row + x * depth / 8, static_cast<size_t>(depth / 8));
    return value;
  }
  uint32_t Color(int32_t x, int32_t y) const {
    const uint32_t value = Get(x, y);
    if (depth <= 8) return colors[value];
    if (depth > 16) return value & 0xFFFFFF;
    const auto wide = [&](int shift) { return (value >> shift & 31) * 33 / 4; };
    return wide(10) << 16 | wide(5) << 8 | wide(0);
  }
};

uint32_t Nearest(const std::vector<uint32_t>& colors, uint32_t rgb) {
  uint32_t best = 0;
  int32_t bestDistance = INT32_MAX;
  for (uint32_t i = 0; i < colors.size(); ++i) {
    int32_t distance = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const auto d =
          static_cast<int32_t>(colors[i] >> shift & 255) - static_cast<int32_t>(rgb >> shift & 255);
      distance += d * d;
    }
    if (distance < bestDistance) {
      bestDistance = distance;
      best = i;
    }
  }
  return best;
}

// The value that a target of some depth has for a colour. `many`: it comes from more than 256.
uint32_t ValueOf(const Pixels& target, uint32_t rgb, bool many) {
  if (target.depth == 8 && many) return Nearest(target.colors, (rgb & 0xF8F8F8) + 0x040404);
  if (target.depth <= 8) return Nearest(target.colors, rgb);
  if (target.depth > 16) return rgb;
  return (rgb >> 19 & 31) << 10 | (rgb >> 11 & 31) << 5 | (rgb >> 3 & 31);
}

uint32_t Operate(uint32_t truth, uint32_t pattern, uint32_t source, uint32_t target, int bits) {
  uint32_t result = 0;
  for (int i = 0; i < bits; ++i) {
    const uint32_t row = (pattern >> i & 1) * 4 + (source >> i & 1) * 2 + (target >> i & 1);
    result |= (truth >> row & 1) << i;
  }
  return result;
}

// A DIB of random pixels: a DIB section selected in a context, or rows of the test's own.
class Picture {
 public:
  Picture(Random& random, int32_t width, int32_t height, int32_t depth, bool section) {
    pixels = {nullptr, width, height, depth, random.Chance(2), {}};
    info.header.biSize = sizeof info.header;
    info.header.biWidth = width;
    info.header.biHeight = pixels.topDown ? -height : height;
    info.header.biPlanes = 1;
    info.header.biBitCount = static_cast<WORD>(depth);
    const auto bytes = static_cast<size_t>((width * depth + 31) / 32 * 4 * height);
    for (int i = 0; depth <= 8 && i < 1 << depth; ++i) {
      random.Fill(&info.colors[i], 3);
      pixels.colors.push_back(static_cast<uint32_t>(
          info.colors[i].rgbRed << 16 | info.colors[i].rgbGreen << 8 | info.colors[i].rgbBlue));
    }
    if (section) {
      void* bits = nullptr;
      context = CreateCompatibleDC(nullptr);
      bitmap = CreateDIBSection(context, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0);
      before_ = SelectObject(context, bitmap);
      pixels.bits = static_cast<uint8_t*>(bits);
    } else {
      memory_.resize(bytes);
      pixels.bits = memory_.data();
    }
    random.Fill(pixels.bits, bytes);
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() {
    if (!context) return;
    SelectObject(context, before_);
    DeleteObject(bitmap);
    DeleteDC(context);
  }

  // Values of all pixels, row by row.
  std::vector<uint32_t> Values() const {
    std::vector<uint32_t> values;
    for (int32_t y = 0; y < pixels.height; ++y) {
      for (int32_t x = 0; x < pixels.width; ++x)
        values.push_back(pixels.Get(x, y));
    }
    return values;
  }

  Info info{};
  Pixels pixels;
  HDC context = nullptr;
  HBITMAP bitmap = nullptr;

 private:
  HGDIOBJ before_ = nullptr;
  std::vector<uint8_t> memory_;
};

// Random values as indexes into a palette of random colours.
OwnedObject<HPALETTE> UseIndexes(Random& random, Picture& picture) {
  struct {
    WORD version = 0x300, count;
    PALETTEENTRY entries[256];
  } log{};
  log.version = 0x300;
  log.count = static_cast<WORD>(random.Between(1, 256));
  random.Fill(log.entries, sizeof log.entries);
  for (size_t i = 0; i < picture.pixels.colors.size(); ++i) {
    picture.info.indexes[i] = static_cast<WORD>(random.Between(0, log.count + 3));
    const size_t round = std::min<size_t>(log.count, picture.pixels.colors.size());
    const PALETTEENTRY& entry = log.entries[picture.info.indexes[i] % round];
    picture.pixels.colors[i] =
        static_cast<uint32_t>(entry.peRed << 16 | entry.peGreen << 8 | entry.peBlue);
  }
  return OwnedObject<HPALETTE>(CreatePalette(reinterpret_cast<const LOGPALETTE*>(&log)));
}

// Everything at once: depths, tables, offsets beyond all edges, operations, a clip.
TEST(PlatformDraw, StretchDIBitsOneToOneIsTheSlowModel) {
  for (uint64_t seed = 0; seed < 1500; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    Picture target(random, random.Between(1, 30), random.Between(1, 12),
                   kDepths[random.Between(0, 5)], true);
    Picture source(random, random.Between(1, 30), random.Between(1, 12),
                   kDepths[random.Between(0, 5)], false);
    const Pixels& from = source.pixels;
    const Pixels& to = target.pixels;
    UINT usage = DIB_RGB_COLORS;
    OwnedObject<HPALETTE> palette;
    HPALETTE before = nullptr;
    if (from.depth <= 8 && random.Chance(2)) {
      usage = DIB_PAL_COLORS;
      palette = UseIndexes(random, source);
      before = SelectPalette(target.context, palette.get(), FALSE);
    }
    const auto brushColor = static_cast<uint32_t>(random.Next() & 0xFFFFFF);
    const OwnedObject<HBRUSH> brush(
        CreateSolidBrush(RGB(brushColor >> 16, brushColor >> 8, brushColor)));
    const HGDIOBJ oldBrush = SelectObject(target.context, brush.get());
    const auto truth = static_cast<uint32_t>(random.Between(0, to.depth == 1 ? 15 : 255));
    // Brushes on two colours follow rules of their own: without a pattern there.
    const uint32_t table = random.Chance(2) ? 0xCC : to.depth == 1 ? truth * 17 : truth;
    RECT clip;
    clip.left = random.Between(-3, 10);
    clip.top = random.Between(-3, 6);
    clip.right = random.Between(clip.left, 30);
    clip.bottom = random.Between(clip.top, 12);
    const OwnedObject<HRGN> region(CreateRectRgnIndirect(&clip));
    SelectClipRgn(target.context, region.get());

    const int32_t x = random.Between(-8, 20), y = random.Between(-5, 10);
    const int32_t width = random.Between(1, 30), height = random.Between(1, 12);
    const int32_t srcX = random.Between(-3, 9), srcY = random.Between(-3, 5);
    // From the lowest row, but in a top-down DIB from the upper one for a copy from its corner and
    // for all other operations.
    const bool fromTop = from.topDown && (table != 0xCC || (srcX == 0 && srcY == 0));
    const int32_t top = fromTop ? srcY : from.height - srcY - height;
    std::vector<uint32_t> expected = target.Values();
    for (int32_t row = 0; row < height; ++row) {
      for (int32_t column = 0; column < width; ++column) {
        const int32_t tx = x + column, ty = y + row, sx = srcX + column, sy = top + row;
        if (tx < 0 || ty < 0 || tx >= to.width || ty >= to.height || tx < clip.left ||
            tx >= clip.right || ty < clip.top || ty >= clip.bottom || sx < 0 || sy < 0 ||
            sx >= from.width || sy >= from.height) {
          continue;
        }
        const uint32_t value =
            from.depth == to.depth && to.depth > 8  // as they are, unused bits too
                ? from.Get(sx, sy)
                : ValueOf(to, from.Color(sx, sy), from.depth > 8);
        uint32_t& pixel = expected[static_cast<size_t>(ty * to.width + tx)];
        pixel = Operate(table, ValueOf(to, brushColor, false), value, pixel, to.depth);
      }
    }
    const DWORD operation = table == 0xCC ? SRCCOPY : table << 16;
    StretchDIBits(target.context, x, y, width, height, srcX, srcY, width, height, from.bits,
                  source.info.get(), usage, operation);
    EXPECT_EQ(target.Values(), expected)
        << from.depth << " to " << to.depth << " bits, operation " << std::hex << operation;
    SelectObject(target.context, oldBrush);
    if (before) SelectPalette(target.context, before, FALSE);
    if (HasFailure()) return;
  }
}

// Which source pixels a target pixel shows, by comparing centres as fractions.
bool Meets(int32_t target, int32_t targetSize, int32_t source, int32_t sourceSize) {
  // Twice the product of both sizes is 1: pixel edges and centres are whole numbers.
  const bool shrinks = sourceSize > targetSize;
  const int32_t centre = shrinks ? (2 * source + 1) * targetSize : (2 * target + 1) * sourceSize;
  const int32_t pixel = 2 * (shrinks ? sourceSize : targetSize);
  const int32_t index = shrinks ? target : source;
  return centre > index * pixel && centre <= (index + 1) * pixel;
}

TEST(PlatformDraw, StretchingIsTheSlowModelAndMirrorsAreMirrored) {
  for (uint64_t seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    const int32_t depth = random.Chance(2) ? 32 : 24;
    Picture target(random, random.Between(1, 30), random.Between(1, 20), depth, true);
    Picture source(random, random.Between(1, 20), random.Between(1, 20), depth, false);
    const Pixels& from = source.pixels;
    const Pixels& to = target.pixels;
    // Whole source pictures, on targets that may lie across all edges.
    const int32_t width = random.Between(1, 40), height = random.Between(1, 40);
    const int32_t x = random.Between(-10, 20), y = random.Between(-10, 15);
    const bool mirrorX = random.Chance(3), mirrorY = random.Chance(3);
    std::vector<uint32_t> expected = target.Values();
    for (int32_t ty = std::max(0, y); ty < std::min(to.height, y + height); ++ty) {
      for (int32_t tx = std::max(0, x); tx < std::min(to.width, x + width); ++tx) {
        uint32_t value = ~0u;
        for (int32_t sy = 0; sy < from.height; ++sy) {
          for (int32_t sx = 0; sx < from.width; ++sx) {
            const int32_t atX = mirrorX ? x + width - 1 - tx : tx - x;
            const int32_t atY = mirrorY ? y + height - 1 - ty : ty - y;
            if (Meets(atX, width, sx, from.width) && Meets(atY, height, sy, from.height)) {
              value &= from.Get(sx, sy);
            }
          }
        }
        expected[static_cast<size_t>(ty * to.width + tx)] = value;
      }
    }
    EXPECT_EQ(
        StretchDIBits(target.context, mirrorX ? x + width - 1 : x, mirrorY ? y + height - 1 : y,
                      mirrorX ? -width : width, mirrorY ? -height : height, 0, 0, from.width,
                      from.height, from.bits, source.info.get(), DIB_RGB_COLORS, SRCCOPY),
        from.height);
    EXPECT_EQ(target.Values(), expected) << width << "x" << height << " at " << x << "," << y;
    if (HasFailure()) return;
  }
}

// Index into kDepths.
#ifdef _WIN32
constexpr int32_t kFirstMovable = 1;  // Wine smears 1-bit rows that are moved to the right
#else
constexpr int32_t kFirstMovable = 0;
#endif

// A move within one surface behaves as if the source had been copied first.
TEST(PlatformDraw, BitBltOntoItselfMovesPixelsInAnyDirection) {
  for (uint64_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    Picture picture(random, random.Between(1, 30), random.Between(1, 12),
                    kDepths[random.Between(kFirstMovable, 5)], true);
    const Pixels& pixels = picture.pixels;
    const int32_t dx = random.Between(-4, 4), dy = random.Between(-3, 3);
    const std::vector<uint32_t> before = picture.Values();
    std::vector<uint32_t> expected = before;
    for (int32_t y = 0; y < pixels.height; ++y) {
      for (int32_t x = 0; x < pixels.width; ++x) {
        if (x + dx < 0 || y + dy < 0 || x + dx >= pixels.width || y + dy >= pixels.height) continue;
        expected[static_cast<size_t>((y + dy) * pixels.width + x + dx)] =
            before[static_cast<size_t>(y * pixels.width + x)];
      }
    }
    BitBlt(picture.context, dx, dy, pixels.width, pixels.height, picture.context, 0, 0, SRCCOPY);
    EXPECT_EQ(picture.Values(), expected);
    if (HasFailure()) return;
  }
}

// Monochrome bitmaps take colours from the contexts that they meet.
TEST(PlatformDraw, MonochromeBitmapsTakeTextAndBackgroundColours) {
  Random random(3);
  const WORD rows[] = {0x00A5, 0x003C};  // 1010'0101 and 0011'1100
  const OwnedObject<HBITMAP> bitmap(CreateBitmap(8, 2, 1, 1, rows));
  const HDC mono = CreateCompatibleDC(nullptr);
  const HGDIOBJ before = SelectObject(mono, bitmap.get());
  {
    Picture color(random, 8, 2, 24, true);
    SetTextColor(color.context, RGB(1, 2, 3));
    SetBkColor(color.context, RGB(250, 0, 9));
    EXPECT_TRUE(BitBlt(color.context, 0, 0, 8, 2, mono, 0, 0, SRCCOPY));
    EXPECT_EQ(color.pixels.Get(0, 0), 0xFA0009u);
    EXPECT_EQ(color.pixels.Get(1, 0), 0x010203u);
    EXPECT_EQ(color.pixels.Get(1, 1), 0x010203u);
    EXPECT_EQ(color.pixels.Get(2, 1), 0xFA0009u);
    // Back: what has the source's background colour becomes 1, which shows as white.
    EXPECT_TRUE(PatBlt(mono, 0, 0, 8, 2, BLACKNESS));
    EXPECT_TRUE(BitBlt(mono, 0, 0, 8, 2, color.context, 0, 0, SRCCOPY));
    for (int x = 0; x < 8; ++x) {
      EXPECT_EQ(GetPixel(mono, x, 0), 0xA5 >> (7 - x) & 1 ? 0xFFFFFFu : 0u) << x;
    }
  }
  SelectObject(mono, before);
  DeleteDC(mono);
}

// Lines come back as they were drawn, in any depth that can hold them.
TEST(PlatformDraw, GetDIBitsReadsAnyLinesOfAnyBitmap) {
  for (uint64_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    Picture picture(random, random.Between(1, 20), random.Between(1, 12),
                    kDepths[random.Between(0, 5)], true);
    const Pixels& pixels = picture.pixels;
    Info info{};
    info.header.biSize = sizeof info.header;
    info.header.biWidth = pixels.width;
    info.header.biHeight = random.Chance(2) ? pixels.height : -pixels.height;
    info.header.biPlanes = 1;
    info.header.biBitCount = random.Chance(2) ? 24 : static_cast<WORD>(pixels.depth);
    const int32_t first = random.Between(0, pixels.height - 1);
    const int32_t lines = random.Between(1, pixels.height - first);
    std::vector<uint8_t> bits(static_cast<size_t>((pixels.width * 32) / 8 * lines + 4 * lines));
    EXPECT_EQ(GetDIBits(picture.context, picture.bitmap, static_cast<UINT>(first),
                        static_cast<UINT>(lines), bits.data(), info.get(), DIB_RGB_COLORS),
              lines);
    Pixels read = {
        bits.data(),  pixels.width, lines, info.header.biBitCount, info.header.biHeight < 0,
        pixels.colors};
    for (int32_t y = 0; y < lines; ++y) {
      for (int32_t x = 0; x < pixels.width; ++x) {
        // Lines count from the lowest one.
        EXPECT_EQ(read.Color(x, y), pixels.Color(x, pixels.height - first - lines + y));
      }
    }
    if (read.depth == pixels.depth && read.depth <= 8) {
      EXPECT_EQ(std::memcmp(info.colors, picture.info.colors, sizeof(RGBQUAD) << read.depth), 0);
    }
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace vn::test
