#include "tools/formats/tiff_texts.h"

#include "tools/formats/color_profile.h"

namespace vn::tool {
namespace {

// A field of bytes; empty when there is none.
std::string BytesOf(TIFF* tiff, uint32_t tag) {
  uint32_t count = 0;
  const void* bytes = nullptr;
  if (!TIFFGetField(tiff, tag, &count, &bytes) || !bytes) return {};
  return {static_cast<const char*>(bytes), count};
}

bool SetBytes(TIFF* tiff, uint32_t tag, const std::string& bytes) {
  return bytes.empty() ||
         TIFFSetField(tiff, tag, static_cast<uint32_t>(bytes.size()), bytes.data()) == 1;
}

}  // namespace

Metadata ReadTiffTexts(TIFF* tiff) {
  Metadata metadata;
  metadata.profile = BytesOf(tiff, TIFFTAG_ICCPROFILE);
  metadata.xmp = BytesOf(tiff, TIFFTAG_XMLPACKET);
  for (const uint16_t tag : kExifTexts) {
    const char* text = nullptr;
    if (TIFFGetField(tiff, tag, &text) && text) metadata.exif.SetText(tag, text);
  }
  const auto has = [tiff](uint32_t tag) {
    uint64_t offset = 0;
    return TIFFGetField(tiff, tag, &offset) == 1;
  };
  if (has(TIFFTAG_EXIFIFD)) metadata.left.push_back("camera settings");
  if (has(TIFFTAG_GPSIFD)) metadata.left.push_back("position");
  if (!BytesOf(tiff, TIFFTAG_RICHTIFFIPTC).empty()) metadata.left.push_back("IPTC data");
  return metadata;
}

bool WriteTiffTexts(TIFF* tiff, const Metadata& metadata, bool gray, MetadataRoom* room) {
  *room = {};
  room->texts = room->xmp = true;
  room->profile = SpaceOf(metadata.profile) == (gray ? ProfileSpace::kGray : ProfileSpace::kRgb);
  bool done = SetBytes(tiff, TIFFTAG_XMLPACKET, metadata.xmp);
  if (room->profile) done &= SetBytes(tiff, TIFFTAG_ICCPROFILE, metadata.profile);
  for (const uint16_t tag : kExifTexts) {
    const std::string text = metadata.exif.Text(tag);
    if (!text.empty()) done &= TIFFSetField(tiff, tag, text.c_str()) == 1;
  }
  return done;
}

}  // namespace vn::tool
