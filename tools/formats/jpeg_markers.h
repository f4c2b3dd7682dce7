// What JPEG files say of their pictures in markers: Exif, XMP, a colour profile, a comment.
#ifndef VNCORE_TOOLS_JPEG_MARKERS_H
#define VNCORE_TOOLS_JPEG_MARKERS_H

#include "tools/formats/jpeg_guard.h"
#include "tools/formats/picture.h"

namespace vn::tool {

// Asks libjpeg to keep them. Under GuardJpeg.
void KeepMarkers(j_decompress_ptr jpeg);
// Takes them into `info`, whose resolution may come from Exif where JFIF does not tell it, and the
// orientation of the file into its facts.
void TakeMarkers(JpegError& error, j_decompress_ptr jpeg, PictureInfo& info);

// The markers of a picture that is written.
class JpegMarkers {
 public:
  JpegMarkers(const Metadata& metadata, bool gray);

  MetadataRoom Room() const { return room_; }
  // Behind the start of the compression and before the first row. Under GuardJpeg.
  void Write(j_compress_ptr jpeg) const;

 private:
  MetadataRoom room_;
  std::string exif_, xmp_, comment_, profile_;  // exif and xmp with the names before them
};

}  // namespace vn::tool

#endif
