#include "tools/commands/paint_options.h"

#include "tools/commands/picture_options.h"
#include "tools/operations/headless_device.h"
#include "tools/operations/load_bitmap.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {

void PaintOptions::AddTo(CLI::App* command) {
  command->add_option("--device-bits", deviceBits, "Depth of the device, 8 if not given")
      ->check(CLI::IsMember({1, 4, 8, 16, 24}));
  AddParsed(command, "--size", &size, &ParseSize, "WxH", "Size of the device's picture");
  AddParsed(command, "--source", &source, &ParseArea, "X,Y,W,H", "Part of the picture to paint");
  auto* orderedFlag = command->add_flag("--ordered", ordered, "Ordered dithering");
  auto* diffusionFlag =
      command->add_flag("--diffusion", diffusion, "Error diffusion (the default)");
  auto* clusteredFlag = command->add_flag("--clustered", clustered,
                                          "Ordered dithering; at 1 bit with the clustered matrix");
  diffusionFlag->excludes(orderedFlag)->excludes(clusteredFlag);
  command->add_option("--bitonal", bitonal, "How 1-bit pictures show")
      ->check(CLI::IsMember({"gray", "vote"}));
  command->add_flag("--fixed-palette", fixedPalette, "Paletted pictures take the fixed palette");
  AddParsed(command, "--storage", &storage, &ParseStorage, "auto|disk|memory",
            "Where the picture's pixels lie");
  command->add_flag("--low-memory", lowMemory, "Claim Win32s: disk storage is a temporary file");
  AddReadOptions(command, &read);
}

uint32_t PaintOptions::DisplayMode() const {
  uint32_t mode = MODE_DEVICE_INDEXES | MODE_DITHER;
  if (ordered || clustered) mode |= MODE_ORDERED_DITHER;
  if (clustered) mode |= MODE_CLUSTERED_MATRIX;
  if (fixedPalette) mode |= MODE_FIXED_PALETTE;
  if (bitonal == "gray") mode |= MODE_BITONAL_GRAY;
  if (bitonal == "vote") mode |= MODE_BITONAL_VOTE;
  return mode;
}

PaintSubject::PaintSubject(const PaintOptions& options) : options_(options) {
  if (options.lowMemory) ClaimWin32s();
  picture_ = OpenPicture(options.in, options.read);
  const PictureInfo& info = picture_->Info();
  const int32_t width = info.UprightWidth(), height = info.UprightHeight();
  area_ = options.source.value_or(Area{0, 0, width, height});
  if (options.source) RequireInside("--source", area_, width, height);
  size_ = options.size.value_or(Size{area_.width, area_.height});
  RequirePossibleSize("--size", size_.width, size_.height, options.deviceBits);
}

void PaintSubject::Load() {
  const ProgressBar bar("reading " + options_.in);
  LoadBitmap(*picture_, options_.storage, bitmap_);
}

}  // namespace vn::tool
