// Exif blocks: what a camera or a program says of a picture, in JPEG and PNG files as a block of their
// own, in TIFF files as fields. CIPA DC-008 (Exif 2.32), section 4.6.
#ifndef VNCORE_TOOLS_EXIF_H
#define VNCORE_TOOLS_EXIF_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vn::tool {

// Texts of the main directory. TIFF has them under the same tags.
enum ExifText : uint16_t {
  kExifDescription = 0x010E,
  kExifMake = 0x010F,
  kExifModel = 0x0110,
  kExifSoftware = 0x0131,
  kExifDate = 0x0132,  // "YYYY:MM:DD HH:MM:SS"
  kExifArtist = 0x013B,
  kExifCopyright = 0x8298,
};
inline constexpr uint16_t kExifTexts[] = {
    kExifDescription, kExifMake, kExifModel, kExifSoftware, kExifDate, kExifArtist, kExifCopyright};

struct ExifField {
  uint16_t tag = 0, type = 0;
  uint32_t count = 0;
  std::string value;  // its bytes, numbers with the low byte first
};

// The fields of a picture that hold whatever is done to its pixels: texts, settings of the camera,
// position. What tells of the pixels' layout, previews and makers' notes are no part of it.
struct Exif {
  std::vector<ExifField> main, photo, gps;

  bool Empty() const { return main.empty() && photo.empty() && gps.empty(); }
  // A text without the zero behind it; empty where there is none.
  std::string Text(uint16_t tag) const;
  // Sets a text that is not empty.
  void SetText(uint16_t tag, const std::string& text);
};

// What a block says.
struct ExifBlock {
  Exif fields;
  int32_t orientation = 1;                     // 1 to 8, upright for whatever is not clear
  int32_t xDotsPerInch = 0, yDotsPerInch = 0;  // 0: not told
  bool makerNote = false;                      // which only its maker can move
};

// Reads a block, "II*" or "MM*" and on. What is damaged in it is left out.
ExifBlock ReadExif(const uint8_t* bytes, size_t size);
// The block of the fields.
std::string WriteExif(const Exif& exif);

}  // namespace vn::tool

#endif
