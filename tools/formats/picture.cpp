// What all pictures share: their limits, their palettes of gray, how they lie.
#include "tools/formats/picture.h"

#include <algorithm>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// Longer sides are taken for damage: a decoder would allocate rows of any width that a header says.
constexpr int64_t kMostSide = 1'000'000;
// Sizes are 32-bit in the record, and global memory storage asks for 16 bytes more.
constexpr int64_t kMostBytes = 0xFFFFFFFF - 16;

}  // namespace

void PictureSink::NextPage(const PictureInfo&) { throw Failure("the file holds one picture"); }

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

void SettleOrientation(const ReadOptions& options, PictureInfo& info) {
  if (options.ignoreOrientation) return;
  info.orientation = info.facts.orientation;
  if (info.orientation != 1) DropOrientation(info.metadata);
}

void RequirePage(const std::string& path, int32_t page, int32_t pages) {
  if (page >= 0 && page <= pages) return;
  throw Failure(path + ": there is no page " + std::to_string(page) + ", the last is " +
                std::to_string(pages));
}

std::vector<RGBQUAD> GrayRamp(int32_t count) {
  std::vector<RGBQUAD> ramp(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    const auto level = static_cast<uint8_t>(i * 255 / (count - 1));
    ramp[static_cast<size_t>(i)] = {level, level, level, 0};
  }
  return ramp;
}

bool IsGrayRamp(const std::vector<RGBQUAD>& colors) {
  if (colors.size() < 2) return false;
  const std::vector<RGBQUAD> ramp = GrayRamp(static_cast<int32_t>(colors.size()));
  return std::equal(
      ramp.begin(), ramp.end(), colors.begin(), [](const RGBQUAD& a, const RGBQUAD& b) {
        return a.rgbRed == b.rgbRed && a.rgbGreen == b.rgbGreen && a.rgbBlue == b.rgbBlue;
      });
}

}  // namespace vn::tool
