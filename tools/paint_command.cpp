// vncore paint: a picture through the library onto a device, and what the device shows as a
// picture.
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "kernel/guards.h"
#include "tools/commands.h"
#include "tools/failure.h"
#include "tools/headless_device.h"
#include "tools/load_bitmap.h"
#include "tools/option_values.h"
#include "tools/progress_bar.h"

namespace vn::tool {
namespace {

struct PaintOptions {
  std::string in, out;
  int32_t deviceBits = 8;
  std::optional<Size> size;
  std::optional<Area> source;
  bool ordered = false, diffusion = false, clustered = false, fixedPalette = false;
  std::string bitonal;
  int32_t storage = STORAGE_AUTO;
  bool lowMemory = false;
  ReadOptions read;

  uint32_t DisplayMode() const {
    uint32_t mode = MODE_DEVICE_INDEXES | MODE_DITHER;
    if (ordered || clustered) mode |= MODE_ORDERED_DITHER;
    if (clustered) mode |= MODE_CLUSTERED_MATRIX;
    if (fixedPalette) mode |= MODE_FIXED_PALETTE;
    if (bitonal == "gray") mode |= MODE_BITONAL_GRAY;
    if (bitonal == "vote") mode |= MODE_BITONAL_VOTE;
    return mode;
  }
};

// The part of the picture that is painted.
Area WantedArea(const PaintOptions& options, const PictureInfo& picture) {
  if (!options.source) return {0, 0, picture.width, picture.height};
  RequireInside("--source", *options.source, picture.width, picture.height);
  return *options.source;
}

void Paint(const PaintOptions& options) {
  if (options.lowMemory) ClaimWin32s();
  const auto picture = OpenPicture(options.in, options.read);
  const Area area = WantedArea(options, picture->Info());
  const Size size = options.size.value_or(Size{area.width, area.height});
  RequirePossibleSize("--size", size.width, size.height, options.deviceBits);

  auto file = OpenPictureFile(options.out);
  Bitmap bitmap;
  {
    const ProgressBar bar("reading " + options.in);
    LoadBitmap(*picture, options.storage, bitmap);
  }
  HeadlessDevice device(size.width, size.height, options.deviceBits);
  {
    const DisplayModeScope mode(~0u, options.DisplayMode());
    const RECT source = StorageRect(*bitmap.get(), area);
    device.Paint(bitmap, &source);
  }
  const auto sink = CreatePicture(std::move(file), device.Info());
  device.WriteTo(*sink);
  sink->Finish();
}

}  // namespace

void AddPaintCommand(CLI::App& app) {
  CLI::App* const paint =
      app.add_subcommand("paint", "Paint a picture on a device and keep what it shows");
  const auto options = std::make_shared<PaintOptions>();
  paint->add_option("IN", options->in, "The picture")->required();
  paint->add_option("OUT", options->out, "What the device shows")->required();
  paint->add_option("--device-bits", options->deviceBits, "Depth of the device, 8 if not given")
      ->check(CLI::IsMember({1, 4, 8, 16, 24}));
  AddParsed(paint, "--size", &options->size, &ParseSize, "WxH", "Size of the device's picture");
  AddParsed(paint, "--source", &options->source, &ParseArea, "X,Y,W,H",
            "Part of the picture to paint");
  auto* ordered = paint->add_flag("--ordered", options->ordered, "Ordered dithering");
  auto* diffusion =
      paint->add_flag("--diffusion", options->diffusion, "Error diffusion (the default)");
  auto* clustered = paint->add_flag("--clustered", options->clustered,
                                    "Ordered dithering; at 1 bit with the clustered matrix");
  diffusion->excludes(ordered)->excludes(clustered);
  paint->add_option("--bitonal", options->bitonal, "How 1-bit pictures show")
      ->check(CLI::IsMember({"gray", "vote"}));
  paint->add_flag("--fixed-palette", options->fixedPalette,
                  "Paletted pictures take the fixed palette");
  AddParsed(paint, "--storage", &options->storage, &ParseStorage, "auto|disk|memory",
            "Where the picture's pixels lie");
  paint->add_flag("--low-memory", options->lowMemory,
                  "Claim Win32s: disk storage is a temporary file");
  AddParsed(paint, "--background", &options->read.background, &ParseColor, "COLOUR",
            "Under transparent pixels, white if not given");
  paint->callback([options] { Paint(*options); });
}

}  // namespace vn::tool
