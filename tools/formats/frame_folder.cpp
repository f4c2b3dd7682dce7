// Frames as numbered PNG files.
#include <algorithm>
#include <filesystem>
#include <vector>

#include "tools/formats/frame_sink.h"
#include "tools/formats/gif_animation.h"
#include "tools/formats/surface_picture.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

class FrameFolder final : public FrameSink {
 public:
  FrameFolder(const std::string& path, int32_t frames)
      : folder_(path), digits_(std::max<size_t>(3, std::to_string(frames).size())) {
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    if (!std::filesystem::is_directory(folder_)) {
      throw Failure("cannot write " + path + ": " +
                    (error ? error.message() : std::string("not a folder")));
    }
  }
  ~FrameFolder() override {
    if (finished_) return;
    std::error_code ignored;
    for (const auto& name : names_)
      std::filesystem::remove(name, ignored);
  }

  void Add(const Headless_Surface& surface) override {
    std::string number = std::to_string(names_.size() + 1);
    number.insert(0, digits_ - std::min(digits_, number.size()), '0');
    const std::string name = folder_ / ("frame-" + number + ".png");
    const auto sink = CreatePicture(OpenPictureFile(name), SurfaceInfo(surface));
    WriteSurface(surface, *sink);
    sink->Finish();
    names_.push_back(name);
  }

  void Finish() override { finished_ = true; }

 private:
  std::filesystem::path folder_;
  size_t digits_;
  std::vector<std::string> names_;
  bool finished_ = false;
};

}  // namespace

std::unique_ptr<FrameSink> OpenFrames(const std::string& path, int32_t frames, double seconds) {
  if (path.ends_with(".gif") || path.ends_with(".GIF")) return OpenGifAnimation(path, seconds);
  return std::make_unique<FrameFolder>(path, frames);
}

}  // namespace vn::tool
