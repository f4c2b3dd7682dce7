#include "tools/formats/metadata.h"

#include <algorithm>

namespace vn::tool {
namespace {

constexpr uint16_t kExifColorSpace = 0xA001;

const char* NameOf(uint16_t text) {
  switch (text) {
    case kExifArtist:
      return "artist";
    case kExifCopyright:
      return "copyright";
    case kExifDate:
      return "date";
    case kExifDescription:
      return "description";
    case kExifSoftware:
      return "software";
    default:
      return "camera";
  }
}

// Bytes of the sequence of UTF-8 that begins at `at`; 0 for what is none.
size_t SequenceBytes(const std::string& text, size_t at) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
  const uint8_t first = byte(at);
  if (first < 0x80) return 1;
  const size_t bytes = first >= 0xC2 && first < 0xE0   ? 2
                       : first >= 0xE0 && first < 0xF0 ? 3
                       : first >= 0xF0 && first < 0xF5 ? 4
                                                       : 0;
  if (bytes == 0 || at + bytes > text.size()) return 0;
  for (size_t i = 1; i < bytes; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
  }
  // Overlong ones, surrogates and what lies beyond the last character.
  const uint8_t second = byte(at + 1);
  const bool possible = !(first == 0xE0 && second < 0xA0) && !(first == 0xED && second >= 0xA0) &&
                        !(first == 0xF0 && second < 0x90) && !(first == 0xF4 && second >= 0x90);
  return possible ? bytes : 0;
}

void AppendLatin1(std::string& to, char byte) {
  const auto code = static_cast<uint8_t>(byte);
  if (code < 0x80) {
    to += byte;
  } else {
    to += static_cast<char>(0xC0 | code >> 6);
    to += static_cast<char>(0x80 | (code & 0x3F));
  }
}

}  // namespace

std::vector<std::string> LeftBehind(const Metadata& metadata, const MetadataRoom& room) {
  std::vector<std::string> names;
  const auto name = [&](bool there, bool has, const std::string& what) {
    if (there && !has && std::find(names.begin(), names.end(), what) == names.end())
      names.push_back(what);
  };
  name(!metadata.profile.empty(), room.profile, "colour profile");
  for (const ExifField& field : metadata.exif.main)
    name(true, room.texts, NameOf(field.tag));
  name(!metadata.exif.photo.empty(), room.camera, "camera settings");
  name(!metadata.exif.gps.empty(), room.camera, "position");
  name(!metadata.xmp.empty(), room.xmp, "XMP data");
  name(!metadata.comment.empty(), room.comment, "comment");
  name(!metadata.notes.empty(), room.notes, "notes");
  for (const std::string& left : metadata.left)
    name(true, false, left);
  return names;
}

void TakeExif(ExifBlock block, Metadata& metadata) {
  metadata.exif = std::move(block.fields);
  if (block.makerNote) metadata.left.push_back("maker's note");
}

void DropProfile(Metadata& metadata) {
  metadata.profile.clear();
  std::erase_if(metadata.exif.photo,
                [](const ExifField& field) { return field.tag == kExifColorSpace; });
}

void DropOrientation(Metadata& metadata) {
  if (metadata.xmp.find("Orientation") == std::string::npos) return;
  metadata.xmp.clear();
  metadata.left.push_back("XMP data");
}

std::string ToUtf8(const std::string& text) {
  std::string utf8;
  for (size_t at = 0; at < text.size();) {
    const size_t bytes = SequenceBytes(text, at);
    if (bytes == 0) AppendLatin1(utf8, text[at]);
    if (text[at]) utf8.append(text, at, bytes);
    at += std::max<size_t>(bytes, 1);
  }
  return utf8;
}

std::string Readable(const std::string& text) {
  std::string line = ToUtf8(text);
  for (size_t at = 0; at < line.size(); ++at) {
    const auto code = static_cast<uint8_t>(line[at]);
    const bool control = code < 0x20 || code == 0x7F;
    // The second block of control characters is C2 80 to C2 9F.
    const bool second = code == 0xC2 && static_cast<uint8_t>(line[at + 1]) < 0xA0;
    if (control || second) line.replace(at, second ? 2 : 1, " ");
  }
  return line;
}

std::string FromLatin1(const std::string& text) {
  std::string utf8;
  for (const char byte : text)
    AppendLatin1(utf8, byte);
  return utf8;
}

}  // namespace vn::tool
