// Vn_ColorResBitmap: a change of depth and palette, row by row.
#include <algorithm>
#include <cstring>
#include <optional>

#include "color/diffusion_wave.h"
#include "color/dither_state.h"
#include "color/palettes.h"
#include "color/result_palette.h"
#include "color/row_converter.h"
#include "kernel/guards.h"
#include "kernel/picture_size.h"
#include "kernel/pixel_format.h"
#include "kernel/progress.h"
#include "kernel/replacement_bitmap.h"
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"
#include "region/region_motion.h"

namespace vn {
namespace {

struct RowSink {
  BitmapHandle* stored;  // where rows are kept, or null
  VnRowCallBack callback;
  UINT_PTR userData;
};

// One change of resolution. The source is a copy of the caller's record, which may be the target.
class Conversion {
 public:
  Conversion(BitmapHandle* source, BitmapHandle* target) : source_(source), target_(target) {}
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  ~Conversion() {
    if (dithering_) Vn_StopDithering(source_);
  }

  // All that must stand before the first row: record, region, palette, storage, buffers.
  VnStatus Prepare(const PaletteRequest& request, const RowSink& sink);
  // Converts all rows. `undo` is set when the row callback stopped the run.
  VnStatus Run(const RowSink& sink, bool* undo);

 private:
  VnStatus PrepareBuffers();
  VnStatus PrepareDithering(const PaletteRequest& request);
  void PrepareWave();
  void PrepareConverter();
  VnStatus RunByWaves(RowView from, RowView to, bool store);
  const uint8_t* WholeRow(const uint8_t* in);
  void ClearTail(uint8_t* out) const;
  void ConvertRow(const uint8_t* in, uint8_t* out);

  BitmapHandle* source_;
  BitmapHandle* target_;
  ResultPalette palette_;
  bool dithering_ = false;
  ScratchBuffer<uint8_t> waveMemory_;
  DiffusionWave wave_;  // lines go by in groups
  RGBQUAD sourceColors_[256] = {};
  RowConverter converter_;
  uint32_t width_ = 0;                // pixels that are converted
  uint32_t wholeBytes_ = 0;           // of the target that they fill
  ScratchBuffer<uint8_t> sourceRow_;  // a row as it comes
  bool shortRows_ = false;
  ScratchBuffer<uint8_t> row_;  // a row as it goes, large enough for either format
};

VnStatus Conversion::PrepareBuffers() {
  row_ = ScratchBuffer<uint8_t>(Vn_CalcConvertSize(static_cast<uint32_t>(source_->Width),
                                                   static_cast<uint32_t>(source_->BitsPerPixel),
                                                   static_cast<uint32_t>(target_->Width),
                                                   static_cast<uint32_t>(target_->BitsPerPixel)),
                                Fill::kZero);
  // A row that its record calls shorter than its pixels is followed by zeros.
  const auto needed =
      StrideOf(static_cast<uint32_t>(source_->Width), static_cast<uint32_t>(source_->BitsPerPixel));
  shortRows_ = source_->BytesPerLine < needed;
  sourceRow_ = ScratchBuffer<uint8_t>(std::max(source_->BytesPerLine, needed), Fill::kZero);
  return row_ && sourceRow_ ? OK : ERR_NO_MEMORY;
}

VnStatus Conversion::PrepareDithering(const PaletteRequest& request) {
  // The run takes the method of this call, and the bitmap keeps its own.
  const uint32_t own = source_->DitherMethod;
  source_->DitherMethod = request.flags >> 16 & 0xFF;
  const VnStatus status = StartDitherState(source_, palette_.colors, palette_.colorCount,
                                           target_->BitsPerPixel, palette_.MatchTable());
  source_->DitherMethod = own;
  dithering_ = status == OK;
  return status;
}

// Where memory for it cannot be had, lines go one by one.
void Conversion::PrepareWave() {
  const DitherRecord& run = *source_->DitherState;
  // Of a palette that is cut short, errors are taken against colours that are not there.
  const bool whole = run.TargetBits == DepthOfFixed(run) &&
                     run.TargetCount == FullColorCount(static_cast<uint32_t>(run.TargetBits));
  if (!run.ErrorRowCount || !whole) return;
  const DiffusionWave::Form form = {run.SourceBits,
                                    run.SourceBits > 8 && source_->ColorOrder != ORDER_BGR,
                                    run.SourceColors,
                                    run.Method,
                                    run.TargetBits,
                                    static_cast<uint64_t>(std::max(source_->Width, 0)),
                                    static_cast<uint64_t>(std::max(source_->Height, 0))};
  const uint64_t bytes = DiffusionWave::MemoryFor(form);
  if (!bytes) return;
  waveMemory_ = ScratchBuffer<uint8_t>(static_cast<size_t>(bytes), Fill::kZero);
  if (waveMemory_) wave_ = DiffusionWave(form, waveMemory_.data());
}

VnStatus Conversion::Prepare(const PaletteRequest& request, const RowSink& sink) {
  CarryOver(target_, *source_);
  VnStatus status = CopyRegion(target_, source_, 0, 0);
  if (status == OK) status = SettlePalette(source_, target_, request, &palette_);
  // Rows of the new depth can be too long where those of the source are not, stored or not.
  if (status == OK && !SizeFits(target_->Width, target_->Height, target_->BitsPerPixel)) {
    status = ERR_NO_MEMORY;
  }
  if (status == OK && sink.stored) status = Vn_AllocateBitmap(target_, STORAGE_AUTO);
  if (status == OK) status = PrepareBuffers();
  if (status == OK && palette_.dither) status = PrepareDithering(request);
  if (status != OK) return status;
  if (!palette_.dither) {
    PrepareConverter();
  } else if (!sink.callback) {
    PrepareWave();
  }
  return OK;
}

void Conversion::PrepareConverter() {
  if (source_->BitsPerPixel <= 8) {
    // Pixels that the palette object has no entry for count as the filler.
    if (target_->BitsPerPixel <= 8) std::fill_n(sourceColors_, 256, kFillerColor);
    Vn_GetPaletteEntries(ActivePalette(*source_), 0, static_cast<uint32_t>(source_->ColorCount),
                         sourceColors_);
  }
  // Rows of a format that is none go over as they are.
  const auto width = static_cast<uint32_t>(std::max(source_->Width, 0));
  if (!converter_.Prepare(
          {static_cast<uint32_t>(source_->BitsPerPixel), source_->ColorOrder, sourceColors_},
          {static_cast<uint32_t>(target_->BitsPerPixel), target_->ColorOrder, target_->DibColors},
          width)) {
    return;
  }
  width_ = width;
  wholeBytes_ =
      static_cast<uint32_t>(uint64_t{width} * static_cast<uint32_t>(target_->BitsPerPixel) / 8);
}

const uint8_t* Conversion::WholeRow(const uint8_t* in) {
  if (!shortRows_ || in == sourceRow_.data()) return in;
  std::copy_n(in, source_->BytesPerLine, sourceRow_.data());
  return sourceRow_.data();
}

// Dithering leaves what lies behind the last pixel.
void Conversion::ClearTail(uint8_t* out) const {
  constexpr uint32_t kTail = 4;
  std::memset(out + target_->BytesPerLine - kTail, 0, kTail);
}

void Conversion::ConvertRow(const uint8_t* in, uint8_t* out) {
  in = WholeRow(in);
  const uint32_t stride = target_->BytesPerLine;
  if (dithering_) {
    ClearTail(out);
    Vn_DitherLine(source_, in, out);
    return;
  }
  // Behind the last pixel goes what lay there in the source, and 0 behind that.
  const uint32_t kept = std::max(wholeBytes_, std::min(stride, source_->BytesPerLine));
  std::copy_n(in + wholeBytes_, kept - wholeBytes_, out + wholeBytes_);
  std::fill(out + kept, out + stride, uint8_t{0});
  if (width_) converter_.Convert(in, out, width_);
}

// Rows are stored, and told, one by one: after a stop the rest of a group is not there.
VnStatus Conversion::RunByWaves(RowView from, RowView to, bool store) {
  const auto height = static_cast<uint32_t>(source_->Height);
  Progress progress(height);
  if (!progress.Begin()) return progress.Result();
  for (uint32_t row = 0; row < height; row += DiffusionWave::kLines) {
    const uint32_t lines = std::min(DiffusionWave::kLines, height - row);
    for (uint32_t i = 0; i < lines; ++i)
      wave_.Put(i, WholeRow(from.Read(row + i)), 0);
    wave_.Run();
    for (uint32_t i = 0; i < lines; ++i) {
      if (store) {
        uint8_t* const out = to.Target(row + i);
        ClearTail(out);
        wave_.Take(i, out);
        to.Store(row + i);
      }
      if (!progress.Step()) return progress.Result();
    }
  }
  return progress.Result();
}

VnStatus Conversion::Run(const RowSink& sink, bool* undo) {
  std::optional<BitmapLock> targetLock;
  if (sink.stored) targetLock.emplace(sink.stored);
  const BitmapLock sourceLock(source_);
  RowView from(source_, sourceRow_.data()), to(target_, row_.data());
  if (wave_) return RunByWaves(from, to, sink.stored != nullptr);
  const auto height = static_cast<uint32_t>(source_->Height);
  Progress progress(height);
  if (!progress.Begin()) return progress.Result();
  for (uint32_t row = 0; row < height; ++row) {
    uint8_t* out = sink.stored ? to.Target(row) : row_.data();
    ConvertRow(from.Read(row), out);
    if (sink.callback) {
      const VnStatus answer = sink.callback(target_, out, 1, sink.userData);
      if (answer != OK) {
        *undo = true;
        return answer;
      }
    }
    if (sink.stored) to.Store(row);
    if (!progress.Step()) break;
  }
  return progress.Result();
}

// Converts `source` into `target`, whose record is initialised. `undo` tells that nothing of the
// target is to be kept.
VnStatus Convert(BitmapHandle* source, BitmapHandle* target, const PaletteRequest& request,
                 const RowSink& sink, bool* undo) {
  Conversion conversion(source, target);
  *undo = true;
  const VnStatus status = conversion.Prepare(request, sink);
  if (status != OK) return status;
  *undo = false;
  return conversion.Run(sink, undo);
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_ColorResBitmap(BitmapHandle* bitmap, BitmapHandle* target, uint32_t bits,
                                   uint32_t flags, const RGBQUAD* colors, uint32_t colorCount,
                                   VnRowCallBack callback, UINT_PTR userData) {
  using namespace vn;
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED) ||
      !WithDepth(static_cast<int32_t>(bits), [](auto) {})) {
    return ERR_INVALID_PARAMETER;
  }
  if (bits <= 8) {
    const uint32_t most = FullColorCount(bits);
    colorCount = colorCount == 0 ? most : std::min(colorCount, most);
  }
  const BitmapHandle before = *bitmap;
  BitmapHandle source = before;
  BitmapHandle unstored;
  BitmapHandle* result = target ? target : &unstored;
  Vn_InitBitmap(result, static_cast<uint32_t>(source.Width), static_cast<uint32_t>(source.Height),
                static_cast<int32_t>(bits));

  bool undo;
  const VnStatus status =
      Convert(&source, result, {flags, colors, colorCount}, {target, callback, userData}, &undo);
  if (undo) {
    Vn_FreeBitmap(result);
    if (target == bitmap) *bitmap = before;
    return status;
  }
  Vn_CreatePaletteIndexes(result);
  if (target == bitmap) Vn_FreeBitmap(&source);
  if (!target) Vn_FreeBitmap(&unstored);
  return status;
}
