// Which file format a picture takes, and the limits that all pictures share.
#include "tools/formats/picture.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/formats/bmp_reader.h"
#include "tools/formats/bmp_writer.h"
#include "tools/formats/input_file.h"
#include "tools/formats/png_reader.h"
#include "tools/formats/png_writer.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/warning.h"
#ifdef VNCORE_TOOL_JPEG
#include "tools/formats/jpeg_reader.h"
#include "tools/formats/jpeg_writer.h"
#endif
#ifdef VNCORE_TOOL_TIFF
#include "tools/formats/tiff_reader.h"
#include "tools/formats/tiff_writer.h"
#endif

namespace vn::tool {
namespace {

// Longer sides are taken for damage: a decoder would allocate rows of any width that a header says.
constexpr int64_t kMostSide = 1'000'000;
// Sizes are 32-bit in the record, and global memory storage asks for 16 bytes more.
constexpr int64_t kMostBytes = 0xFFFFFFFF - 16;

struct Format {
  const char* name;
  const char* extensions[2];  // the usual one first; the other may be null
  bool (*isThis)(const InputFile& file);
  std::unique_ptr<PictureSource> (*open)(std::unique_ptr<InputFile>, const ReadOptions&);
  std::unique_ptr<PictureSink> (*create)(std::unique_ptr<OutputFile>, const PictureInfo&);
  bool seeks;  // it is not written from its start to its end
};

template <class Reader>
std::unique_ptr<PictureSource> Open(std::unique_ptr<InputFile> file, const ReadOptions& options) {
  return std::make_unique<Reader>(std::move(file), options);
}
template <class Writer>
std::unique_ptr<PictureSink> Create(std::unique_ptr<OutputFile> file, const PictureInfo& info) {
  return std::make_unique<Writer>(std::move(file), info);
}

constexpr Format kFormats[] = {
    {"PNG", {".png", nullptr}, &IsPng, &Open<PngReader>, &Create<PngWriter>, false},
    {"BMP", {".bmp", ".dib"}, &IsBmp, &Open<BmpReader>, &Create<BmpWriter>, true},
#ifdef VNCORE_TOOL_JPEG
    {"JPEG", {".jpg", ".jpeg"}, &IsJpeg, &Open<JpegReader>, &Create<JpegWriter>, false},
#endif
#ifdef VNCORE_TOOL_TIFF
    {"TIFF", {".tif", ".tiff"}, &IsTiff, &Open<TiffReader>, &Create<TiffWriter>, true},
#endif
};

// "a", "a or b", "a, b or c".
std::string Listed(const std::vector<std::string>& words, const char* last = " or ") {
  std::string list;
  for (size_t i = 0; i < words.size(); ++i) {
    if (i > 0) list += i + 1 < words.size() ? ", " : last;
    list += words[i];
  }
  return list;
}

const Format& FormatOfName(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  // A name without an extension (a device, a pipe) takes PNG.
  if (extension.empty()) return kFormats[0];
  std::vector<std::string> known;
  for (const Format& format : kFormats) {
    for (const char* const name : format.extensions) {
      if (!name) continue;
      if (extension == name) return format;
      known.push_back(name);
    }
  }
  throw Failure(path + ": pictures are written as " + Listed(known));
}

}  // namespace

std::unique_ptr<PictureSource> OpenPicture(const std::string& path, const ReadOptions& options) {
  auto file = std::make_unique<InputFile>(path);
  std::vector<std::string> known;
  for (const Format& format : kFormats) {
    if (format.isThis(*file)) {
      auto picture = format.open(std::move(file), options);
      RequirePage(path, options.page, picture->Info().facts.pages);
      return picture;
    }
    known.push_back(format.name);
  }
  throw Failure(path + ": not a " + Listed(known) + " file");
}

std::unique_ptr<OutputFile> OpenPictureFile(const std::string& path) {
  const Format& format = FormatOfName(path);
  auto file = std::make_unique<OutputFile>(path);
  if (format.seeks && file->Seek(0, SEEK_CUR) < 0) {
    throw Failure("cannot write " + path + ": " + format.name + " does not go to a pipe");
  }
  return file;
}

std::unique_ptr<PictureSink> CreatePicture(std::unique_ptr<OutputFile> file,
                                           const PictureInfo& info) {
  const std::string path = file->Path();
  auto picture = FormatOfName(path).create(std::move(file), info);
  const std::vector<std::string> left = LeftBehind(info.metadata, picture->Room());
  if (!left.empty()) Warn(path + " is without: " + Listed(left, " and "));
  return picture;
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

void SettleOrientation(const ReadOptions& options, PictureInfo& info) {
  if (options.ignoreOrientation) return;
  info.orientation = info.facts.orientation;
  if (info.orientation != 1) DropOrientation(info.metadata);
}

void RequirePage(const std::string& path, int32_t page, int32_t pages) {
  if (page >= 1 && page <= pages) return;
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
