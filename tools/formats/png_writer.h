// PNG files written by rows: paletted up to 8 bits, else 24-bit colour.
#ifndef VNCORE_TOOLS_PNG_WRITER_H
#define VNCORE_TOOLS_PNG_WRITER_H

#include <memory>

#include "tools/formats/output_file.h"
#include "tools/formats/picture.h"
#include "tools/formats/png_data.h"
#include "tools/formats/png_guard.h"
#include "tools/formats/png_texts.h"

namespace vn::tool {

class PngWriter : public PictureSink, private PngData::Chunks {
 public:
  // `level` is zlib's, 0 to 9; none: as the picture is.
  PngWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info,
            std::optional<int32_t> level);

  void WriteRow(const uint8_t* row) override;
  void Finish() override;
  MetadataRoom Room() const override { return texts_.Room(state_.png, state_.info); }

 private:
  struct State {
    State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { png_destroy_write_struct(&png, &info); }
    PngError error;
    png_structp png = nullptr;
    png_infop info = nullptr;
  };

  void WriteHeader(const PictureInfo& info);
  void WriteData(const uint8_t* bytes, size_t count) override;
  void WriteChunk(const char* name, const uint8_t* bytes, size_t count);
  [[noreturn]] void Fail() const;

  std::unique_ptr<OutputFile> file_;
  const bool gray_;
  const PngTexts texts_;
  State state_;
  PngData data_;
};

}  // namespace vn::tool

#endif
