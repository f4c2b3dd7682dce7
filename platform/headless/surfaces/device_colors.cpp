// The fixed tables, made at first use.
#include "platform/headless/surfaces/device_colors.h"

#include "platform/headless/objects/static_colors.h"

namespace headless {
namespace {

std::shared_ptr<ColorTable> Table1() {
  auto table = std::make_shared<ColorTable>();
  table->entries[1] = QuadOf(0xFFFFFF);
  table->count = 2;
  return table;
}

std::shared_ptr<ColorTable> Table4() {
  static constexpr uint32_t kColors[16] = {
      0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0x808080,
      0xC0C0C0, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
  auto table = std::make_shared<ColorTable>();
  for (uint32_t i = 0; i < 16; ++i)
    table->entries[i] = QuadOf(kColors[i]);
  table->count = 16;
  return table;
}

std::shared_ptr<ColorTable> Table8() {
  constexpr uint32_t kEnd = kStaticColorCount / 2;
  auto table = std::make_shared<ColorTable>();
  for (uint32_t i = 0; i < 256; ++i) {
    const uint32_t rgb = i < kEnd          ? RgbOf(kStaticColors[i])
                         : i >= 256 - kEnd ? RgbOf(kStaticColors[i - (256 - 2 * kEnd)])
                                           : (i & 7) << 21 | (i >> 3 & 7) << 13 | (i >> 6) << 6;
    table->entries[i] = QuadOf(rgb);
  }
  table->count = 256;
  return table;
}

}  // namespace

const std::shared_ptr<ColorTable>& FixedColors(uint32_t bits) {
  static const auto* tables =
      new std::shared_ptr<ColorTable>[4] { nullptr, Table1(), Table4(), Table8() };
  return tables[bits == 1 ? 1 : bits == 4 ? 2 : bits == 8 ? 3 : 0];
}

}  // namespace headless
