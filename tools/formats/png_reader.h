// PNG files of every kind as rows of 1, 4, 8 or 24 bits.
//
// Palettes and grays of up to 8 bits keep their depth (2 bits become 4), 16-bit samples are rounded
// to 8, transparency is laid over the background: in the palette where there is one, else pixel by
// pixel. Samples are taken as they stand unless a profile is to be heeded; a gAMA chunk changes nothing. An interlaced picture
// arrives in its seven passes, whose pixels are merged into the lines of whoever keeps them.
#ifndef VNCORE_TOOLS_PNG_READER_H
#define VNCORE_TOOLS_PNG_READER_H

#include <memory>
#include <string>
#include <vector>

#include "tools/formats/colors.h"
#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"
#include "tools/formats/png_guard.h"

namespace vn::tool {

bool IsPng(const InputFile& file);

class PngReader : public PictureSource {
 public:
  PngReader(std::unique_ptr<InputFile> file, const ReadOptions& options);

  const PictureInfo& Info() const override { return info_; }
  int64_t Deliveries() const override;
  int32_t NextLine() const override;
  bool Merges() const override { return interlaced_; }
  void ReadRow(uint8_t* row) override;
  void Finish() override;

 private:
  // What libpng's rows are, after the transformations that it is asked for.
  enum class Form { kReady, kTwoBitIndex, kTwoBitGray, kGrayAlpha, kColorAlpha };
  // libpng's pair of structs.
  struct State {
    State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { png_destroy_read_struct(&png, &info, nullptr); }
    PngError error;
    png_structp png = nullptr;
    png_infop info = nullptr;
  };
  struct Header;

  void ReadHeader(Header* header);
  void TakeFacts(const Header& header);
  void ChooseForm(const Header& header);
  void ChooseColors();
  void TakePalette(const Header& header);
  void TakeGrays(const Header& header);
  void FetchRow(uint8_t* to);
  void ToKernelRow(const uint8_t* raw, int32_t width, uint8_t* row) const;
  void SkipEmptyPasses();
  [[noreturn]] void Fail() const;

  std::unique_ptr<InputFile> file_;
  Rgb background_;
  State state_;
  PictureInfo info_;
  Form form_ = Form::kReady;
  std::unique_ptr<ToSrgb> toSrgb_;  // null: samples are taken as they stand
  bool interlaced_ = false;
  int32_t pass_ = 0;
  int32_t passRow_ = 0;
  std::vector<uint8_t> raw_;   // a row as libpng gives it
  std::vector<uint8_t> part_;  // interlaced: a pass's row in the kernel's format
};

}  // namespace vn::tool

#endif
