// A new number of rows for a bitmap with pixels.
#include <algorithm>
#include <cstring>

#include "kernel/mapped_section.h"
#include "kernel/picture_size.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

bool ResizeSection(BitmapHandle* bitmap, uint32_t size) {
  MappedSection section(size);
  if (!section) return false;
  std::memcpy(section.view(), bitmap->Bits, std::min(size, bitmap->DataSize));
  MappedSection::Free(bitmap->Storage, bitmap->Bits);
  section.ReleaseTo(&bitmap->Storage, &bitmap->Bits);
  return true;
}

bool ResizeGlobal(BitmapHandle* bitmap, uint32_t size) {
  const HGLOBAL memory = GlobalReAlloc(bitmap->Storage, size, GMEM_MOVEABLE);
  if (!memory) return false;
  bitmap->Storage = memory;
  return true;
}

// The spare byte that gave the file its first size is not needed to change it.
bool ResizeFile(BitmapHandle* bitmap, uint32_t size) {
  return Vn_OsSeek(bitmap->Storage, static_cast<int32_t>(size), 0) == size &&
         SetEndOfFile(bitmap->Storage);
}

bool ResizeStorage(BitmapHandle* bitmap, uint32_t size) {
  if (!OnWin32s()) return ResizeSection(bitmap, size);
  return bitmap->Flags & FLAG_IN_MEMORY ? ResizeGlobal(bitmap, size) : ResizeFile(bitmap, size);
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_ChangeBitmapHeight(BitmapHandle* bitmap, uint32_t newHeight) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  if (bitmap->Flags & FLAG_LOCKED) return ERR_INVALID_PARAMETER;
  if (newHeight == static_cast<uint32_t>(bitmap->Height)) return OK;
  const auto height = static_cast<int32_t>(newHeight);
  const uint32_t size = bitmap->BytesPerLine * newHeight;
  // No kind of storage holds no rows at all.
  if (size == 0 || !vn::SizeFits(bitmap->Width, height, bitmap->BitsPerPixel) ||
      !vn::ResizeStorage(bitmap, size)) {
    return ERR_NO_MEMORY;
  }
  bitmap->Height = height;
  bitmap->DataSize = size;
  bitmap->DibHeader.biHeight = bitmap->Height;
  bitmap->DibHeader.biSizeImage = size;
  bitmap->CurrentRow = 0;
  bitmap->CurrentOffset = 0;
  return OK;
}
