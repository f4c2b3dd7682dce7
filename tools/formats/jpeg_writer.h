// JPEG files written by rows: gray where the palette is, else colour. Sharp edges of dithered and
// drawn pictures are kept by a high quality and full chroma.
#ifndef VNCORE_TOOLS_JPEG_WRITER_H
#define VNCORE_TOOLS_JPEG_WRITER_H

#include <memory>
#include <vector>

#include "tools/formats/jpeg_guard.h"
#include "tools/formats/jpeg_markers.h"
#include "tools/formats/output_file.h"
#include "tools/formats/picture.h"

namespace vn::tool {

class JpegWriter : public PictureSink {
 public:
  JpegWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info);

  void WriteRow(const uint8_t* row) override;
  void Finish() override;
  MetadataRoom Room() const override { return markers_.Room(); }

 private:
  // libjpeg's destination of bytes, over the file.
  struct Output {
    jpeg_destination_mgr manager;  // first, so that libjpeg's pointer to it is a pointer to this
    OutputFile* file;
    JOCTET bytes[16384];
  };
  struct State {
    State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { jpeg_destroy_compress(&jpeg); }
    JpegError error;
    Output output{};
    jpeg_compress_struct jpeg{};
  };

  static void OnStart(j_compress_ptr jpeg);
  static boolean OnFull(j_compress_ptr jpeg);
  static void OnEnd(j_compress_ptr jpeg);
  void Start();
  [[noreturn]] void Fail() const;

  std::unique_ptr<OutputFile> file_;
  PictureInfo info_;
  bool gray_;
  JpegMarkers markers_;
  State state_;
  std::vector<uint8_t> row_;  // a paletted row and, in its place, what it shows
};

}  // namespace vn::tool

#endif
