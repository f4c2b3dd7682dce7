#include "tools/operations/row_streams.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "geometry/blend_rows.h"
#include "geometry/resample_axis.h"
#include "geometry/row_cells.h"
#include "geometry/row_scaler.h"
#include "kernel/progress.h"
#include "tools/formats/samples.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

size_t RowBytes(const PictureInfo& info) {
  return StrideOf(static_cast<uint32_t>(info.width), static_cast<uint32_t>(info.bits));
}

// A stream made from another: its lines come in the same order.
class DerivedRows : public PictureSource {
 public:
  explicit DerivedRows(std::unique_ptr<PictureSource> source)
      : source_(std::move(source)),
        info_(source_->Info()),
        descending_(source_->NextLine() > 0),
        whole_(RowBytes(info_)) {}

  const PictureInfo& Info() const override { return info_; }
  int32_t NextLine() const override {
    return descending_ ? info_.height - 1 - delivered_ : delivered_;
  }

 protected:
  bool Descending() const { return descending_; }
  // Reads the source's line `line`, past others.
  const uint8_t* Fetch(int32_t line) {
    for (bool found = false; !found;) {
      ThrowIfInterrupted();
      found = source_->NextLine() == line;
      source_->ReadRow(whole_.data());
    }
    return whole_.data();
  }

  const std::unique_ptr<PictureSource> source_;
  PictureInfo info_;
  int32_t delivered_ = 0;

 private:
  const bool descending_;
  std::vector<uint8_t> whole_;  // a row of the source
};

// Pixels from column `left` on to the row's start.
void TakeColumns(const uint8_t* from, int32_t bits, int32_t left, int32_t width, uint8_t* row) {
  const auto first = static_cast<size_t>(left), count = static_cast<size_t>(width);
  if (bits >= 8) {
    const auto bytes = static_cast<size_t>(bits / 8);
    std::memcpy(row, from + first * bytes, count * bytes);
    return;
  }
  WithDepth(bits, [&](auto depth) {
    constexpr int kBits = decltype(depth)::value;
    if constexpr (kBits < 8) {
      PixelWriter<kBits> writer(row);
      for (size_t x = 0; x < count; ++x)
        writer.Put(IndexReader<kBits>::Get(from, first + x));
      writer.Finish();
    }
  });
}

class CroppedRows : public DerivedRows {
 public:
  CroppedRows(std::unique_ptr<PictureSource> source, const Part& part)
      : DerivedRows(std::move(source)), area_(part.Of(info_.width, info_.height)) {
    info_.width = area_.width;
    info_.height = area_.height;
  }

  void ReadRow(uint8_t* row) override {
    TakeColumns(Fetch(area_.y + NextLine()), info_.bits, area_.x, area_.width, row);
    ++delivered_;
  }

 private:
  const Area area_;
};

class ScaledRows : public DerivedRows {
 public:
  ScaledRows(std::unique_ptr<PictureSource> source, int32_t width, int32_t height)
      : DerivedRows(std::move(source)), old_(info_) {
    info_.width = width;
    info_.height = height;
    scaled_.resize(RowBytes(info_));
    if (width == old_.width) return;
    const auto from = static_cast<uint32_t>(old_.width), to = static_cast<uint32_t>(width);
    scaler_.emplace(RowScale{info_.bits, Stepper::Dividing(from, to), 0, from, to,
                             static_cast<uint32_t>(scaled_.size()), to > from},
                    static_cast<uint32_t>(std::min(height, old_.height)));
  }

  void ReadRow(uint8_t* row) override {
    // As Vn_SizeBitmap picks them.
    const auto wanted = static_cast<int32_t>(int64_t{NextLine()} * old_.height / info_.height);
    if (wanted != held_) {
      const uint8_t* const whole = Fetch(wanted);
      held_ = wanted;
      if (scaler_) {
        scaler_->Scale(whole, scaled_.data());
      } else {
        std::memcpy(scaled_.data(), whole, scaled_.size());
      }
    }
    std::memcpy(row, scaled_.data(), scaled_.size());
    ++delivered_;
  }

  // Lines that no new one shows are checked as well.
  void Finish() override {
    const int32_t end = Descending() ? 0 : old_.height - 1;
    if (held_ != end) Fetch(end);
    source_->Finish();
  }

 private:
  const PictureInfo old_;
  std::optional<RowScaler> scaler_;  // none where rows keep their width
  std::vector<uint8_t> scaled_;
  int32_t held_ = -1;  // the source's line that `scaled_` is of
};

// Cells of the source's pixels, first across and then down.
class AveragedRows : public DerivedRows {
 public:
  AveragedRows(std::unique_ptr<PictureSource> source, uint32_t width, uint32_t height)
      : DerivedRows(std::move(source)),
        across_{static_cast<uint32_t>(info_.width), width},
        down_{static_cast<uint32_t>(info_.height), height},
        cells_(down_.Sizes()),
        bytes_(size_t{width} * static_cast<size_t>(info_.bits / 8)),
        average_(bytes_, down_.LargestSize()),
        narrow_(bytes_) {
    if (!average_) throw std::bad_alloc();
    if (across_.newSize < across_.oldSize)
      columns_.emplace(across_, static_cast<uint32_t>(info_.bits / 8));
    info_.width = static_cast<int32_t>(width);
    info_.height = static_cast<int32_t>(height);
  }

  void ReadRow(uint8_t* row) override {
    const uint32_t size = cells_.Advance();
    for (uint32_t i = 0; i < size; ++i) {
      const uint8_t* wide = Fetch(next_++);
      if (columns_) {
        columns_->Average(wide, narrow_.data());
        wide = narrow_.data();
      }
      average_.Add(wide, i == 0);
    }
    average_.Write(size, row);
    ++delivered_;
  }

  void Finish() override { source_->Finish(); }

 private:
  const ResampleAxis across_, down_;
  Stepper cells_;
  const size_t bytes_;
  RowAverage average_;
  std::optional<RowCells> columns_;  // none where rows keep their width
  std::vector<uint8_t> narrow_;
  int32_t next_ = 0;  // of the source's lines
};

}  // namespace

bool IsStream(const PictureSource& source) {
  const PictureInfo& info = source.Info();
  return info.orientation == 1 && !source.Merges() && source.Deliveries() == info.height;
}

bool ComesInOrder(const PictureSource& source) {
  return IsStream(source) && source.NextLine() == 0;
}

std::unique_ptr<PictureSource> CropRows(std::unique_ptr<PictureSource> source, const Part& part) {
  return std::make_unique<CroppedRows>(std::move(source), part);
}

std::unique_ptr<PictureSource> ScaleRows(std::unique_ptr<PictureSource> source,
                                         const NewSize& size) {
  const PictureInfo& info = source->Info();
  const int64_t width = size.WidthOf(info.width), height = size.HeightOf(info.height);
  RequirePossibleSize("--scale", width, height, info.bits);
  return std::make_unique<ScaledRows>(std::move(source), static_cast<int32_t>(width),
                                      static_cast<int32_t>(height));
}

bool CanAverageRows(const PictureSource& source, int64_t width, int64_t height) {
  const PictureInfo& info = source.Info();
  const bool averages = info.bits == 24 || (info.bits == 8 && IsGrayRamp(info.colors));
  return averages && ComesInOrder(source) && width >= 1 && height >= 1 && width <= info.width &&
         height <= info.height;
}

std::unique_ptr<PictureSource> AverageRows(std::unique_ptr<PictureSource> source, int64_t width,
                                           int64_t height) {
  return std::make_unique<AveragedRows>(std::move(source), static_cast<uint32_t>(width),
                                        static_cast<uint32_t>(height));
}

void CopyRows(PictureSource& source, PictureSink& sink) {
  const PictureInfo& info = source.Info();
  std::vector<uint8_t> row(RowBytes(info));
  Progress progress(static_cast<uint32_t>(info.height));
  RequireGoOn(progress.Begin());
  for (int32_t line = 0; line < info.height; ++line) {
    ThrowIfInterrupted();
    source.ReadRow(row.data());
    ClearBehind(row.data(), info.width, info.bits);
    sink.WriteRow(row.data());
    RequireGoOn(progress.Step());
  }
}

}  // namespace vn::tool
