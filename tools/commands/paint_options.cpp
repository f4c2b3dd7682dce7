#include "tools/commands/paint_options.h"

#include "tools/commands/picture_options.h"
#include "tools/operations/load_bitmap.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {

void PaintOptions::AddTo(CLI::App* command) {
  command->add_option("--depth,--device-bits", deviceBits, "Depth of the device, 8 if not given")
      ->check(CLI::IsMember({1, 4, 8, 16, 24}));
  AddParsed(command, "--scale,--size", &size, &ParseNewSize, "WxH|N%",
            "Size of the device's picture, that of the painted part if not given");
  AddParsed(command, "--crop,--source", &source, &ParsePart, "X,Y,W,H|WxH",
            "Part of the picture to paint, or so much of its middle");
  auto* ditherOption =
      command
          ->add_option("--dither", dither,
                       "Dithering up to 8 bits (floyd-steinberg); clustered dots show at 1 bit")
          ->check(CLI::IsMember({"none", "floyd-steinberg", "ordered", "clustered"}));
  const auto shorthand = [&](const std::string& flag, const std::string& method) {
    command
        ->add_flag_callback(
            flag, [this, method] { dither = method; }, "The same as --dither " + method)
        ->excludes(ditherOption);
  };
  shorthand("--diffusion", "floyd-steinberg");
  shorthand("--ordered", "ordered");
  shorthand("--clustered", "clustered");
  command->get_option("--diffusion")->excludes(command->get_option("--ordered"));
  command->get_option("--diffusion")->excludes(command->get_option("--clustered"));
  command->add_option("--bitonal", bitonal, "How 1-bit pictures show")
      ->check(CLI::IsMember({"gray", "vote"}));
  command->add_flag("--fixed-palette", fixedPalette, "Paletted pictures take the fixed palette");
  AddStorageOptions(command, &storage);
  AddReadOptions(command, &read);
}

uint32_t PaintOptions::DisplayMode() const {
  uint32_t mode = MODE_DEVICE_INDEXES;
  if (dither != "none") mode |= MODE_DITHER;
  if (dither == "ordered" || dither == "clustered") mode |= MODE_ORDERED_DITHER;
  if (dither == "clustered") mode |= MODE_CLUSTERED_MATRIX;
  if (fixedPalette) mode |= MODE_FIXED_PALETTE;
  if (bitonal == "gray") mode |= MODE_BITONAL_GRAY;
  if (bitonal == "vote") mode |= MODE_BITONAL_VOTE;
  return mode;
}

PaintSubject::PaintSubject(const PaintOptions& options) : options_(options) {
  picture_ = OpenOnePicture(options.in, options.read);
  const PictureInfo& info = picture_->Info();
  storage_ = options.storage.Settle(info);
  const int32_t width = info.UprightWidth(), height = info.UprightHeight();
  area_ = options.source.value_or(Part{{0, 0, width, height}}).Of(width, height);
  const NewSize whole{std::nullopt, 1};
  const NewSize& size = options.size ? *options.size : whole;
  const int64_t across = size.WidthOf(area_.width), down = size.HeightOf(area_.height);
  RequirePossibleSize("--scale", across, down, options.deviceBits);
  size_ = {static_cast<int32_t>(across), static_cast<int32_t>(down)};
}

void PaintSubject::Load() {
  const ProgressBar bar("reading " + options_.in);
  LoadBitmap(*picture_, storage_, bitmap_);
}

}  // namespace vn::tool
