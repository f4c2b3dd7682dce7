// Which file format a picture takes, and the limits that all pictures share.
#include "tools/picture.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/failure.h"
#include "tools/input_file.h"
#include "tools/png_reader.h"
#include "tools/png_writer.h"

namespace vn::tool {
namespace {

// Longer sides are taken for damage: a decoder would allocate rows of any width that a header says.
constexpr int64_t kMostSide = 1'000'000;
// Sizes are 32-bit in the record, and global memory storage asks for 16 bytes more.
constexpr int64_t kMostBytes = 0xFFFFFFFF - 16;

std::string ExtensionOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

}  // namespace

std::unique_ptr<PictureSource> OpenPicture(const std::string& path, const ReadOptions& options) {
  auto file = std::make_unique<InputFile>(path);
  if (IsPng(*file)) return std::make_unique<PngReader>(std::move(file), options);
  throw Failure(path + ": not a PNG file");
}

std::unique_ptr<OutputFile> OpenPictureFile(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  // A name without an extension (a device, a pipe) takes PNG as well.
  if (extension != ".png" && !extension.empty()) {
    throw Failure(path + ": pictures are written as .png");
  }
  return std::make_unique<OutputFile>(path);
}

std::unique_ptr<PictureSink> CreatePicture(std::unique_ptr<OutputFile> file,
                                           const PictureInfo& info) {
  return std::make_unique<PngWriter>(std::move(file), info);
}

void RequirePossibleSize(const std::string& subject, int64_t width, int64_t height, int32_t bits) {
  const std::string impossible =
      subject + ": impossible size " + std::to_string(width) + "x" + std::to_string(height);
  if (width < 1 || height < 1) throw Failure(impossible);
  if (width > kMostSide || height > kMostSide) {
    throw Failure(impossible + ", no side may exceed 1000000 pixels");
  }
  if ((width * bits + 31) / 32 * 4 * height > kMostBytes) {
    throw Failure(impossible + ", a bitmap of " + std::to_string(bits) +
                  " bits a pixel holds at most 4 GiB");
  }
}

std::vector<RGBQUAD> GrayRamp(int32_t count) {
  std::vector<RGBQUAD> ramp(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    const auto level = static_cast<uint8_t>(i * 255 / (count - 1));
    ramp[static_cast<size_t>(i)] = {level, level, level, 0};
  }
  return ramp;
}

}  // namespace vn::tool
