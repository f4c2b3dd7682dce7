// The picture of the colour benchmarks: made, or read from a PPM file.
#include "bench/photograph.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace vn::bench {
namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

struct Light {
  double red, green, blue;
};

struct Ball {
  double x, y, radius;  // in widths of the picture
  Light color;
};

constexpr Ball kBalls[] = {{0.18, 0.30, 0.11, {214, 48, 36}},   {0.45, 0.22, 0.14, {36, 120, 60}},
                           {0.71, 0.33, 0.09, {242, 190, 40}},  {0.86, 0.16, 0.08, {60, 66, 190}},
                           {0.33, 0.09, 0.05, {224, 160, 140}}, {0.60, 0.08, 0.06, {120, 50, 130}}};

Light Background(double x, double y) {
  const double wave = 12 * std::sin(9 * x + 4 * y) + 8 * std::sin(23 * x - 31 * y);
  if (y > 0.42) {
    const double up = (y - 0.42) / 0.33;
    return {180 - 110 * up + wave, 205 - 75 * up + wave, 235 - 25 * up + wave / 2};
  }
  const double near = 1 - y / 0.42;
  return {90 + 70 * near + wave, 100 + 30 * near + wave * 1.5, 50 + 20 * near + wave};
}

Light Seen(double x, double y) {
  for (const Ball& ball : kBalls) {
    const double dx = (x - ball.x) / ball.radius, dy = (y - ball.y) / ball.radius;
    const double beside = dx * dx + dy * dy;
    if (beside >= 1) continue;
    const double facing = 0.3 * dy - 0.45 * dx + 0.84 * std::sqrt(1 - beside);
    const double shade = 0.25 + 0.75 * std::max(0.0, facing);
    const double shine = 200 * std::pow(std::max(0.0, facing), 40);
    return {ball.color.red * shade + shine, ball.color.green * shade + shine,
            ball.color.blue * shade + shine};
  }
  return Background(x, y);
}

// About the bell curve that a sensor's noise has: the sum of the bytes of a random number.
class Noise {
 public:
  double Next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    const auto bits = static_cast<uint32_t>(state_ >> 32);
    const uint32_t sum = (bits & 255) + (bits >> 8 & 255) + (bits >> 16 & 255) + (bits >> 24);
    return (sum - 510.0) / 148;  // deviation 1
  }

 private:
  uint64_t state_ = 1;
};

uint8_t Sample(double value) {
  return static_cast<uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

Photograph Made() {
  Photograph made{4000, 3000, {}};
  made.pixels.resize(made.RowBytes() * made.height);
  constexpr double kDeviation = 3;
  Noise noise;
  uint8_t* out = made.pixels.data();
  for (uint32_t row = 0; row < made.height; ++row) {
    for (uint32_t column = 0; column < made.width; ++column) {
      const Light light = Seen(double{1} * column / made.width, double{1} * row / made.width);
      *out++ = Sample(light.blue + kDeviation * noise.Next());
      *out++ = Sample(light.green + kDeviation * noise.Next());
      *out++ = Sample(light.red + kDeviation * noise.Next());
    }
  }
  return made;
}

// PPM has the top row first and red first, and so has `pixels` after this or before it.
void TurnOver(Photograph* picture) {
  const size_t rowBytes = picture->RowBytes();
  auto top = picture->pixels.begin();
  for (size_t above = 0, below = picture->height; above + 1 < below--; ++above) {
    std::swap_ranges(top + static_cast<ptrdiff_t>(above * rowBytes),
                     top + static_cast<ptrdiff_t>((above + 1) * rowBytes),
                     top + static_cast<ptrdiff_t>(below * rowBytes));
  }
  for (size_t i = 0; i < picture->pixels.size(); i += 3)
    std::swap(picture->pixels[i], picture->pixels[i + 2]);
}

bool ReadPpm(const char* path, Photograph* picture) {
  const File file(std::fopen(path, "rb"), &std::fclose);
  char end = 0;
  if (!file ||
      std::fscanf(file.get(), "P6 %u %u 255%c", &picture->width, &picture->height, &end) != 3 ||
      picture->width - 1 >= 65535 || picture->height - 1 >= 65535) {
    return false;
  }
  picture->pixels.resize(picture->RowBytes() * picture->height);
  if (std::fread(picture->pixels.data(), 1, picture->pixels.size(), file.get()) !=
      picture->pixels.size()) {
    return false;
  }
  TurnOver(picture);
  return true;
}

Photograph MadeOrRead() {
  const char* path = std::getenv("VNCORE_BENCH_PHOTO");
  if (!path) return Made();
  Photograph read;
  if (!ReadPpm(path, &read)) {
    std::fprintf(stderr, "%s is not a binary PPM file of 8-bit samples\n", path);
    std::exit(1);
  }
  return read;
}

}  // namespace

bool Photograph::WritePpm(const std::string& path) const {
  Photograph turned = *this;
  TurnOver(&turned);
  File file(std::fopen(path.c_str(), "wb"), &std::fclose);
  if (!file || std::fprintf(file.get(), "P6\n%u %u\n255\n", width, height) < 0 ||
      std::fwrite(turned.pixels.data(), 1, turned.pixels.size(), file.get()) !=
          turned.pixels.size()) {
    return false;
  }
  return std::fclose(file.release()) == 0;
}

const Photograph& ThePhotograph() {
  static const Photograph photograph = MadeOrRead();
  return photograph;
}

}  // namespace vn::bench
