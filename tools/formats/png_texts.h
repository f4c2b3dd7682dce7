// What PNG files say of their pictures in chunks: a colour profile, Exif, texts.
#ifndef VNCORE_TOOLS_PNG_TEXTS_H
#define VNCORE_TOOLS_PNG_TEXTS_H

#include "tools/formats/picture.h"
#include "tools/formats/png_guard.h"

namespace vn::tool {

// Limits what libpng keeps of chunks, any of which may unfold to a thousand times its size. Under
// GuardPng, before anything is read.
void LimitChunks(png_structp png);
// Takes what the chunks before the first row said into `info`, the orientation into its facts.
void TakeChunks(png_structp png, png_infop chunks, PictureInfo& info);

// The chunks of a picture that is written.
class PngTexts {
 public:
  // `gray`: the picture is of PNG's kind of gray.
  PngTexts(const Metadata& metadata, bool gray);

  // Under GuardPng, before the header is written.
  void Set(png_structp png, png_infop chunks) const;
  // Once it is set.
  MetadataRoom Room(png_structp png, png_infop chunks) const;

 private:
  struct Text {
    std::string keyword, text;
  };

  std::string profile_, exif_;
  std::vector<Text> texts_;
  std::vector<png_text> entries_;  // into those
};

}  // namespace vn::tool

#endif
