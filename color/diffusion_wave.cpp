#include "color/diffusion_wave.h"

#include "color/dither_filters.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// Smaller pictures are done before a group gets going.
constexpr uint64_t kLeastWidth = 32, kLeastHeight = 6;
constexpr uint64_t kMostWidth = 1 << 24;

constexpr size_t kAhead = 32;  // bytes before the first line, for pixels that are skipped

// The memory: the lines' pixels, their indexes, and the sums between the groups.
struct Layout {
  size_t line;  // pixels from a line to the next
  size_t row;   // sums from a row to the next
  size_t rows;  // of all channels

  Layout(size_t width, int32_t method)
      : line((width + kWaveMargin + 15) / 16 * 16),
        row((width + 2 * kWaveMargin + 15) / 16 * 16),
        rows(3 * static_cast<size_t>(kDiffusionFilters[method].rows)) {}
  size_t Pixels() const { return kAhead + 3 * line * kWaveLines; }
  size_t Indexes() const { return line * kWaveLines; }
  size_t Bytes() const { return Pixels() + Indexes() + row * rows * sizeof(int16_t); }
};

WaveLoop* LoopFor([[maybe_unused]] const DiffusionWave::Form& form) {
  return VNCORE_VECTOR_FORM(nullptr, WaveLoopAvx2(form.method, form.targetBits));
}

}  // namespace

uint64_t DiffusionWave::MemoryFor(const Form& form) {
  if (form.width < kLeastWidth || form.width > kMostWidth || form.height < kLeastHeight) return 0;
  return LoopFor(form) ? Layout(static_cast<size_t>(form.width), form.method).Bytes() : 0;
}

DiffusionWave::DiffusionWave(const Form& form, uint8_t* memory)
    : loop_(LoopFor(form)),
      read_(SelectColorRow(form.sourceBits, 24, form.swap)),
      colors_(form.colors),
      write_(SelectWriteIndexes(form.targetBits)),
      pixels_(memory + kAhead) {
  const auto width = static_cast<size_t>(form.width);
  const Layout layout(width, form.method);
  group_.pixels = pixels_;
  group_.pixelStride = static_cast<ptrdiff_t>(3 * layout.line);
  group_.indexes = memory + layout.Pixels();
  group_.indexStride = static_cast<ptrdiff_t>(layout.line);
  group_.width = width;
  auto* sums = reinterpret_cast<int16_t*>(group_.indexes + layout.Indexes()) + kWaveMargin;
  for (auto& channel : group_.aimed) {
    for (size_t row = 0; row < layout.rows / 3; ++row, sums += layout.row)
      channel[row] = sums;
  }
}

void DiffusionWave::Put(uint32_t line, const uint8_t* source, uint32_t first) {
  // Pixels that are skipped go to the margin before the line.
  uint8_t* const to = pixels_ + group_.pixelStride * static_cast<ptrdiff_t>(line);
  read_(source, to - 3 * size_t{first}, group_.width + first, colors_);
}

void DiffusionWave::Take(uint32_t line, uint8_t* target) const {
  write_(group_.indexes + group_.indexStride * static_cast<ptrdiff_t>(line), group_.width, target);
}

}  // namespace vn
