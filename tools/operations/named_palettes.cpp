#include "tools/operations/named_palettes.h"

#include "tools/formats/gimp_palette.h"

namespace vn::tool {
namespace {

constexpr uint32_t kBlackWhite[] = {0x000000, 0xFFFFFF};
constexpr uint32_t kGray4[] = {0x000000, 0x555555, 0xAAAAAA, 0xFFFFFF};
constexpr uint32_t kGray16[] = {0x000000, 0x111111, 0x222222, 0x333333, 0x444444, 0x555555,
                                0x666666, 0x777777, 0x888888, 0x999999, 0xAAAAAA, 0xBBBBBB,
                                0xCCCCCC, 0xDDDDDD, 0xEEEEEE, 0xFFFFFF};
constexpr uint32_t kCga[] = {0x000000, 0x55FFFF, 0xFF55FF, 0xFFFFFF};
constexpr uint32_t kCgaWarm[] = {0x000000, 0x55FF55, 0xFF5555, 0xFFFF55};
constexpr uint32_t kEga[] = {0x000000, 0x0000AA, 0x00AA00, 0x00AAAA, 0xAA0000, 0xAA00AA,
                             0xAA5500, 0xAAAAAA, 0x555555, 0x5555FF, 0x55FF55, 0x55FFFF,
                             0xFF5555, 0xFF55FF, 0xFFFF55, 0xFFFFFF};
// As Philip Timmermann worked them out of the video chip's voltages.
constexpr uint32_t kC64[] = {0x000000, 0xFFFFFF, 0x68372B, 0x70A4B2, 0x6F3D86, 0x588D43,
                             0x352879, 0xB8C76F, 0x6F4F25, 0x433900, 0x9A6759, 0x444444,
                             0x6C6C6C, 0x9AD284, 0x6C5EB5, 0x959595};

// Electronic paper: what drivers name their colours by, and what typical panels show in daylight, in
// parts of their own white, as an eye that has got used to that sees it.
constexpr uint32_t kRed[] = {0x000000, 0xFFFFFF, 0xFF0000};
constexpr uint32_t kRedMeasured[] = {0x3E3D3F, 0xFFFFFF, 0xB92638};
constexpr uint32_t kYellow[] = {0x000000, 0xFFFFFF, 0xFFFF00};
constexpr uint32_t kYellowMeasured[] = {0x3E3D3F, 0xFFFFFF, 0xFFD21F};
constexpr uint32_t kFour[] = {0x000000, 0xFFFFFF, 0xFFFF00, 0xFF0000};
constexpr uint32_t kFourMeasured[] = {0x3E3D3F, 0xFFFFFF, 0xFFD21F, 0xB92638};
constexpr uint32_t kSix[] = {0x000000, 0xFFFFFF, 0xFFFF00, 0xFF0000, 0x0000FF, 0x00FF00};
constexpr uint32_t kSixMeasured[] = {0x1D2225, 0xFFFFFF, 0xFFF44C, 0xC4161C, 0x2560CD, 0x156924};
constexpr uint32_t kSeven[] = {0x000000, 0xFFFFFF, 0x00FF00, 0x0000FF,
                               0xFF0000, 0xFFFF00, 0xFF8C00};
constexpr uint32_t kSevenMeasured[] = {0x393039, 0xFFFFFF, 0x3A5B46, 0x3D3B5E,
                                       0x9C484B, 0xD0BE47, 0xB16A49};

constexpr NamedPalette kPalettes[] = {
    {"black-white", "black and white", kBlackWhite},
    {"gray-4", "four grays, as small displays have them", kGray4},
    {"gray-16", "sixteen grays", kGray16},
    {"cga", "black, cyan, magenta, white", kCga},
    {"cga-warm", "black, green, red, yellow", kCgaWarm},
    {"ega", "the sixteen colours of a text screen", kEga},
    {"c64", "the sixteen colours of the home computer", kC64},
    {"epaper-red", "electronic paper: black, white, red", kRed},
    {"epaper-red-measured", "the same as it looks", kRedMeasured},
    {"epaper-yellow", "electronic paper: black, white, yellow", kYellow},
    {"epaper-yellow-measured", "the same as it looks", kYellowMeasured},
    {"epaper-4", "electronic paper: black, white, yellow, red", kFour},
    {"epaper-4-measured", "the same as it looks", kFourMeasured},
    {"epaper-6", "electronic paper: black, white, yellow, red, blue, green", kSix},
    {"epaper-6-measured", "the same as it looks", kSixMeasured},
    {"epaper-7", "electronic paper: black, white, green, blue, red, yellow, orange", kSeven},
    {"epaper-7-measured", "the same as it looks", kSevenMeasured}};

}  // namespace

std::span<const NamedPalette> NamedPalettes() { return kPalettes; }

std::optional<std::vector<RGBQUAD>> FindNamedPalette(const std::string& name) {
  for (const NamedPalette& palette : kPalettes) {
    if (name != palette.name) continue;
    std::vector<RGBQUAD> colors;
    for (const uint32_t color : palette.colors) {
      colors.push_back({static_cast<uint8_t>(color), static_cast<uint8_t>(color >> 8),
                        static_cast<uint8_t>(color >> 16), 0});
    }
    return colors;
  }
  return std::nullopt;
}

std::vector<RGBQUAD> NamedOrFilePalette(const std::string& text) {
  auto named = FindNamedPalette(text);
  return named ? *named : ReadGimpPalette(text);
}

}  // namespace vn::tool
