// JPEG files as rows of 8 bits, gray, or of 24 bits.
//
// Rows come as the camera held the picture, with the orientation told beside them. Inks become
// colours here. Damaged data is a failure even where libjpeg could go on.
#ifndef VNCORE_TOOLS_JPEG_READER_H
#define VNCORE_TOOLS_JPEG_READER_H

#include <memory>
#include <vector>

#include "tools/formats/coefficient_store.h"
#include "tools/formats/colors.h"
#include "tools/formats/input_file.h"
#include "tools/formats/jpeg_guard.h"
#include "tools/formats/picture.h"

namespace vn::tool {

bool IsJpeg(const InputFile& file);

class JpegReader : public PictureSource {
 public:
  JpegReader(std::unique_ptr<InputFile> file, const ReadOptions& options);

  const PictureInfo& Info() const override { return info_; }
  // By half, quarter or eighth, as the blocks of frequencies allow without being taken apart.
  void Reduce(int64_t width, int64_t height) override;
  int32_t NextLine() const override { return line_; }
  void ReadRow(uint8_t* row) override;
  void Finish() override;

 private:
  // libjpeg's source of bytes, over the file.
  struct Input {
    jpeg_source_mgr manager;  // first, so that libjpeg's pointer to it is a pointer to this
    InputFile* file;
    JOCTET bytes[16384];
  };
  struct State {
    State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { jpeg_destroy_decompress(&jpeg); }
    JpegError error;
    Input input{};
    jpeg_progress_mgr progress{};
    jpeg_decompress_struct jpeg{};
  };

  static boolean OnFill(j_decompress_ptr jpeg);
  static void OnSkip(j_decompress_ptr jpeg, long count);
  void ReadHeader();
  void ChooseForm();
  void ChooseColors(const ReadOptions& options);
  void Start();
  [[noreturn]] void Fail() const;

  std::unique_ptr<InputFile> file_;
  State state_;
  CoefficientStore store_;
  PictureInfo info_;
  bool started_ = false;
  int32_t line_ = 0;
  std::unique_ptr<ToSrgb> toSrgb_;  // null: samples are taken as they stand
  std::unique_ptr<Inks> inks_;      // null: none
  std::vector<uint8_t> row_;        // a row of inks
};

}  // namespace vn::tool

#endif
