// Rows to and from the format in which they are resampled.
#include "geometry/resample_rows.h"

#include <algorithm>
#include <cstring>

#include "color/palettes.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

bool AllGray(const RGBQUAD* colors, uint32_t count) {
  return std::all_of(colors, colors + count, [](const RGBQUAD& c) {
    return c.rgbRed == c.rgbGreen && c.rgbGreen == c.rgbBlue;
  });
}

uint32_t RowBytes(const BitmapHandle& bitmap, uint32_t channels) {
  return static_cast<uint32_t>(bitmap.Width) * channels;
}

// A row of the bitmap at 24 bits and one as it is stored, whichever is longer.
uint32_t BufferBytes(const BitmapHandle& bitmap) {
  return std::max(bitmap.BytesPerLine, StrideOf(static_cast<uint32_t>(bitmap.Width), 24));
}

// Whether stored rows are what is resampled.
bool IsPlain(const BitmapHandle& bitmap, uint32_t depth) {
  return depth == BPP_GRAY || (depth == 24 && bitmap.ColorOrder == ORDER_BGR);
}

}  // namespace

ResampleColors::ResampleColors(BitmapHandle* bitmap)
    : depth(static_cast<uint32_t>(bitmap->BitsPerPixel)), channels(3), dithers(depth <= 8) {
  if (depth > 8) return;
  if (depth == 8 && Vn_IsGrayScaleBitmap(bitmap) == 1) {
    depth = BPP_GRAY;
    channels = 1;
    dithers = false;
    return;
  }
  const uint32_t count = FullColorCount(depth);
  Vn_GetPaletteEntries(ActivePalette(*bitmap), 0, count, table);
  if (AllGray(table, count)) channels = 1;
}

ResampleSource::ResampleSource(BitmapHandle* bitmap, const ResampleColors& colors)
    : bitmap_(bitmap),
      colors_(colors),
      plain_(IsPlain(*bitmap, colors.depth)),
      buffer_(BufferBytes(*bitmap), Fill::kZero),
      view_(bitmap, buffer_.data()) {}

const uint8_t* ResampleSource::Read(uint32_t row) {
  const uint8_t* const stored = view_.Read(row);
  if (plain_) return stored;
  uint8_t* const made = buffer_.data();
  if (stored != made) std::memcpy(made, stored, bitmap_->BytesPerLine);
  Vn_ConvertBuffer(made, static_cast<uint32_t>(bitmap_->Width), colors_.depth,
                   colors_.channels == 1 ? BPP_GRAY : 24, bitmap_->ColorOrder, ORDER_BGR,
                   colors_.table, nullptr);
  return made;
}

ResampleTarget::ResampleTarget(BitmapHandle* bitmap, const ResampleColors& colors)
    : bitmap_(bitmap),
      colors_(colors),
      // At 32 bits a row is widened where it lies.
      inPlace_(IsPlain(*bitmap, colors.depth) || colors.depth == 32),
      made_(inPlace_ ? 0 : BufferBytes(*bitmap), Fill::kZero),
      stored_(bitmap->BytesPerLine, Fill::kZero),
      view_(bitmap, stored_.data()) {}

ResampleTarget::~ResampleTarget() {
  if (dithering_) Vn_StopDithering(&dither_);
}

VnStatus ResampleTarget::Prepare() {
  if (!made_ || !stored_) return ERR_NO_MEMORY;
  if (!colors_.dithers) return OK;
  Vn_InitBitmap(&dither_, static_cast<uint32_t>(bitmap_->Width),
                static_cast<uint32_t>(bitmap_->Height), 24);
  dither_.DitherMethod = DITHER_FLOYD_STEINBERG;
  const VnStatus status = Vn_StartDithering(&dither_, colors_.table, FullColorCount(colors_.depth));
  dithering_ = status == OK;
  return status;
}

uint8_t* ResampleTarget::Make(uint32_t row) { return inPlace_ ? view_.Target(row) : made_.data(); }

void ResampleTarget::Write(uint32_t row) {
  uint8_t* const stored = view_.Target(row);
  const auto width = static_cast<uint32_t>(bitmap_->Width);
  const uint32_t stride = bitmap_->BytesPerLine;
  // The fill at a row's end is 0: what converts a row leaves it.
  const auto clearFrom = [&](uint32_t byte) { std::memset(stored + byte, 0, stride - byte); };
  if (dithering_) {
    if (colors_.channels == 1) {
      Vn_ConvertBuffer(made_.data(), width, BPP_GRAY, 24, ORDER_BGR, ORDER_BGR, nullptr, nullptr);
    }
    clearFrom(stride - 4);
    Vn_DitherLine(&dither_, made_.data(), stored);
  } else if (colors_.depth == 16) {
    Vn_ConvertBuffer(made_.data(), width, 24, 16, ORDER_BGR, bitmap_->ColorOrder, nullptr, nullptr);
    std::memcpy(stored, made_.data(), size_t{width} * 2);
    clearFrom(width * 2);
  } else if (colors_.depth == 32) {
    Vn_ConvertBuffer(stored, width, 24, 32, ORDER_BGR, bitmap_->ColorOrder, nullptr, nullptr);
  } else {
    clearFrom(RowBytes(*bitmap_, colors_.channels));
  }
  view_.Store(row);
}

void ResampleTarget::Repeat(uint32_t row) {
  // In a file the row is still at hand; in memory it lies before its copy.
  if (view_.InPlace()) std::memcpy(view_.Target(row), view_.Target(row - 1), bitmap_->BytesPerLine);
  view_.Store(row);
}

}  // namespace vn
