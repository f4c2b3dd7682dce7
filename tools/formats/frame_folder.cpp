// Frames as numbered PNG files.
#include <algorithm>
#include <filesystem>
#include <vector>

#include "tools/formats/frame_sink.h"
#include "tools/formats/gif_animation.h"
#include "tools/formats/surface_picture.h"

namespace vn::tool {
namespace {

class FrameFolder final : public FrameSink {
 public:
  FrameFolder(const std::string& path, int32_t frames)
      : folder_(path), digits_(std::max<size_t>(3, std::to_string(frames).size())) {
    MakeFolder(path);
  }

  void Add(const Headless_Surface& surface) override {
    std::string number = std::to_string(complete_.size() + 1);
    number.insert(0, digits_ - std::min(digits_, number.size()), '0');
    const std::string name = folder_ / ("frame-" + number + ".png");
    const auto sink = CreatePicture(OpenPictureFile(name, {}, &complete_), SurfaceInfo(surface));
    WriteSurface(surface, *sink);
    sink->Finish();
  }

  void Finish() override {
    for (HiddenFile& frame : complete_)
      frame.Appear();
  }

 private:
  const std::filesystem::path folder_;
  const size_t digits_;
  std::vector<HiddenFile> complete_;
};

}  // namespace

std::unique_ptr<FrameSink> OpenFrames(const std::string& path, int32_t frames, double seconds) {
  if (path.ends_with(".gif") || path.ends_with(".GIF")) return OpenGifAnimation(path, seconds);
  return std::make_unique<FrameFolder>(path, frames);
}

}  // namespace vn::tool
