#include "tools/operation.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "tools/failure.h"
#include "tools/interrupt.h"
#include "tools/option_values.h"
#include "tools/picture.h"
#include "tools/region_value.h"

namespace vn::tool {
namespace {

using Parsed = std::optional<Operation>;

// "25", "12.5": a finite number and nothing behind it.
std::optional<double> ParseDecimal(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

Parsed ParseCrop(const std::string& value) {
  const auto area = ParseArea(value);
  if (!area) return std::nullopt;
  return [area = *area](Bitmap& bitmap) {
    RequireInside("--crop", area, bitmap->Width, bitmap->Height);
    const RECT rect = StorageRect(*bitmap.get(), area);
    Bitmap part;
    RequireDone("--crop", Vn_CopyBitmapRect(part, bitmap, static_cast<uint32_t>(rect.left),
                                            static_cast<uint32_t>(rect.top),
                                            static_cast<uint32_t>(area.width),
                                            static_cast<uint32_t>(area.height)));
    std::swap(*part.get(), *bitmap.get());
  };
}

void Scale(Bitmap& bitmap, int64_t width, int64_t height) {
  RequirePossibleSize("--scale", width, height, bitmap->BitsPerPixel);
  RequireDone("--scale",
              Vn_SizeBitmap(bitmap, static_cast<int32_t>(width), static_cast<int32_t>(height)));
}

Parsed ParseScale(const std::string& value) {
  if (const auto size = ParseSize(value)) {
    return [size = *size](Bitmap& bitmap) { Scale(bitmap, size.width, size.height); };
  }
  if (!value.ends_with('%')) return std::nullopt;
  const auto percent = ParseDecimal(std::string_view(value).substr(0, value.size() - 1));
  if (!percent || *percent <= 0 || *percent > 1e6) return std::nullopt;
  return [factor = *percent / 100](Bitmap& bitmap) {
    const auto scaled = [factor](int32_t side) {
      return std::max<int64_t>(1, std::llround(side * factor));
    };
    Scale(bitmap, scaled(bitmap->Width), scaled(bitmap->Height));
  };
}

Parsed ParseFill(const std::string& value) {
  const auto color = ParseColor(value);
  if (!color) return std::nullopt;
  return [ref = RGB(color->red, color->green, color->blue)](Bitmap& bitmap) {
    RequireDone("--fill", Vn_FillBitmap(bitmap, ref));
  };
}

Parsed ParseRegion(const std::string& value) {
  auto region = ParseRegionValue(value);
  if (!region) return std::nullopt;
  return [region = std::move(*region)](Bitmap& bitmap) {
    RequireDone("--region", region.Set(bitmap));
  };
}

// "clustered", "ordered,45"
Parsed ParseHalftone(const std::string& value) {
  const size_t comma = value.find(',');
  const std::string name = value.substr(0, comma);
  if (name != "ordered" && name != "clustered") return std::nullopt;
  const uint32_t type = name == "ordered" ? HALFTONE_ORDERED : HALFTONE_CLUSTERED;
  double degrees = 0;
  if (comma != value.npos) {
    const auto angle = ParseDecimal(std::string_view(value).substr(comma + 1));
    if (!angle || std::fabs(*angle) > 1e6) return std::nullopt;
    degrees = *angle;
  }
  const auto hundredths = static_cast<int32_t>(std::lround(degrees * 100));
  return [=](Bitmap& bitmap) {
    RequireDone("--halftone", hundredths ? Vn_HalfToneBitmapExt(bitmap, type, hundredths)
                                         : Vn_HalfToneBitmap(bitmap, type));
  };
}

// An operation that needs no value.
auto Plain(const char* option, VnStatus(VN_CALL* operation)(BitmapHandle*)) {
  return [=](const std::string&) -> Parsed {
    return [=](Bitmap& bitmap) { RequireDone(option, operation(bitmap)); };
  };
}

}  // namespace

const std::vector<OperationKind>& OperationKinds() {
  static const std::vector<OperationKind> kinds = {
      {"--crop", "X,Y,W,H", "Keep a rectangle", ParseCrop},
      {"--scale", "WxH|N%", "Change the size, by nearest pixel", ParseScale},
      {"--region", RegionForm(), "Confine what follows to a shape", ParseRegion},
      {"--fill", "COLOUR", "Fill the region, or the whole picture", ParseFill},
      {"--clear", "", "Give the region, or the whole picture, pixel value 0",
       Plain("--clear", &Vn_ClearBitmap)},
      {"--gray", "", "Turn to 8-bit gray", Plain("--gray", &Vn_GrayScaleBitmap)},
      {"--halftone", "ordered|clustered[,ANGLE]", "Turn to 1 bit; the screen turned by degrees",
       ParseHalftone},
  };
  return kinds;
}

void RequireDone(const std::string& option, VnStatus status) {
  if (status == OK) return;
  ThrowIfInterrupted();
  throw Failure(option + ": " + StatusText(status));
}

}  // namespace vn::tool
