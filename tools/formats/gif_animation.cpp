#include "tools/formats/gif_animation.h"

#include "tools/terminal/failure.h"

#ifdef VNCORE_TOOL_GIF

#include <gif_lib.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "tools/formats/output_file.h"
#include "tools/formats/surface_picture.h"

namespace vn::tool {
namespace {

constexpr int kLargestSide = 65535;

int OnWrite(GifFileType* gif, const GifByteType* bytes, int count) {
  return static_cast<OutputFile*>(gif->UserData)->Write(bytes, static_cast<size_t>(count)) ? count
                                                                                           : 0;
}

// Rows of one frame, a byte for each pixel.
class GifFrame final : public PictureSink {
 public:
  GifFrame(GifFileType* gif, const PictureInfo& info)
      : gif_(gif), bits_(info.bits), line_(static_cast<size_t>(info.width)) {}
  void WriteRow(const uint8_t* row) override {
    const auto bits = static_cast<size_t>(bits_);
    for (size_t x = 0; x < line_.size(); ++x) {
      const size_t at = x * bits;
      line_[x] = static_cast<uint8_t>(row[at / 8] >> (8 - bits - at % 8) & ((1u << bits) - 1));
    }
    written_ &= EGifPutLine(gif_, line_.data(), static_cast<int>(line_.size())) == GIF_OK;
  }
  void Finish() override {}
  bool written() const { return written_; }

 private:
  GifFileType* gif_;
  int32_t bits_;
  std::vector<GifByteType> line_;
  bool written_ = true;
};

class GifAnimation final : public FrameSink {
 public:
  GifAnimation(const std::string& path, double seconds)
      : file_(path), hundredths_(static_cast<int>(std::lround(std::min(seconds, 600.0) * 100))) {}
  ~GifAnimation() override {
    if (gif_) EGifCloseFile(gif_, nullptr);
  }

  void Add(const Headless_Surface& surface) override {
    const PictureInfo info = SurfaceInfo(surface);
    if (info.bits > 8) throw Failure(file_.Path() + ": GIF frames have 256 colours at most");
    if (std::max(info.width, info.height) > kLargestSide) {
      throw Failure(file_.Path() + ": GIF frames have 65535 pixels a side at most");
    }
    if (!gif_) Start(info);
    GraphicsControlBlock control{};
    control.DelayTime = hundredths_;
    control.TransparentColor = NO_TRANSPARENT_COLOR;
    GifByteType packed[4];
    EGifGCBToExtension(&control, packed);
    Require(EGifPutExtension(gif_, GRAPHICS_EXT_FUNC_CODE, sizeof packed, packed));
    // Every frame brings its colours: the device's palette may have changed.
    std::vector<GifColorType> colors;
    for (const RGBQUAD& c : info.colors)
      colors.push_back({c.rgbRed, c.rgbGreen, c.rgbBlue});
    ColorMapObject* map = GifMakeMapObject(static_cast<int>(colors.size()), colors.data());
    const int described = EGifPutImageDesc(gif_, 0, 0, info.width, info.height, false, map);
    GifFreeMapObject(map);
    Require(described);
    GifFrame frame(gif_, info);
    WriteSurface(surface, frame);
    Require(frame.written() ? GIF_OK : GIF_ERROR);
  }

  void Finish() override {
    Require(EGifCloseFile(std::exchange(gif_, nullptr), nullptr));
    file_.Commit();
  }

 private:
  void Start(const PictureInfo& info) {
    int error = 0;
    gif_ = EGifOpen(&file_, &OnWrite, &error);
    if (!gif_) throw Failure("there is not enough memory to write a picture");
    EGifSetGifVersion(gif_, true);
    Require(EGifPutScreenDesc(gif_, info.width, info.height, 8, 0, nullptr));
    // Endless, as every viewer knows it.
    constexpr GifByteType kLoop[] = {1, 0, 0};
    Require(EGifPutExtensionLeader(gif_, APPLICATION_EXT_FUNC_CODE));
    Require(EGifPutExtensionBlock(gif_, 11, "NETSCAPE2.0"));
    Require(EGifPutExtensionBlock(gif_, sizeof kLoop, kLoop));
    Require(EGifPutExtensionTrailer(gif_));
  }

  void Require(int result) const {
    if (result == GIF_OK) return;
    throw Failure("cannot write " + file_.Path() + ": " +
                  (file_.HasError() ? file_.ErrorText() : "the GIF library failed"));
  }

  OutputFile file_;
  int hundredths_;
  GifFileType* gif_ = nullptr;
};

}  // namespace

std::unique_ptr<FrameSink> OpenGifAnimation(const std::string& path, double seconds) {
  return std::make_unique<GifAnimation>(path, seconds);
}

}  // namespace vn::tool

#else

namespace vn::tool {

std::unique_ptr<FrameSink> OpenGifAnimation(const std::string& path, double) {
  throw Failure(path + ": this tool was built without giflib; name a folder instead");
}

}  // namespace vn::tool

#endif
