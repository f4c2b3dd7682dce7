// Pictures as the tool sees them: rows in, rows out, whatever the file format.
//
// Rows are the kernel's: 1 bit with the leftmost pixel in the high bit, 4 bits with the left pixel
// in the high nibble, 8 bits, or 24 bits with blue first. No implementation holds a whole picture.
#ifndef VNCORE_TOOLS_PICTURE_H
#define VNCORE_TOOLS_PICTURE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kernel/pixel_format.h"
#include "tools/formats/metadata.h"
#include "tools/formats/output_file.h"

namespace vn::tool {

// What the file holds, whatever becomes of it here.
struct FileFacts {
  std::string format;      // "PNG"
  std::string model;       // of its colours: "RGB", "CMYK"
  int32_t sampleBits = 8;  // of one sample
  bool alpha = false;
  int32_t pages = 1;
  int32_t orientation = 1;  // as PictureInfo has it unless it is to be ignored
};

struct PictureInfo {
  int32_t width = 0;
  int32_t height = 0;
  int32_t bits = 24;            // 1, 4, 8 or 24
  std::vector<RGBQUAD> colors;  // up to 8 bits: 2 to the power `bits` entries
  int32_t xDotsPerInch = 0;     // 0: the file does not say
  int32_t yDotsPerInch = 0;
  // 1 to 8, as Exif counts: how the picture is to be turned; 1: not at all.
  int32_t orientation = 1;
  FileFacts facts;  // of sources
  Metadata metadata;

  // Whether width and height are exchanged when the picture is turned upright.
  bool LiesOnItsSide() const { return orientation >= 5; }
  int32_t UprightWidth() const { return LiesOnItsSide() ? height : width; }
  int32_t UprightHeight() const { return LiesOnItsSide() ? width : height; }
};

class PictureSource {
 public:
  virtual ~PictureSource() = default;
  virtual const PictureInfo& Info() const = 0;

  // Before the first row: whoever reads wants to average the picture down to this size, by its rows as
  // they lie. Where it is cheaper, it then comes smaller than it is, but not smaller than that.
  virtual void Reduce(int64_t /*width*/, int64_t /*height*/) {}

  // ReadRow calls that deliver the whole picture, and the line (0 is the top) that the next one
  // delivers. As a rule every line once, from the top down.
  virtual int64_t Deliveries() const { return Info().height; }
  virtual int32_t NextLine() const = 0;
  // True when lines arrive in several parts: `row` must then hold what the line has got so far.
  virtual bool Merges() const { return false; }
  // Writes the pixels of line NextLine() into `row` and goes on to the next one.
  virtual void ReadRow(uint8_t* row) = 0;
  // Reads and checks what stands behind the last row.
  virtual void Finish() {}
};

class PictureSink {
 public:
  virtual ~PictureSink() = default;
  // Lines from the top down, as many as the picture has.
  virtual void WriteRow(const uint8_t* row) = 0;
  // Ends this page and begins the next, where the format holds several.
  virtual void NextPage(const PictureInfo& info);
  // Makes the picture appear under its name. Without this call nothing is left of it.
  virtual void Finish() = 0;
  // What of that which the picture says of itself goes into the file.
  virtual MetadataRoom Room() const { return {}; }
};

// How a picture is to be seen.
struct ReadOptions {
  Rgb background{255, 255, 255};   // under transparent pixels
  bool ignoreOrientation = false;  // as it lies in the file, not upright
  bool srgb = false;               // colours turned to sRGB out of their profile
  int32_t page = 0;                // 1 and on; 0: the first
};

// Opens the picture in file `path`, or in standard input for "-"; the format is told by its first
// bytes.
std::unique_ptr<PictureSource> OpenPicture(const std::string& path, const ReadOptions& options);

// A file format.
struct Format;

// How a picture is written.
struct FileForm {
  std::string format;                  // "png"; empty: that of the name's extension
  std::optional<int32_t> compression;  // of PNG, 0 to 9; none: as the picture is
};

// A file that a picture will be written to.
struct PictureFile {
  std::unique_ptr<OutputFile> file;
  const Format* format = nullptr;
  std::optional<int32_t> compression;
};

// Opens it before the work begins, so that a name that cannot be written fails at once; "-" is
// standard output. Finished, it joins the `waiting` ones, if any.
PictureFile OpenPictureFile(const std::string& path, const FileForm& form = {},
                            std::vector<HiddenFile>* waiting = nullptr);
// Whether a file of this name and format holds several pictures.
bool HoldsPages(const std::string& path, const FileForm& form);
// "png|bmp|...": what a form's format may be.
std::string FormatNames();

// Starts the picture, the first of so many pages, and warns of what it says of itself and the file
// does not.
std::unique_ptr<PictureSink> CreatePicture(PictureFile file, const PictureInfo& info,
                                           int32_t pages = 1);

// Throws Failure, in the name of `subject`, unless a bitmap can have these measures.
void RequirePossibleSize(const std::string& subject, int64_t width, int64_t height, int32_t bits);

// Takes the orientation that the file's facts have, unless it is to be ignored.
void SettleOrientation(const ReadOptions& options, PictureInfo& info);

// Throws Failure unless a file of so many pages has this one (see ReadOptions).
void RequirePage(const std::string& path, int32_t page, int32_t pages);

// The table of `count` grays from black to white.
std::vector<RGBQUAD> GrayRamp(int32_t count);
bool IsGrayRamp(const std::vector<RGBQUAD>& colors);

}  // namespace vn::tool

#endif
