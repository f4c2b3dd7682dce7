// What vncore paint and vncore effect have in common: a picture, and how it is painted.
#ifndef VNCORE_TOOLS_PAINT_OPTIONS_H
#define VNCORE_TOOLS_PAINT_OPTIONS_H

#include <memory>
#include <optional>
#include <string>

#include "tools/formats/picture.h"
#include "tools/operations/bitmap.h"
#include "tools/operations/storage_choice.h"
#include "tools/terminal/option_values.h"

namespace vn::tool {

struct PaintOptions {
  std::string in;
  int32_t deviceBits = 8;
  std::optional<NewSize> size;
  std::optional<Part> source;
  bool fixedPalette = false;
  std::string dither, bitonal;
  StorageChoice storage;
  ReadOptions read;

  // Adds all but IN to a command.
  void AddTo(CLI::App* command);
  uint32_t DisplayMode() const;
};

// The picture of the options: opened and found possible, then loaded.
class PaintSubject {
 public:
  explicit PaintSubject(const PaintOptions& options);
  // Throws Failure or Interruption.
  void Load();

  BitmapHandle* bitmap() { return bitmap_; }
  // Of the picture that is painted.
  const PictureInfo& Info() const { return picture_->Info(); }
  // Size of the device.
  Size size() const { return size_; }
  // What of the loaded bitmap is painted, in storage rows.
  RECT Source() { return StorageRect(*bitmap_.get(), area_); }

 private:
  const PaintOptions& options_;
  std::unique_ptr<PictureSource> picture_;
  Area area_;
  Size size_;
  int32_t storage_ = STORAGE_AUTO;
  Bitmap bitmap_;
};

}  // namespace vn::tool

#endif
