// What a picture says of itself beside its pixels, and what of that goes into which file.
#ifndef VNCORE_TOOLS_METADATA_H
#define VNCORE_TOOLS_METADATA_H

#include <string>
#include <utility>
#include <vector>

#include "tools/formats/exif.h"

namespace vn::tool {

struct Metadata {
  std::string profile;  // an ICC profile, the colour space of the samples; empty: not told
  Exif exif;
  std::string xmp;
  std::string comment;
  // PNG's further texts: a keyword and UTF-8.
  std::vector<std::pair<std::string, std::string>> notes;
  // What the file holds and a reader cannot take along, in words: "IPTC data".
  std::vector<std::string> left;
};

// What a file can hold.
struct MetadataRoom {
  bool profile = false;
  bool texts = false;   // the main fields of Exif
  bool camera = false;  // the others
  bool xmp = false, comment = false, notes = false;
};

// Names of what the metadata have and the room has not, and of what was left before.
std::vector<std::string> LeftBehind(const Metadata& metadata, const MetadataRoom& room);

// Takes what a block says into the metadata, but for orientation and resolution.
void TakeExif(ExifBlock block, Metadata& metadata);

// The colours are no longer those of the profile: sRGB from now on.
void DropProfile(Metadata& metadata);
// The picture was turned upright: what else says how it lies goes.
void DropOrientation(Metadata& metadata);

// A text of a file as UTF-8 without zeros; bytes that are no UTF-8 count as Latin-1.
std::string ToUtf8(const std::string& text);
// The same in one line without control characters, for terminals.
std::string Readable(const std::string& text);
// Latin-1 as UTF-8.
std::string FromLatin1(const std::string& text);

}  // namespace vn::tool

#endif
