#include "tools/formats/jpeg_markers.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "tools/formats/color_profile.h"

namespace vn::tool {
namespace {

using namespace std::string_view_literals;

constexpr int kExifMarker = JPEG_APP0 + 1, kProfileMarker = JPEG_APP0 + 2,
              kPhotoshopMarker = JPEG_APP0 + 13;
constexpr auto kExifName = "Exif\0\0"sv, kXmpName = "http://ns.adobe.com/xap/1.0/\0"sv,
               kLongXmpName = "http://ns.adobe.com/xmp/extension/\0"sv,
               kPhotoshopName = "Photoshop 3.0\0"sv;
constexpr unsigned kMostBytes = 0xFFFF - 2;  // of a marker

void TakeMarker(const jpeg_marker_struct& marker, PictureInfo& info) {
  const std::string_view data(reinterpret_cast<const char*>(marker.data), marker.data_length);
  Metadata& metadata = info.metadata;
  if (marker.marker == JPEG_COM) {
    metadata.comment = data;
  } else if (marker.marker == kPhotoshopMarker && data.starts_with(kPhotoshopName)) {
    metadata.left.push_back("IPTC data");
  } else if (data.starts_with(kLongXmpName)) {
    metadata.left.push_back("XMP data");
  } else if (data.starts_with(kXmpName)) {
    metadata.xmp = data.substr(kXmpName.size());
  } else if (data.starts_with(kExifName)) {
    ExifBlock block =
        ReadExif(marker.data + kExifName.size(), marker.data_length - kExifName.size());
    if (block.orientation != 1) info.facts.orientation = block.orientation;
    if (info.xDotsPerInch == 0 || info.yDotsPerInch == 0) {
      info.xDotsPerInch = block.xDotsPerInch;
      info.yDotsPerInch = block.yDotsPerInch;
    }
    if (!block.fields.Empty()) TakeExif(std::move(block), metadata);
  }
}

void WriteMarker(j_compress_ptr jpeg, int code, const std::string& bytes) {
  if (bytes.empty()) return;
  jpeg_write_marker(jpeg, code, reinterpret_cast<const JOCTET*>(bytes.data()),
                    static_cast<unsigned>(bytes.size()));
}

std::string Named(std::string_view name, const std::string& bytes) {
  return bytes.empty() ? bytes : std::string(name) + bytes;
}

// Empties what no marker holds; true if it held.
bool Fits(std::string& bytes) {
  if (bytes.size() > kMostBytes) bytes.clear();
  return !bytes.empty();
}

}  // namespace

void KeepMarkers(j_decompress_ptr jpeg) {
  jpeg_save_markers(jpeg, kExifMarker, 0xFFFF);
  jpeg_save_markers(jpeg, kProfileMarker, 0xFFFF);
  jpeg_save_markers(jpeg, kPhotoshopMarker, static_cast<unsigned>(kPhotoshopName.size()));
  jpeg_save_markers(jpeg, JPEG_COM, 0xFFFF);
}

void TakeMarkers(JpegError& error, j_decompress_ptr jpeg, PictureInfo& info) {
  for (const jpeg_marker_struct* marker = jpeg->marker_list; marker; marker = marker->next)
    TakeMarker(*marker, info);
  JOCTET* bytes = nullptr;
  unsigned size = 0;
  JOCTET** const to = &bytes;
  unsigned* const count = &size;
  // A damaged profile is none.
  if (GuardJpeg(error, [jpeg, to, count] { jpeg_read_icc_profile(jpeg, to, count); }) && bytes)
    info.metadata.profile.assign(reinterpret_cast<const char*>(bytes), size);
  std::free(bytes);
}

JpegMarkers::JpegMarkers(const Metadata& metadata, bool gray)
    : exif_(metadata.exif.Empty() ? "" : Named(kExifName, WriteExif(metadata.exif))),
      xmp_(Named(kXmpName, metadata.xmp)),
      comment_(metadata.comment) {
  room_.camera = exif_.size() <= kMostBytes;
  // At least the texts.
  if (!room_.camera) exif_ = Named(kExifName, WriteExif({metadata.exif.main, {}, {}}));
  room_.texts = Fits(exif_);
  room_.xmp = Fits(xmp_);
  room_.comment = Fits(comment_);
  room_.profile = SpaceOf(metadata.profile) == (gray ? ProfileSpace::kGray : ProfileSpace::kRgb);
  if (room_.profile) profile_ = metadata.profile;
}

void JpegMarkers::Write(j_compress_ptr jpeg) const {
  WriteMarker(jpeg, kExifMarker, exif_);
  WriteMarker(jpeg, kExifMarker, xmp_);
  if (!profile_.empty()) {
    jpeg_write_icc_profile(jpeg, reinterpret_cast<const JOCTET*>(profile_.data()),
                           static_cast<unsigned>(profile_.size()));
  }
  WriteMarker(jpeg, JPEG_COM, comment_);
}

}  // namespace vn::tool
