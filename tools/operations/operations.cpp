#include "tools/operations/operation.h"

#include <cmath>
#include <string_view>
#include <utility>

#include "tools/formats/picture.h"
#include "tools/operations/named_palettes.h"
#include "tools/operations/overlay_values.h"
#include "tools/operations/region_value.h"
#include "tools/operations/row_streams.h"
#include "tools/operations/value_parsers.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

using Parsed = std::optional<Operation>;

void Crop(Bitmap& bitmap, const Part& wanted) {
  const Area area = wanted.Of(bitmap->Width, bitmap->Height);
  const RECT rect = StorageRect(*bitmap.get(), area);
  Bitmap part;
  RequireDone("--crop",
              Vn_CopyBitmapRect(part, bitmap, static_cast<uint32_t>(rect.left),
                                static_cast<uint32_t>(rect.top), static_cast<uint32_t>(area.width),
                                static_cast<uint32_t>(area.height)));
  std::swap(*part.get(), *bitmap.get());
}

Parsed ParseCrop(const std::string& value) {
  const auto part = ParsePart(value);
  if (!part) return std::nullopt;
  return Operation([part = *part](Bitmap& bitmap) { Crop(bitmap, part); },
                   [part = *part](std::unique_ptr<PictureSource> source) {
                     return CropRows(std::move(source), part);
                   });
}

void Scale(Bitmap& bitmap, int64_t width, int64_t height) {
  RequirePossibleSize("--scale", width, height, bitmap->BitsPerPixel);
  const VnStatus status =
      Vn_SizeBitmap(bitmap, static_cast<int32_t>(width), static_cast<int32_t>(height));
  if (status != OK) {
    // They are dead if the new storage was made, and alive if it was not, which no status tells.
    // The tool ends here either way, so it leaves them rather than free them twice.
    bitmap->Palette = bitmap->PaintPalette = nullptr;
    bitmap->Region = nullptr;
  }
  RequireDone("--scale", status);
}

Parsed ParseScale(const std::string& value) {
  const auto size = ParseNewSize(value);
  if (!size) return std::nullopt;
  return Operation(
      [size = *size](Bitmap& bitmap) {
        Scale(bitmap, size.WidthOf(bitmap->Width), size.HeightOf(bitmap->Height));
      },
      [size = *size](std::unique_ptr<PictureSource> source) {
        return ScaleRows(std::move(source), size);
      });
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

void Recolor(Bitmap& bitmap, const std::vector<RGBQUAD>& colors) {
  const auto count = static_cast<int32_t>(colors.size());
  if (bitmap->BitsPerPixel > 8 || count > bitmap->ColorCount) {
    throw Failure("--recolor: the picture has no palette of " + std::to_string(count) + " colours");
  }
  RequireDone("--recolor", Vn_PutBitmapColors(bitmap, 0, count, colors.data()));
}

Parsed ParseRecolor(const std::string& value) {
  if (value.empty()) return std::nullopt;
  return [colors = NamedOrFilePalette(value)](Bitmap& bitmap) { Recolor(bitmap, colors); };
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

}  // namespace

const std::vector<OperationKind>& OperationKinds() {
  static const std::vector<OperationKind> kinds = {
      {"--crop", "X,Y,W,H|WxH", "Keep a rectangle, or so much of the middle", ParseCrop},
      {"--scale", "WxH|N%", "Change the size, by nearest pixel", ParseScale},
      {"--region", RegionForm(),
       "Confine what follows to a shape, or to the pixels of exactly one colour", ParseRegion},
      {"--fill", "COLOUR", "Fill the region, or the whole picture", ParseFill},
      {"--clear", "", "Give the region, or the whole picture, pixel value 0",
       PlainOperation("--clear", &Vn_ClearBitmap)},
      {"--combine", CombineForm(),
       "Combine with the picture of FILE, its top left at X,Y. OPERATION: " + CombineNames() +
           "; before it not- for the result, not-file- or not-picture- for an operand complemented",
       ParseCombine},
      {"--underlay", "FILE[,tile|stretch]", "Lay the picture of FILE under as a texture",
       ParseUnderlay},
      {"--gray", "", "Turn to 8-bit gray", PlainOperation("--gray", &Vn_GrayScaleBitmap)},
      {"--recolor", "NAME|FILE",
       "Give the palette these colours, entry by entry; pixels keep their index", ParseRecolor},
      {"--halftone", "ordered|clustered[,ANGLE]", "Turn to 1 bit; the screen turned by degrees",
       ParseHalftone},
  };
  return kinds;
}

std::function<std::optional<Operation>(const std::string&)> PlainOperation(
    const char* option, VnStatus(VN_CALL* operation)(BitmapHandle*)) {
  return [=](const std::string&) -> Parsed {
    return [=](Bitmap& bitmap) { RequireDone(option, operation(bitmap)); };
  };
}

void RequireDone(const std::string& option, VnStatus status) {
  if (status == OK) return;
  ThrowIfInterrupted();
  throw Failure(option + ": " + StatusText(status));
}

}  // namespace vn::tool
