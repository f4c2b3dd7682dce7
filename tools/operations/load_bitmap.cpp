#include "tools/operations/load_bitmap.h"

#include "kernel/guards.h"
#include "kernel/progress.h"
#include "tools/operations/geometry_operations.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

void RequireMoved(int32_t moved, uint32_t wanted) {
  if (moved < 0) throw Failure(StatusText(moved));
  // A temporary file gives and takes less at the end of its disk only.
  if (static_cast<uint32_t>(moved) != wanted) throw Failure(StatusText(ERR_FILE_WRITE));
}

void ReadRows(PictureSource& source, Bitmap& bitmap) {
  const BitmapLock lock(bitmap);
  const uint32_t stride = bitmap->BytesPerLine;
  std::vector<uint8_t> row(stride);
  const int64_t deliveries = source.Deliveries();
  Progress progress(static_cast<uint32_t>(deliveries));
  RequireGoOn(progress.Begin());
  for (int64_t i = 0; i < deliveries; ++i) {
    ThrowIfInterrupted();
    const auto at = static_cast<uint32_t>(StorageRow(*bitmap.get(), source.NextLine()));
    if (source.Merges()) RequireMoved(Vn_GetBitmapRow(bitmap, row.data(), at, stride), stride);
    source.ReadRow(row.data());
    RequireMoved(Vn_PutBitmapRow(bitmap, row.data(), at, stride), stride);
    RequireGoOn(progress.Step());
  }
}

}  // namespace

void LoadBitmap(PictureSource& source, int32_t storage, Bitmap& bitmap) {
  const PictureInfo& info = source.Info();
  // Top line first: files then arrive in the order of the storage, which a temporary file likes.
  const VnStatus created = Vn_CreateBitmap(
      bitmap, storage, static_cast<uint32_t>(info.width), static_cast<uint32_t>(info.height),
      info.bits, ORDER_BGR, info.bits <= 8 ? info.colors.data() : nullptr, VIEW_TOP_FIRST);
  if (created != OK) throw Failure(StatusText(created));
  // 0 where the file does not tell: what it is written to does not either.
  const bool told = info.xDotsPerInch > 0 && info.yDotsPerInch > 0;
  bitmap->XResolution = told ? info.xDotsPerInch : 0;
  bitmap->YResolution = told ? info.yDotsPerInch : 0;
  ReadRows(source, bitmap);
  source.Finish();
  TurnUpright(bitmap, info.orientation);
}

}  // namespace vn::tool
