#include "tools/operations/best_palette.h"

#include "tools/terminal/failure.h"

#ifdef VNCORE_TOOL_IMAGEQUANT

#include <libimagequant.h>

#include <memory>

#include "kernel/guards.h"
#include "kernel/pixel_format.h"
#include "tools/formats/destroyer.h"
#include "tools/operations/save_bitmap.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

// Rows of a locked bitmap for the library, which may ask for each several times.
class QuantRows {
 public:
  explicit QuantRows(BitmapHandle* bitmap)
      : bitmap_(bitmap),
        lock_(bitmap),
        info_(InfoOf(bitmap)),
        row_(Vn_CalcConvertSize(bitmap->Width, bitmap->BitsPerPixel, bitmap->Width, 24)) {}

  static void Give(liq_color* out, int line, int width, void* user) {
    auto* const rows = static_cast<QuantRows*>(user);
    BitmapHandle* const bitmap = rows->bitmap_;
    const auto columns = static_cast<uint32_t>(width);
    Vn_GetBitmapRow(bitmap, rows->row_.data(), static_cast<uint32_t>(line), bitmap->BytesPerLine);
    Vn_ConvertBuffer(rows->row_.data(), columns, bitmap->BitsPerPixel, 24, bitmap->ColorOrder,
                     ORDER_BGR, rows->info_.colors.data(), nullptr);
    for (uint32_t x = 0; x < columns; ++x) {
      const Rgb color = ColorReader<24, ORDER_BGR>::Get(rows->row_.data(), x);
      out[x] = {static_cast<uint8_t>(color.red), static_cast<uint8_t>(color.green),
                static_cast<uint8_t>(color.blue), 255};
    }
  }

 private:
  BitmapHandle* bitmap_;
  const BitmapLock lock_;
  const PictureInfo info_;
  std::vector<uint8_t> row_;
};

void Require(liq_error error) {
  ThrowIfInterrupted();
  if (error != LIQ_OK) throw Failure("--palette best: libimagequant cannot do this picture");
}

int HearSignals(float, void*) { return PendingSignal() == 0; }

}  // namespace

std::vector<RGBQUAD> BestPalette(BitmapHandle* bitmap, uint32_t count) {
  const std::unique_ptr<liq_attr, Destroyer<&liq_attr_destroy>> attributes(liq_attr_create());
  if (!attributes) throw std::bad_alloc();
  Require(liq_set_max_colors(attributes.get(), static_cast<int>(count)));
  liq_attr_set_progress_callback(attributes.get(), &HearSignals, nullptr);
  QuantRows rows(bitmap);
  const std::unique_ptr<liq_image, Destroyer<&liq_image_destroy>> image(liq_image_create_custom(
      attributes.get(), &QuantRows::Give, &rows, bitmap->Width, bitmap->Height, 0));
  if (!image) Require(LIQ_OUT_OF_MEMORY);
  liq_result* found = nullptr;
  Require(liq_image_quantize(image.get(), attributes.get(), &found));
  const std::unique_ptr<liq_result, Destroyer<&liq_result_destroy>> result(found);
  const liq_palette* const palette = liq_get_palette(result.get());
  std::vector<RGBQUAD> colors;
  for (unsigned i = 0; i < palette->count; ++i)
    colors.push_back({palette->entries[i].b, palette->entries[i].g, palette->entries[i].r, 0});
  return colors;
}

}  // namespace vn::tool

#else

namespace vn::tool {

std::vector<RGBQUAD> BestPalette(BitmapHandle*, uint32_t) {
  throw Failure("--palette best: this vncore was built without libimagequant");
}

}  // namespace vn::tool

#endif
