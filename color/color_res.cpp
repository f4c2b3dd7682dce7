// Vn_ColorResBitmap: a change of depth and palette, row by row.
#include <algorithm>
#include <cstring>
#include <optional>

#include "color/dither_state.h"
#include "color/palettes.h"
#include "color/result_palette.h"
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
  VnStatus Prepare(const PaletteRequest& request, bool store);
  // Converts all rows. `undo` is set when the row callback stopped the run.
  VnStatus Run(const RowSink& sink, bool* undo);

 private:
  VnStatus PrepareBuffers();
  VnStatus PrepareDithering(const PaletteRequest& request);
  void ConvertRow(const uint8_t* in, uint8_t* out);

  BitmapHandle* source_;
  BitmapHandle* target_;
  ResultPalette palette_;
  bool dithering_ = false;
  RGBQUAD sourceColors_[256] = {};
  ScratchBuffer<uint8_t> sourceRow_;  // a row as it comes
  ScratchBuffer<uint8_t> row_;        // a row as it goes, large enough for either format
};

VnStatus Conversion::PrepareBuffers() {
  row_ = ScratchBuffer<uint8_t>(Vn_CalcConvertSize(static_cast<uint32_t>(source_->Width),
                                                   static_cast<uint32_t>(source_->BitsPerPixel),
                                                   static_cast<uint32_t>(target_->Width),
                                                   static_cast<uint32_t>(target_->BitsPerPixel)),
                                Fill::kZero);
  sourceRow_ = ScratchBuffer<uint8_t>(source_->BytesPerLine);
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

VnStatus Conversion::Prepare(const PaletteRequest& request, bool store) {
  CarryOver(target_, *source_);
  VnStatus status = CopyRegion(target_, source_, 0, 0);
  if (status == OK) status = SettlePalette(source_, target_, request, &palette_);
  // Rows of the new depth can be too long where those of the source are not, stored or not.
  if (status == OK && !SizeFits(target_->Width, target_->Height, target_->BitsPerPixel)) {
    status = ERR_NO_MEMORY;
  }
  if (status == OK && store) status = Vn_AllocateBitmap(target_, STORAGE_AUTO);
  if (status == OK) status = PrepareBuffers();
  if (status != OK) return status;
  if (palette_.dither) return PrepareDithering(request);
  if (source_->BitsPerPixel <= 8) {
    // Pixels that the palette object has no entry for count as the filler.
    if (target_->BitsPerPixel <= 8) std::fill_n(sourceColors_, 256, kFillerColor);
    Vn_GetPaletteEntries(ActivePalette(*source_), 0, static_cast<uint32_t>(source_->ColorCount),
                         sourceColors_);
  }
  return OK;
}

void Conversion::ConvertRow(const uint8_t* in, uint8_t* out) {
  if (dithering_) {
    // Dithering leaves what lies behind the last pixel.
    constexpr uint32_t kTail = 4;
    std::memset(out + target_->BytesPerLine - kTail, 0, kTail);
    Vn_DitherLine(source_, in, out);
    return;
  }
  std::copy_n(in, source_->BytesPerLine, row_.data());
  Vn_ConvertBuffer(row_.data(), static_cast<uint32_t>(source_->Width),
                   static_cast<uint32_t>(source_->BitsPerPixel),
                   static_cast<uint32_t>(target_->BitsPerPixel), source_->ColorOrder,
                   target_->ColorOrder, sourceColors_, target_->DibColors);
  if (out != row_.data()) std::copy_n(row_.data(), target_->BytesPerLine, out);
}

VnStatus Conversion::Run(const RowSink& sink, bool* undo) {
  std::optional<BitmapLock> targetLock;
  if (sink.stored) targetLock.emplace(sink.stored);
  const BitmapLock sourceLock(source_);
  RowView from(source_, sourceRow_.data()), to(target_, row_.data());
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
  const VnStatus status = conversion.Prepare(request, sink.stored != nullptr);
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
