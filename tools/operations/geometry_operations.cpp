#include "tools/operations/geometry_operations.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "geometry/fixed_sine.h"
#include "tools/formats/picture.h"
#include "tools/operations/value_parsers.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

using Parsed = std::optional<Operation>;

// Degrees with two decimals at the most, as hundredths.
std::optional<int32_t> ParseAngle(std::string_view text) {
  const auto degrees = ParseDecimal(text);
  if (!degrees || std::fabs(*degrees) > 1e6) return std::nullopt;
  const double hundredths = std::round(*degrees * 100);
  if (std::fabs(*degrees * 100 - hundredths) > 1e-3) return std::nullopt;
  return static_cast<int32_t>(hundredths);
}

COLORREF ColorRef(const Rgb& color) { return RGB(color.red, color.green, color.blue); }

Parsed ParseRotate(const std::string& value, const GeometrySettings* settings) {
  const auto angle = ParseAngle(value);
  if (!angle) return std::nullopt;
  return [angle = *angle, settings](Bitmap& bitmap) {
    RequireDone("--rotate", Vn_RotateBitmapFine(bitmap, angle, !settings->keepSize,
                                                ColorRef(settings->background)));
  };
}

void Shear(Bitmap& bitmap, int32_t angle, bool vertical, COLORREF color) {
  const int32_t before = vertical ? bitmap->Height : bitmap->Width;
  const auto rows = vertical ? bitmap->Width : bitmap->Height;
  const auto size = static_cast<size_t>(std::abs(angle));
  const int64_t wider = int64_t{kSineTable[size]} * rows / kSineTable[9000 - size];
  RequireDone("--shear", Vn_ShearBitmap(bitmap, angle, !vertical, color));
  ThrowIfInterrupted();  // a slant to the left does not tell that it was stopped
  // The kernel leaves a picture alone whose rows would be too long, and calls that done.
  if (wider > 0 && (vertical ? bitmap->Height : bitmap->Width) == before) {
    throw Failure("--shear: the result would be " + std::to_string(before + wider) +
                  " pixels long, more than rows of 32768 bytes hold");
  }
}

// "20", "-12.5,vertical"
Parsed ParseShear(const std::string& value, const GeometrySettings* settings) {
  constexpr std::string_view kVertical = ",vertical";
  constexpr int32_t kSteepest = 4500;
  std::string_view text = value;
  const bool vertical = text.ends_with(kVertical);
  if (vertical) text.remove_suffix(kVertical.size());
  const auto angle = ParseAngle(text);
  if (!angle || std::abs(*angle) > kSteepest) return std::nullopt;
  return [angle = *angle, vertical, settings](Bitmap& bitmap) {
    Shear(bitmap, angle, vertical, ColorRef(settings->background));
  };
}

Operation Averaged(const char* option,
                   std::function<Operation::WideSize(int64_t, int64_t)> sizeOf) {
  const auto run = [option](Bitmap& bitmap, Operation::WideSize size) {
    RequirePossibleSize(option, size.width, size.height, bitmap->BitsPerPixel);
    RequireDone(option, Vn_ResampleBitmap(bitmap, static_cast<int32_t>(size.width),
                                          static_cast<int32_t>(size.height)));
  };
  return Operation(Operation::Averaging{std::move(sizeOf), run});
}

Parsed ParseResample(const std::string& value) {
  const auto size = ParseNewSize(value);
  if (!size) return std::nullopt;
  return Averaged("--resample", [size = *size](int64_t width, int64_t height) {
    return Operation::WideSize{size.WidthOf(static_cast<int32_t>(width)),
                               size.HeightOf(static_cast<int32_t>(height))};
  });
}

// Into a box: one side is the box's and the other is not longer. Over it: not shorter.
auto ToBox(const char* option, bool over) {
  return [=](const std::string& value) -> Parsed {
    const auto box = ParseSize(value);
    if (!box || box->width < 1 || box->height < 1) return std::nullopt;
    const int64_t boxWidth = box->width, boxHeight = box->height;
    return Averaged(option, [=](int64_t width, int64_t height) {
      const bool byWidth = (boxWidth * height < boxHeight * width) != over;
      const auto scaled = [](int64_t side, int64_t to, int64_t from) {
        return std::max<int64_t>(1, (2 * side * to + from) / (2 * from));
      };
      return byWidth ? Operation::WideSize{boxWidth, scaled(height, boxWidth, width)}
                     : Operation::WideSize{scaled(width, boxHeight, height), boxHeight};
    });
  };
}

}  // namespace

std::vector<OperationKind> GeometryKinds(const GeometrySettings* settings) {
  const auto with = [settings](auto parse) {
    return [=](const std::string& value) { return parse(value, settings); };
  };
  return {
      {"--resample", "WxH|N%",
       "Change the size, by averages and straight lines between pixels; as the first operation, to "
       "half "
       "or less, it may take JPEG files smaller: faster, and not with quite the same pixels",
       ParseResample},
      {"--fit", "WxH", "Resample into a box, keeping the shape", ToBox("--fit", false)},
      {"--fill-box", "WxH", "Resample over a box, keeping the shape", ToBox("--fill-box", true)},
      {"--flip", "", "Turn upside down: top row to the bottom",
       PlainOperation("--flip", &Vn_FlipBitmap)},
      {"--mirror", "", "Mirror left to right", PlainOperation("--mirror", &Vn_ReverseBitmap)},
      {"--rotate", "DEGREES", "Turn clockwise, by hundredths of a degree at the finest",
       with(&ParseRotate)},
      {"--shear", "ANGLE[,vertical]", "Slant by up to 45 degrees: the top to the right",
       with(&ParseShear)},
  };
}

void TurnUpright(Bitmap& bitmap, int32_t orientation) {
  // The picture's own first row and column lie, by position: top left, top right, bottom right,
  // bottom left, left top, right top, right bottom, left bottom.
  struct Steps {
    bool mirror;
    int32_t turn;  // degrees, clockwise
  };
  constexpr Steps kSteps[] = {{false, 0},  {true, 0},   {false, 180}, {true, 180},
                              {true, 270}, {false, 90}, {true, 90},   {false, 270}};
  if (orientation < 2 || orientation > 8) return;
  const Steps steps = kSteps[orientation - 1];
  const std::string subject = "turning it upright";
  if (steps.mirror) RequireDone(subject, Vn_ReverseBitmap(bitmap));
  if (steps.turn) RequireDone(subject, Vn_RotateBitmap(bitmap, steps.turn, 1));
  if (steps.turn % 180) std::swap(bitmap->XResolution, bitmap->YResolution);
}

}  // namespace vn::tool
