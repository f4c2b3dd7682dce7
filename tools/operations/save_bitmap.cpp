#include "tools/operations/save_bitmap.h"

#include "color/palettes.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "tools/formats/samples.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {

PictureInfo InfoOf(BitmapHandle* bitmap) {
  PictureInfo info;
  info.width = bitmap->Width;
  info.height = bitmap->Height;
  info.bits = bitmap->BitsPerPixel <= 8 ? bitmap->BitsPerPixel : 24;
  info.xDotsPerInch = bitmap->XResolution;
  info.yDotsPerInch = bitmap->YResolution;
  if (info.bits <= 8) {
    info.colors.resize(static_cast<size_t>(bitmap->ColorCount));
    const auto count = static_cast<uint32_t>(bitmap->ColorCount);
    // A user's palette may have fewer entries than the depth; what no pixel uses stays black.
    if (Vn_GetPaletteEntries(ActivePalette(*bitmap), 0, count, info.colors.data()) == 0) {
      throw Failure("the picture has no palette");
    }
  }
  return info;
}

void SaveBitmap(BitmapHandle* bitmap, PictureSink& sink) {
  const BitmapLock lock(bitmap);
  const auto width = static_cast<uint32_t>(bitmap->Width);
  const auto bits = static_cast<uint32_t>(bitmap->BitsPerPixel);
  const uint32_t stride = bitmap->BytesPerLine;
  const bool convert = bits > 8 && (bits != 24 || bitmap->ColorOrder != ORDER_BGR);
  std::vector<uint8_t> row(Vn_CalcConvertSize(width, bits, width, 24));
  Progress progress(static_cast<uint32_t>(bitmap->Height));
  RequireGoOn(progress.Begin());
  for (int32_t line = 0; line < bitmap->Height; ++line) {
    ThrowIfInterrupted();
    const auto at = static_cast<uint32_t>(StorageRow(*bitmap, line));
    const int32_t got = Vn_GetBitmapRow(bitmap, row.data(), at, stride);
    if (got < 0 || static_cast<uint32_t>(got) != stride) throw Failure(StatusText(ERR_FILE_READ));
    if (convert) {
      Vn_ConvertBuffer(row.data(), width, bits, 24, bitmap->ColorOrder, ORDER_BGR, nullptr,
                       nullptr);
    }
    ClearBehind(row.data(), bitmap->Width, bitmap->BitsPerPixel);
    sink.WriteRow(row.data());
    RequireGoOn(progress.Step());
  }
}

}  // namespace vn::tool
