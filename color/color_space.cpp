// Vn_ConvertColorSpace: seven colour spaces by way of 24-bit blue, green, red. All arithmetic is in
// integers that truncate toward zero, and a byte result keeps its low 8 bits.
#include <algorithm>
#include <cstring>
#include <iterator>

#include <vncore/vncore.h>
#include "kernel/pixel_format.h"

namespace vn {
namespace {

// Each space tells its bytes a pixel and converts one pixel from and to Rgb.

struct BgrSpace {
  static constexpr size_t kBytes = 3;
  static Rgb Read(const uint8_t* p) { return {p[2], p[1], p[0]}; }
  static void Write(uint8_t* p, Rgb c) {
    p[0] = static_cast<uint8_t>(c.blue);
    p[1] = static_cast<uint8_t>(c.green);
    p[2] = static_cast<uint8_t>(c.red);
  }
};

// Spaces of three signed words with a full scale of 16384.
struct WordSpace {
  static constexpr size_t kBytes = 6;
  static int32_t Word(const uint8_t* p, size_t i) {
    return static_cast<int16_t>(LoadWord(p + 2 * i));
  }
  static void Put(uint8_t* p, size_t i, int32_t value) {
    StoreWord(p + 2 * i, static_cast<uint32_t>(value));
  }
  static Rgb ToScale(Rgb c) {
    return {c.red * 16384 / 255, c.green * 16384 / 255, c.blue * 16384 / 255};
  }
  static Rgb FromScale(Rgb c) {
    return {c.red * 255 / 16384 & 0xFF, c.green * 255 / 16384 & 0xFF, c.blue * 255 / 16384 & 0xFF};
  }
  static int32_t Luma(Rgb c) { return (587 * c.green + 299 * c.red + 114 * c.blue) / 1000; }
};

struct YuvSpace : WordSpace {
  static Rgb Read(const uint8_t* p) {
    const int32_t y = Word(p, 0);
    const int32_t blue = y + Word(p, 1), red = y + Word(p, 2);
    return FromScale({red, (1000 * y - 299 * red - 114 * blue) / 587, blue});
  }
  static void Write(uint8_t* p, Rgb c) {
    const Rgb full = ToScale(c);
    const int32_t y = Luma(full);
    Put(p, 0, y);
    Put(p, 1, full.blue - y);
    Put(p, 2, full.red - y);
  }
};

struct YiqSpace : WordSpace {
  static Rgb Read(const uint8_t* p) {
    const int32_t y = Word(p, 0), i = Word(p, 1), q = Word(p, 2);
    return FromScale({(1003 * y + 955 * i + 618 * q) / 1000, (997 * y - 271 * i - 645 * q) / 1000,
                      (1008 * y - 1110 * i + 1700 * q) / 1000});
  }
  static void Write(uint8_t* p, Rgb c) {
    const Rgb full = ToScale(c);
    Put(p, 0, Luma(full));
    Put(p, 1, (596 * full.red - 275 * full.green - 321 * full.blue) / 1000);
    Put(p, 2, (212 * full.red - 528 * full.green + 311 * full.blue) / 1000);
  }
};

struct CmySpace {
  static constexpr size_t kBytes = 3;
  static Rgb Read(const uint8_t* p) { return {255 - p[0], 255 - p[1], 255 - p[2]}; }
  static void Write(uint8_t* p, Rgb c) {
    p[0] = static_cast<uint8_t>(255 - c.red);
    p[1] = static_cast<uint8_t>(255 - c.green);
    p[2] = static_cast<uint8_t>(255 - c.blue);
  }
};

struct CmykSpace {
  static constexpr size_t kBytes = 4;
  static Rgb Read(const uint8_t* p) {
    const auto channel = [p](int32_t ink) { return std::max(255 - ink - p[3], 0); };
    return {channel(p[0]), channel(p[1]), channel(p[2])};
  }
  static void Write(uint8_t* p, Rgb c) {
    const int32_t key = 255 - std::max({c.red, c.green, c.blue});
    p[0] = static_cast<uint8_t>(255 - c.red - key);
    p[1] = static_cast<uint8_t>(255 - c.green - key);
    p[2] = static_cast<uint8_t>(255 - c.blue - key);
    p[3] = static_cast<uint8_t>(key);
  }
};

// The hue is a rational function of the two larger channels, not the piecewise linear one; reading
// inverts just that function. A sector's 120 degrees times 256 is 30720, and 360 degrees are 256
// steps.
struct HsvSpace {
  static constexpr size_t kBytes = 3;

  static Rgb Read(const uint8_t* p) {
    const int32_t d = p[0] * 360 >> 8, s = p[1], v = p[2];
    if (s == 0) return {v, v, v};
    const int32_t low = (255 - s) * v / 255, range = v - low;
    const auto rising = [&](int32_t from) { return low + range * from / (120 - from); };
    const auto falling = [&](int32_t from) { return low + range * (120 - from) / from; };
    if (d <= 60) return {v, rising(d), low};
    if (d <= 120) return {falling(d), v, low};
    if (d <= 180) return {low, v, rising(d - 120)};
    if (d <= 240) return {low, falling(d - 120), v};
    if (d <= 300) return {rising(d - 240), low, v};
    return {v, low, falling(d - 240)};
  }

  static void Write(uint8_t* p, Rgb c) {
    const int32_t high = std::max({c.red, c.green, c.blue});
    const int32_t low = std::min({c.red, c.green, c.blue});
    p[0] = p[1] = 0;
    p[2] = static_cast<uint8_t>(high);
    if (high == low) return;
    int32_t turn;
    if (c.blue == low) {
      turn = (c.green - low) * 30720 / (c.green + c.red - 2 * low) + 180;
    } else if (c.red == low) {
      turn = (c.blue - low) * 30720 / (c.blue + c.green - 2 * low) + 30900;
    } else {
      turn = (c.red - low) * 30720 / (c.blue + c.red - 2 * low) + 61620;
    }
    p[0] = static_cast<uint8_t>(turn / 360);
    p[1] = static_cast<uint8_t>((high - low) * 255 / high);
  }
};

// The hue circle has 255 steps: its thirds are 85, its sixths 42 and 127.
struct HlsSpace {
  static constexpr size_t kBytes = 3;

  static Rgb Read(const uint8_t* p) {
    const int32_t h = p[0], l = p[1], s = p[2];
    if (s == 0) return {l, l, l};
    const int32_t m2 = l < 128 ? (s + 255) * l / 255 : l + s - s * l / 255;
    const int32_t m1 = 2 * l - m2;
    const auto channel = [&](int32_t t) {
      if (t < 42) return m1 + (m2 - m1) * t * 6 / 255;
      if (t < 127) return m2;
      if (t < 170) return m1 + (m2 - m1) * (170 - t) * 6 / 255;
      return m1;
    };
    const int32_t before = h < 85 ? h + 170 : h - 85, after = h > 170 ? h - 170 : h + 85;
    return {channel(after) & 0xFF, channel(h) & 0xFF, channel(before) & 0xFF};
  }

  static void Write(uint8_t* p, Rgb c) {
    const int32_t high = std::max({c.red, c.green, c.blue});
    const int32_t low = std::min({c.red, c.green, c.blue});
    const int32_t sum = high + low, delta = high - low;
    const int32_t saturation = delta * 255 / (delta == 0 ? 1 : sum < 256 ? sum : 510 - sum);
    int32_t hue = 0;
    if (saturation != 0) {
      if (high == c.red) {
        hue = (c.green - c.blue) * 255 / (6 * delta);
      } else if (high == c.green) {
        hue = (c.blue - c.red) * 255 / (6 * delta) + 85;
      } else {
        hue = (c.red - c.green) * 255 / (6 * delta) + 170;
      }
      if (hue < 0) hue += 255;
    }
    p[0] = static_cast<uint8_t>(hue);
    p[1] = static_cast<uint8_t>(sum >> 1);
    p[2] = static_cast<uint8_t>(saturation);
  }
};

using PixelRun = void (*)(const uint8_t* source, uint8_t* target, size_t count);

template <class From, class To>
void ConvertRun(const uint8_t* source, uint8_t* target, size_t count) {
  for (size_t i = 0; i < count; ++i)
    To::Write(target + i * To::kBytes, From::Read(source + i * From::kBytes));
}

void CopyRun(const uint8_t* source, uint8_t* target, size_t count) {
  std::memcpy(target, source, count * BgrSpace::kBytes);
}

// What a space needs: its size, and its two ways.
struct SpaceEntry {
  size_t bytes;
  PixelRun toBgr;
  PixelRun fromBgr;
};

template <class Space>
constexpr SpaceEntry EntryOf() {
  return {Space::kBytes, ConvertRun<Space, BgrSpace>, ConvertRun<BgrSpace, Space>};
}

// By code.
constexpr SpaceEntry kSpaces[] = {{BgrSpace::kBytes, CopyRun, CopyRun},
                                  EntryOf<YuvSpace>(),
                                  EntryOf<CmykSpace>(),
                                  EntryOf<HsvSpace>(),
                                  EntryOf<HlsSpace>(),
                                  EntryOf<YiqSpace>(),
                                  EntryOf<CmySpace>()};

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_ConvertColorSpace(const void* source, void* target, int32_t count,
                                      uint32_t sourceSpace, uint32_t targetSpace) {
  using namespace vn;
  if (sourceSpace >= std::size(kSpaces) || targetSpace >= std::size(kSpaces)) {
    return ERR_INVALID_PARAMETER;
  }
  // The common form exists a block at a time, so no count is too large for memory.
  constexpr size_t kBlock = 256;
  uint8_t common[kBlock * BgrSpace::kBytes];
  const SpaceEntry& from = kSpaces[sourceSpace];
  const SpaceEntry& to = kSpaces[targetSpace];
  const auto* in = static_cast<const uint8_t*>(source);
  auto* out = static_cast<uint8_t*>(target);
  for (size_t left = count > 0 ? static_cast<size_t>(count) : 0; left > 0;) {
    const size_t pixels = std::min(left, kBlock);
    from.toBgr(in, common, pixels);
    to.fromBgr(common, out, pixels);
    in += pixels * from.bytes;
    out += pixels * to.bytes;
    left -= pixels;
  }
  return OK;
}
