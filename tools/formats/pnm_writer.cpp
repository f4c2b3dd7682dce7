#include "tools/formats/pnm_writer.h"

#include <algorithm>
#include <string>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

bool IsGray(const RGBQUAD& color) {
  return color.rgbRed == color.rgbGreen && color.rgbGreen == color.rgbBlue;
}

// The least kind that shows all colours of the palette.
PnmKind LeastKind(const PictureInfo& info) {
  if (info.bits > 8 || !std::all_of(info.colors.begin(), info.colors.end(), &IsGray))
    return PnmKind::kColor;
  const bool bits =
      info.bits == 1 && info.colors[0].rgbRed % 255 == 0 && info.colors[1].rgbRed % 255 == 0;
  return bits ? PnmKind::kBits : PnmKind::kGray;
}

}  // namespace

PnmWriter::PnmWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info, PnmKind kind)
    : file_(std::move(file)), info_(info), kind_(kind) {
  const PnmKind least = LeastKind(info);
  if (kind == PnmKind::kAny) kind_ = least;
  if (kind_ < least) {
    throw Failure("cannot write " + file_->Path() +
                  (kind_ == PnmKind::kBits ? ": a PBM file holds black and white (see --halftone)"
                                           : ": a PGM file holds grays (see --gray)"));
  }
  const auto width = static_cast<size_t>(info.width);
  row_.resize(kind_ == PnmKind::kBits   ? (width + 7) / 8
              : kind_ == PnmKind::kGray ? width
                                        : 3 * width);
  std::string header = kind_ == PnmKind::kBits ? "P4\n" : kind_ == PnmKind::kGray ? "P5\n" : "P6\n";
  header += std::to_string(info.width);
  header += ' ';
  header += std::to_string(info.height);
  header += kind_ == PnmKind::kBits ? "\n" : "\n255\n";
  Write(header.data(), header.size());
}

void PnmWriter::WriteRow(const uint8_t* row) {
  const auto width = static_cast<size_t>(info_.width);
  WithDepth(info_.bits, [&](auto bits) {
    const PixelReader<bits> pixel{row, info_.colors.data()};
    if (kind_ == PnmKind::kBits) {
      PixelWriter<1> writer(row_.data());
      for (size_t x = 0; x < width; ++x)
        writer.Put(pixel(x).red == 0);
      writer.Finish();
      return;
    }
    for (size_t x = 0; x < width; ++x) {
      const Rgb color = pixel(x);
      if (kind_ == PnmKind::kGray) {
        row_[x] = static_cast<uint8_t>(color.red);
      } else {
        PutColor<24, ORDER_RGB>(row_.data(), x, color);
      }
    }
  });
  Write(row_.data(), row_.size());
}

void PnmWriter::Finish() { file_->Commit(); }

void PnmWriter::Write(const void* bytes, size_t count) {
  if (!file_->Write(bytes, count)) {
    throw Failure("cannot write " + file_->Path() + ": " + file_->ErrorText());
  }
}

}  // namespace vn::tool
