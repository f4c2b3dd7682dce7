#include "tools/commands/chart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace vn::tool {
namespace {

// A panel's own coordinates and size.
struct Spot {
  int32_t x, y, width, height;
};
using Shade = Rgb (*)(const Spot&);

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kPaper{72, 72, 76};
constexpr Rgb kGrid{96, 96, 100};

constexpr Rgb Gray(int32_t level) { return {level, level, level}; }

// 0 to 255 over the width.
int32_t Rise(const Spot& at) { return at.x * 255 / std::max(at.width - 1, 1); }

// The full colour circle in 1536 steps, red at 0, with the saturation and value of 255 parts.
Rgb Hue(int32_t step, int32_t saturation) {
  const int32_t up = step & 255;
  const int32_t down = 255 - up;
  Rgb full{};
  switch (step >> 8) {
    case 0:
      full = {255, up, 0};
      break;
    case 1:
      full = {down, 255, 0};
      break;
    case 2:
      full = {0, 255, up};
      break;
    case 3:
      full = {0, down, 255};
      break;
    case 4:
      full = {up, 0, 255};
      break;
    default:
      full = {255, 0, down};
      break;
  }
  const auto toWhite = [saturation](int32_t channel) {
    return 255 - (255 - channel) * saturation / 255;
  };
  return {toWhite(full.red), toWhite(full.green), toWhite(full.blue)};
}

// Turns, 0 up to 1, of the direction (dx, dy).
double Turns(int32_t dx, int32_t dy) {
  const double turn = std::atan2(dy, dx) / (2 * std::numbers::pi);
  return turn < 0 ? turn + 1 : turn;
}

Rgb Bars(const Spot& at) {
  // White, yellow, cyan, green, magenta, red, blue, black: a bit per channel, counted down.
  const int32_t bits = 7 - std::min(at.x * 8 / at.width, 7);
  return {bits & 2 ? 255 : 0, bits & 4 ? 255 : 0, bits & 1 ? 255 : 0};
}
Rgb GrayRise(const Spot& at) { return Gray(Rise(at)); }
Rgb RedRise(const Spot& at) { return {Rise(at), 0, 0}; }
Rgb GreenRise(const Spot& at) { return {0, Rise(at), 0}; }
Rgb BlueRise(const Spot& at) { return {0, 0, Rise(at)}; }
Rgb HueRise(const Spot& at) {
  return Hue(static_cast<int32_t>(int64_t{at.x} * 1536 / at.width), 255);
}

Rgb Wheel(const Spot& at) {
  const int32_t dx = 2 * at.x - at.width + 1;
  const int32_t dy = 2 * at.y - at.height + 1;
  const int32_t radius = std::min(at.width, at.height);
  const double distance = std::hypot(dx, dy);
  if (distance >= radius) return kPaper;
  return Hue(std::min(static_cast<int32_t>(Turns(dx, -dy) * 1536), 1535),
             static_cast<int32_t>(distance * 255 / radius));
}

// cos(k r r), with k so that the rings reach the finest that pixels can show at the nearer edge.
Rgb ZonePlate(const Spot& at) {
  constexpr int32_t kTurn = 1024;
  static const std::array<uint8_t, kTurn> wave = [] {
    std::array<uint8_t, kTurn> table{};
    for (int32_t i = 0; i < kTurn; ++i) {
      const double phase = 2 * std::numbers::pi * i / kTurn;
      table[static_cast<size_t>(i)] =
          static_cast<uint8_t>(std::lround(127.5 + 127.5 * std::cos(phase)));
    }
    return table;
  }();
  const int64_t dx = 2 * at.x - at.width + 1;
  const int64_t dy = 2 * at.y - at.height + 1;
  const int64_t radius = std::max(std::min(at.width, at.height), 1);
  const int64_t phase = (dx * dx + dy * dy) * (kTurn / 8) / radius;
  return Gray(wave[static_cast<size_t>(phase % kTurn)]);
}

Rgb Star(const Spot& at) {
  const double turn = Turns(2 * at.x - at.width + 1, 2 * at.y - at.height + 1);
  return static_cast<int32_t>(turn * 72) & 1 ? kBlack : kWhite;
}

// Lines of one pixel: upright ones, level ones and slanted ones at growing distances, and the star.
Rgb Hairlines(const Spot& at) {
  constexpr int32_t kPeriods[] = {2, 3, 4, 6, 8, 12};
  const Spot part{at.x % ((at.width + 1) / 2), at.y % ((at.height + 1) / 2), (at.width + 1) / 2,
                  (at.height + 1) / 2};
  const bool right = at.x >= part.width;
  const bool low = at.y >= part.height;
  if (right && low) return Star(part);
  const int32_t along = right ? part.y : part.x;
  const int32_t length = right ? part.height : part.width;
  if (!low) {
    const int32_t period = kPeriods[std::min(along * 6 / length, 5)];
    return along % period == 0 ? kBlack : kWhite;
  }
  // Four times as steep as wide on the left, the other way round on the right.
  const int32_t slanted = 2 * part.x < part.width ? 4 * part.x + part.y : part.x + 4 * part.y;
  return slanted % 48 < 4 ? kBlack : kWhite;
}

Rgb GraySteps(const Spot& at) { return Gray(std::min(at.x * 12 / at.width, 11) * 255 / 11); }

// Flat colours from within the cube: skin, wood, leaf, sky and their like.
Rgb Patches(const Spot& at) {
  constexpr Rgb kColors[] = {{92, 60, 44},   {150, 104, 76},  {226, 180, 150}, {246, 220, 200},
                             {60, 80, 30},   {110, 140, 60},  {180, 205, 120}, {30, 90, 80},
                             {90, 170, 160}, {140, 190, 225}, {70, 120, 190},  {30, 50, 110},
                             {90, 60, 130},  {160, 110, 180}, {190, 50, 90},   {220, 110, 40},
                             {240, 190, 60}, {128, 128, 128}};
  constexpr int32_t kCount = std::size(kColors);
  return kColors[std::min(at.x * kCount / at.width, kCount - 1)];
}

// Where a panel stands, in thousandths of the picture.
struct Panel {
  int32_t left, top, right, bottom;
  Shade shade;
};
constexpr Panel kPanels[] = {{40, 40, 960, 150, &Bars},        {40, 165, 960, 215, &GrayRise},
                             {40, 215, 960, 245, &RedRise},    {40, 245, 960, 275, &GreenRise},
                             {40, 275, 960, 305, &BlueRise},   {40, 305, 960, 345, &HueRise},
                             {40, 370, 333, 780, &Wheel},      {353, 370, 646, 780, &ZonePlate},
                             {667, 370, 960, 780, &Hairlines}, {40, 805, 960, 880, &GraySteps},
                             {40, 880, 960, 960, &Patches}};

int32_t Portion(int32_t whole, int32_t thousandths) {
  return static_cast<int32_t>(int64_t{whole} * thousandths / 1000);
}

}  // namespace

Chart::Chart(int32_t width, int32_t height) {
  RequirePossibleSize("chart", width, height, 24);
  info_.width = width;
  info_.height = height;
}

void Chart::ReadRow(uint8_t* row) {
  const int32_t width = info_.width;
  const int32_t height = info_.height;
  const int32_t y = line_++;
  const auto put = [row](int32_t x, Rgb color) {
    PutColor<24, ORDER_BGR>(row, static_cast<size_t>(x), color);
  };

  const int32_t cell = std::max(std::min(width, height) / 24, 4);
  for (int32_t x = 0; x < width; ++x)
    put(x, x % cell == 0 || y % cell == 0 ? kGrid : kPaper);
  for (const Panel& panel : kPanels) {
    const int32_t left = Portion(width, panel.left);
    const int32_t right = Portion(width, panel.right);
    const int32_t top = Portion(height, panel.top);
    const int32_t bottom = Portion(height, panel.bottom);
    if (y < top || y >= bottom) continue;
    for (int32_t x = left; x < right; ++x) {
      put(x, panel.shade({x - left, y - top, right - left, bottom - top}));
    }
  }

  const int32_t fromEdge = std::min(y, height - 1 - y);
  for (int32_t x = 0; x < width; ++x) {
    const int32_t distance = std::min({fromEdge, x, width - 1 - x});
    if (distance == 0) put(x, kWhite);
    if (distance == 1) put(x, kBlack);
    if (distance > 1 && fromEdge > 1 && x < width - 2) x = width - 3;  // straight to the other side
  }
}

}  // namespace vn::tool
