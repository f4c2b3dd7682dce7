#include "tools/formats/png_reader.h"

#include <algorithm>
#include <iterator>

#include "tools/formats/png_texts.h"
#include "tools/formats/samples.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr int32_t kPasses = 7;

// Ancillary chunks that say nothing to us: skipped, so that none of them is kept.
constexpr png_byte kSkippedChunks[] = "gAMA\0cHRM\0sBIT\0bKGD\0hIST\0sPLT\0tIME\0oFFs\0pCAL\0sCAL";

void OnRead(png_structp png, png_bytep to, size_t count) {
  auto* file = static_cast<InputFile*>(png_get_io_ptr(png));
  if (!file->Read(to, count)) png_error(png, file->ErrorText());
}

RGBQUAD EntryOf(Rgb color) {
  return {static_cast<uint8_t>(color.blue), static_cast<uint8_t>(color.green),
          static_cast<uint8_t>(color.red), 0};
}

int32_t DotsPerInch(png_uint_32 perMeter) {
  return static_cast<int32_t>((int64_t{perMeter} * 254 + 5000) / 10000);
}

// Puts `count` pixels of `part` into `row` at columns `first`, `first + step` and so on.
template <int Bits>
void Scatter(const uint8_t* part, int32_t count, uint8_t* row, int32_t first, int32_t step) {
  for (int32_t i = 0, x = first; i < count; ++i, x += step) {
    if constexpr (Bits <= 8) {
      PutIndex<Bits>(row, static_cast<size_t>(x),
                     IndexReader<Bits>::Get(part, static_cast<size_t>(i)));
    } else {
      std::copy_n(part + int64_t{i} * (Bits / 8), Bits / 8, row + int64_t{x} * (Bits / 8));
    }
  }
}

}  // namespace

// What the file says before its first row. Plain data: it is filled under GuardPng.
struct PngReader::Header {
  png_uint_32 width, height;
  int depth, colorType, interlace;
  png_colorp palette;
  int paletteCount;
  png_bytep alphas;  // of palette entries
  int alphaCount;
  png_color_16p key;  // the transparent gray or colour
  bool transparent;
  png_uint_32 xPerMeter, yPerMeter;

  bool Gray() const { return colorType == PNG_COLOR_TYPE_GRAY; }
  bool Paletted() const { return colorType == PNG_COLOR_TYPE_PALETTE; }
};

bool IsPng(const InputFile& file) {
  return file.HeadCount() == 8 && png_sig_cmp(file.Head(), 0, 8) == 0;
}

PngReader::State::State()
    : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &error, &OnPngError, &OnPngWarning)),
      info(png ? png_create_info_struct(png) : nullptr) {
  if (!info) {
    png_destroy_read_struct(&png, &info, nullptr);
    throw Failure("there is not enough memory to read a picture");
  }
}

PngReader::PngReader(std::unique_ptr<InputFile> file, const ReadOptions& options)
    : file_(std::move(file)), background_(options.background) {
  Header header{};
  ReadHeader(&header);
  TakeFacts(header);
  SettleOrientation(options, info_);
  info_.width = static_cast<int32_t>(header.width);
  info_.height = static_cast<int32_t>(header.height);
  info_.xDotsPerInch = DotsPerInch(header.xPerMeter);
  info_.yDotsPerInch = DotsPerInch(header.yPerMeter);
  interlaced_ = header.interlace != PNG_INTERLACE_NONE;
  ChooseForm(header);
  if (options.srgb) ChooseColors();
  // Before anyone allocates rows of that width.
  RequirePossibleSize(file_->Path(), info_.width, info_.height, info_.bits);

  const png_structp png = state_.png;
  const png_infop info = state_.info;
  size_t rowBytes = 0;
  if (!GuardPng(png, [png, info, &rowBytes] {
        png_read_update_info(png, info);
        rowBytes = png_get_rowbytes(png, info);
      })) {
    Fail();
  }
  raw_.resize(rowBytes);
  if (interlaced_) {
    part_.resize(StrideOf(header.width, static_cast<uint32_t>(info_.bits)));
    SkipEmptyPasses();
  }
}

void PngReader::ReadHeader(Header* header) {
  const png_structp png = state_.png;
  const png_infop info = state_.info;
  InputFile* const file = file_.get();
  const bool read = GuardPng(png, [png, info, file, header] {
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    LimitChunks(png);
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, kSkippedChunks,
                                static_cast<int>(sizeof kSkippedChunks / 5));
    png_set_read_fn(png, file, &OnRead);
    png_read_info(png, info);
    png_get_IHDR(png, info, &header->width, &header->height, &header->depth, &header->colorType,
                 &header->interlace, nullptr, nullptr);
    png_get_PLTE(png, info, &header->palette, &header->paletteCount);
    header->transparent =
        png_get_tRNS(png, info, &header->alphas, &header->alphaCount, &header->key) != 0;
    int unit = PNG_RESOLUTION_UNKNOWN;
    png_get_pHYs(png, info, &header->xPerMeter, &header->yPerMeter, &unit);
    if (unit != PNG_RESOLUTION_METER) header->xPerMeter = header->yPerMeter = 0;
  });
  if (!read) Fail();
}

void PngReader::TakeFacts(const Header& header) {
  FileFacts& facts = info_.facts;
  facts.format = "PNG";
  facts.model = header.Paletted()                         ? "palette"
                : header.colorType & PNG_COLOR_MASK_COLOR ? "RGB"
                                                          : "gray";
  facts.sampleBits = header.depth;
  facts.alpha = (header.colorType & PNG_COLOR_MASK_ALPHA) || header.transparent;
  TakeChunks(state_.png, state_.info, info_);
}

void PngReader::ChooseForm(const Header& header) {
  const png_structp png = state_.png;
  const bool twoBits = header.depth == 2;
  const bool grayTable = header.Gray() && (header.depth <= 8 || !header.transparent);
  if (header.Paletted() || grayTable) {
    const int32_t depth = std::min(header.depth, 8);
    info_.bits = twoBits ? 4 : depth;
    if (twoBits) form_ = header.Paletted() ? Form::kTwoBitIndex : Form::kTwoBitGray;
    header.Paletted() ? TakePalette(header) : TakeGrays(header);
    if (header.depth == 16 && !GuardPng(png, [png] { png_set_scale_16(png); })) Fail();
    return;
  }

  const bool alpha = (header.colorType & PNG_COLOR_MASK_ALPHA) || header.transparent;
  const bool color = header.colorType & PNG_COLOR_MASK_COLOR;
  const bool grayBackground =
      background_.red == background_.green && background_.green == background_.blue;
  const bool toGray = !color && grayBackground;
  info_.bits = toGray ? 8 : 24;
  if (toGray) info_.colors = GrayRamp(256);
  form_ = !alpha ? Form::kReady : toGray ? Form::kGrayAlpha : Form::kColorAlpha;
  const bool set = GuardPng(png, [png, &header, toGray] {
    // libpng compares a transparent colour before it scales the samples.
    if (header.transparent) png_set_tRNS_to_alpha(png);
    if (header.depth == 16) png_set_scale_16(png);
    if (!toGray) {
      png_set_gray_to_rgb(png);
      png_set_bgr(png);
    }
  });
  if (!set) Fail();
}

// Alpha is laid over a background that is sRGB: colours are turned before.
void PngReader::ChooseColors() {
  using Samples = ToSrgb::Samples;
  if (form_ != Form::kGrayAlpha && form_ != Form::kColorAlpha && !info_.colors.empty()) {
    return PaletteToSrgb(file_->Path(), info_);
  }
  toSrgb_ = TakeToSrgb(file_->Path(), info_.metadata,
                       form_ == Form::kReady       ? Samples::kBgr
                       : form_ == Form::kGrayAlpha ? Samples::kGrayAlpha
                                                   : Samples::kBgra);
}

void PngReader::TakePalette(const Header& header) {
  // Indexes beyond the file's palette are damage and show black.
  info_.colors.assign(FullColorCount(static_cast<uint32_t>(info_.bits)), RGBQUAD{});
  const int count = std::min(header.paletteCount, static_cast<int>(info_.colors.size()));
  for (int i = 0; i < count; ++i) {
    const png_color& from = header.palette[i];
    const uint32_t alpha = i < header.alphaCount ? header.alphas[i] : 255;
    info_.colors[static_cast<size_t>(i)] = {Lay(from.blue, alpha, background_.blue),
                                            Lay(from.green, alpha, background_.green),
                                            Lay(from.red, alpha, background_.red), 0};
  }
}

void PngReader::TakeGrays(const Header& header) {
  info_.colors = GrayRamp(1 << info_.bits);
  if (!header.transparent) return;
  const size_t key = size_t{header.key->gray} * (header.depth == 2 ? kGrayStepOfTwoBits : 1);
  if (key < info_.colors.size()) info_.colors[key] = EntryOf(background_);
}

int64_t PngReader::Deliveries() const {
  if (!interlaced_) return info_.height;
  int64_t rows = 0;
  for (int32_t pass = 0; pass < kPasses; ++pass) {
    if (PNG_PASS_COLS(info_.width, pass) > 0) rows += PNG_PASS_ROWS(info_.height, pass);
  }
  return rows;
}

int32_t PngReader::NextLine() const {
  return interlaced_ ? PNG_ROW_FROM_PASS_ROW(passRow_, pass_) : passRow_;
}

void PngReader::ReadRow(uint8_t* row) {
  uint8_t* const whole = interlaced_ ? part_.data() : row;
  const int32_t width = interlaced_ ? PNG_PASS_COLS(info_.width, pass_) : info_.width;
  uint8_t* const fetched = form_ == Form::kReady ? whole : raw_.data();
  FetchRow(fetched);
  if (toSrgb_) toSrgb_->Apply(fetched, fetched, static_cast<size_t>(width));
  if (form_ != Form::kReady) ToKernelRow(raw_.data(), width, whole);
  ++passRow_;
  if (!interlaced_) return;
  const int32_t first = PNG_PASS_START_COL(pass_);
  const int32_t step = 1 << PNG_PASS_COL_SHIFT(pass_);
  WithDepth(info_.bits, [&](auto depth) {
    Scatter<decltype(depth)::value>(part_.data(), width, row, first, step);
  });
  if (passRow_ == PNG_PASS_ROWS(info_.height, pass_)) {
    passRow_ = 0;
    ++pass_;
    SkipEmptyPasses();
  }
}

// libpng leaves passes without pixels out, and so do we.
void PngReader::SkipEmptyPasses() {
  while (pass_ < kPasses &&
         (PNG_PASS_COLS(info_.width, pass_) == 0 || PNG_PASS_ROWS(info_.height, pass_) == 0)) {
    ++pass_;
  }
}

void PngReader::FetchRow(uint8_t* to) {
  const png_structp png = state_.png;
  if (!GuardPng(png, [png, to] { png_read_row(png, to, nullptr); })) Fail();
}

void PngReader::ToKernelRow(const uint8_t* raw, int32_t width, uint8_t* row) const {
  const auto count = static_cast<size_t>(width);
  switch (form_) {
    case Form::kTwoBitIndex:
      WidenTwoBits(raw, width, 1, row);
      break;
    case Form::kTwoBitGray:
      WidenTwoBits(raw, width, kGrayStepOfTwoBits, row);
      break;
    case Form::kGrayAlpha:
      for (size_t x = 0; x < count; ++x)
        row[x] = Lay(raw[2 * x], raw[2 * x + 1], background_.blue);
      break;
    case Form::kColorAlpha:
      for (size_t x = 0; x < count; ++x) {
        const uint8_t* const from = raw + 4 * x;
        row[3 * x] = Lay(from[0], from[3], background_.blue);
        row[3 * x + 1] = Lay(from[1], from[3], background_.green);
        row[3 * x + 2] = Lay(from[2], from[3], background_.red);
      }
      break;
    case Form::kReady:
      break;
  }
}

void PngReader::Finish() {
  const png_structp png = state_.png;
  if (!GuardPng(png, [png] { png_read_end(png, nullptr); })) Fail();
}

void PngReader::Fail() const { throw Failure(file_->Path() + ": " + state_.error.text); }

}  // namespace vn::tool
