// Which file format a picture takes.
#include "tools/formats/picture.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/formats/bmp_reader.h"
#include "tools/formats/bmp_writer.h"
#include "tools/formats/input_file.h"
#include "tools/formats/png_reader.h"
#include "tools/formats/png_writer.h"
#include "tools/formats/pnm_reader.h"
#include "tools/formats/pnm_writer.h"
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
#ifdef VNCORE_TOOL_VIPS
#include "tools/formats/vips_reader.h"
#endif

namespace vn::tool {

struct Wanted {
  int32_t pages;
  std::optional<int32_t> compression;
};

namespace {

using Source = std::unique_ptr<PictureSource>;
using Sink = std::unique_ptr<PictureSink>;

template <class Reader>
Source Open(std::unique_ptr<InputFile> file, const ReadOptions& options) {
  return std::make_unique<Reader>(std::move(file), options);
}
template <PnmKind Kind>
Sink CreatePnm(std::unique_ptr<OutputFile> file, const PictureInfo& info, const Wanted&) {
  return std::make_unique<PnmWriter>(std::move(file), info, Kind);
}
template <class Writer>
Sink Create(std::unique_ptr<OutputFile> file, const PictureInfo& info, const Wanted&) {
  return std::make_unique<Writer>(std::move(file), info);
}
Sink CreatePng(std::unique_ptr<OutputFile> file, const PictureInfo& info, const Wanted& wanted) {
  return std::make_unique<PngWriter>(std::move(file), info, wanted.compression);
}
#ifdef VNCORE_TOOL_TIFF
Sink CreateTiff(std::unique_ptr<OutputFile> file, const PictureInfo& info, const Wanted& wanted) {
  return std::make_unique<TiffWriter>(std::move(file), info, wanted.pages);
}
#endif

}  // namespace

struct Format {
  const char* name;
  const char* extensions[2];              // the usual one first; the other may be null
  bool (*isThis)(const InputFile& file);  // null: another format reads it
  Source (*open)(std::unique_ptr<InputFile>, const ReadOptions&);
  Sink (*create)(std::unique_ptr<OutputFile>, const PictureInfo&, const Wanted&);
  bool seeks;  // it is not written from its start to its end
  bool pages;  // it holds several
};

namespace {

constexpr Format kFormats[] = {
    {"PNG", {"png", nullptr}, &IsPng, &Open<PngReader>, &CreatePng, false, false},
    {"BMP", {"bmp", "dib"}, &IsBmp, &Open<BmpReader>, &Create<BmpWriter>, true, false},
    {"PNM", {"pnm", nullptr}, &IsPnm, &Open<PnmReader>, &CreatePnm<PnmKind::kAny>, false, false},
    {"PBM", {"pbm", nullptr}, nullptr, nullptr, &CreatePnm<PnmKind::kBits>, false, false},
    {"PGM", {"pgm", nullptr}, nullptr, nullptr, &CreatePnm<PnmKind::kGray>, false, false},
    {"PPM", {"ppm", nullptr}, nullptr, nullptr, &CreatePnm<PnmKind::kColor>, false, false},
#ifdef VNCORE_TOOL_JPEG
    {"JPEG", {"jpg", "jpeg"}, &IsJpeg, &Open<JpegReader>, &Create<JpegWriter>, false, false},
#endif
#ifdef VNCORE_TOOL_TIFF
    {"TIFF", {"tif", "tiff"}, &IsTiff, &Open<TiffReader>, &CreateTiff, true, true},
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

// The format that has this extension, or null.
const Format* FormatOf(std::string extension) {
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const Format& format : kFormats) {
    for (const char* const name : format.extensions) {
      if (name && extension == name) return &format;
    }
  }
  return nullptr;
}

// Never guessed: a wrong guess is found when the file is needed.
const Format& FormatFor(const std::string& path, const std::string& name) {
  const std::string extension =
      name.empty() ? std::filesystem::path(path).extension().string() : "." + name;
  const Format* const format = FormatOf(extension.substr(std::min<size_t>(extension.size(), 1)));
  if (format) return *format;
  std::vector<std::string> known;
  for (const Format& one : kFormats) {
    for (const char* const usual : one.extensions) {
      if (usual) known.push_back(std::string(".") + usual);
    }
  }
  if (!name.empty()) throw Failure("--format " + name + ": none of " + FormatNames());
  const std::string subject = path == "-" ? "standard output" : path;
  throw Failure(subject + ": pictures are written as " + Listed(known) + ", or as --format tells");
}

}  // namespace

std::unique_ptr<PictureSource> OpenPicture(const std::string& path, const ReadOptions& options) {
  auto file = std::make_unique<InputFile>(path);
  std::vector<std::string> known;
  for (const Format& format : kFormats) {
    if (!format.isThis) continue;
    if (format.isThis(*file)) {
      auto picture = format.open(std::move(file), options);
      RequirePage(path, options.page, picture->Info().facts.pages);
      return picture;
    }
    known.push_back(format.name);
  }
#ifdef VNCORE_TOOL_VIPS
  if (auto picture = OpenByVips(std::move(file), options)) {
    RequirePage(path, options.page, picture->Info().facts.pages);
    return picture;
  }
  const char* const others = " file, nor one that libvips reads";
#else
  const char* const others = " file";
#endif
  throw Failure(path + ": not a " + Listed(known) + others);
}

PictureFile OpenPictureFile(const std::string& path, const FileForm& form,
                            std::vector<HiddenFile>* waiting) {
  const Format& chosen = FormatFor(path, form.format);
  PictureFile picture{std::make_unique<OutputFile>(path, chosen.seeks, waiting), &chosen,
                      form.compression};
  if (chosen.seeks && picture.file->Seek(0, SEEK_CUR) < 0) {
    throw Failure("cannot write " + path + ": " + chosen.name + " does not go to a pipe");
  }
  return picture;
}

bool HoldsPages(const std::string& path, const FileForm& form) {
  return FormatFor(path, form.format).pages;
}

std::string FormatNames() {
  std::string names;
  for (const Format& format : kFormats)
    names += std::string(names.empty() ? "" : "|") + format.extensions[0];
  return names;
}

std::unique_ptr<PictureSink> CreatePicture(PictureFile file, const PictureInfo& info,
                                           int32_t pages) {
  const std::string path = file.file->Path();
  auto picture = file.format->create(std::move(file.file), info, {pages, file.compression});
  const std::vector<std::string> left = LeftBehind(info.metadata, picture->Room());
  if (!left.empty()) Warn(path + " is without: " + Listed(left, " and "));
  return picture;
}

}  // namespace vn::tool
