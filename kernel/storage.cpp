// Allocating and freeing the three kinds of storage: mapped section, global memory, temporary file.
#include <cstring>

#include "kernel/mapped_section.h"
#include "kernel/picture_size.h"
#include "kernel/scratch_buffer.h"
#include "kernel/thread_settings.h"
#include "region/region_record.h"

namespace vn {
namespace {

constexpr uint32_t kGlobalMemorySlack = 16;  // bytes behind the pixels in global memory

bool IsStorageRequest(int32_t request) {
  return request == STORAGE_AUTO || request == STORAGE_DISK || request == STORAGE_MEMORY;
}

void MarkInMemory(BitmapHandle* bitmap) {
  bitmap->Flags = (bitmap->Flags & ~uint32_t{FLAG_LOCKED}) | FLAG_IN_MEMORY | FLAG_ALLOCATED;
}

bool AllocateSection(BitmapHandle* bitmap) {
  MappedSection section(bitmap->DataSize);
  if (!section) return false;
  section.ReleaseTo(&bitmap->Storage, &bitmap->Bits);
  MarkInMemory(bitmap);
  return true;
}

bool AllocateGlobal(BitmapHandle* bitmap) {
  // What a 32-bit size cannot tell cannot be had either.
  if (bitmap->DataSize > 0xFFFFFFFFu - kGlobalMemorySlack) return false;
  const HGLOBAL memory =
      GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, bitmap->DataSize + kGlobalMemorySlack);
  if (!memory) return false;
  bitmap->Storage = memory;
  bitmap->Bits = nullptr;
  MarkInMemory(bitmap);
  return true;
}

// The temporary file while it is being made: closed and deleted again unless it was kept.
class TemporaryFile {
 public:
  explicit TemporaryFile(const char* name) : name_(name), file_(Vn_OsCreat(name, 0)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!name_) return;
    if (file_ != INVALID_HANDLE_VALUE) Vn_OsClose(file_);
    Vn_OsDelete(name_);
  }
  HANDLE get() const { return file_; }
  HANDLE Keep() {
    name_ = nullptr;
    return file_;
  }

 private:
  const char* name_;
  HANDLE file_;
};

// One byte written behind the last pixel gives the file its full size.
VnStatus AllocateFile(BitmapHandle* bitmap) {
  bitmap->Storage = INVALID_HANDLE_VALUE;
  char found[MAX_PATH];
  Vn_OsGetTempName(found);
  const std::size_t bytes = std::strlen(found) + 1;
  ScratchBuffer<char> name(bytes);
  if (!name) return ERR_NO_MEMORY;  // the empty file stays behind
  std::memcpy(name.data(), found, bytes);

  TemporaryFile file(name.data());
  if (file.get() == INVALID_HANDLE_VALUE) return ERR_NO_MEMORY;
  if (Vn_OsSeek(file.get(), static_cast<int32_t>(bitmap->DataSize), 0) != bitmap->DataSize) {
    return ERR_NO_MEMORY;
  }
  const uint8_t zero = 0;
  if (Vn_OsWrite(file.get(), &zero, 1) != 1) return ERR_FILE_WRITE;
  Vn_OsSeek(file.get(), 0, 0);
  bitmap->Storage = file.Keep();
  bitmap->Bits = reinterpret_cast<uint8_t*>(name.Release());
  bitmap->Flags |= FLAG_ON_DISK | FLAG_ALLOCATED;
  return OK;
}

void FreeAttachments(BitmapHandle* bitmap) {
  if (bitmap->Region) FreeRegionRecord(bitmap->Region);
  bitmap->Region = nullptr;
  if (bitmap->PaintPalette) DeleteObject(bitmap->PaintPalette);
  bitmap->PaintPalette = nullptr;
  if (bitmap->Palette) DeleteObject(bitmap->Palette);
  bitmap->Palette = nullptr;
}

void FreeMemory(BitmapHandle* bitmap) {
  Vn_ReleaseBitmap(bitmap);
  if (OnWin32s()) {
    GlobalFree(bitmap->Storage);
  } else {
    MappedSection::Free(bitmap->Storage, bitmap->Bits);
  }
  bitmap->Flags &= ~uint32_t{FLAG_IN_MEMORY | FLAG_ALLOCATED};
}

void FreeFile(BitmapHandle* bitmap) {
  auto* name = reinterpret_cast<char*>(bitmap->Bits);
  Vn_OsClose(bitmap->Storage);
  Vn_OsDelete(name);
  Vn_OsFree(name);
  bitmap->Flags &= ~uint32_t{FLAG_ON_DISK};
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_AllocateBitmap(BitmapHandle* bitmap, int32_t request) {
  if (bitmap->DataSize == 0) return ERR_EMPTY_BITMAP;
  if (!vn::IsStorageRequest(request)) return ERR_INVALID_PARAMETER;
  if (!vn::SizeFits(bitmap->Width, bitmap->Height, bitmap->BitsPerPixel)) return ERR_NO_MEMORY;
  if (!vn::OnWin32s()) return vn::AllocateSection(bitmap) ? OK : ERR_NO_MEMORY;
  if (request != STORAGE_DISK) {
    if (vn::AllocateGlobal(bitmap)) return OK;
    if (request == STORAGE_MEMORY) return ERR_NO_MEMORY;
  }
  return vn::AllocateFile(bitmap);
}

void VN_CALL Vn_FreeBitmap(BitmapHandle* bitmap) {
  vn::FreeAttachments(bitmap);
  if (!(bitmap->Flags & FLAG_ALLOCATED)) return;
  if (bitmap->Flags & FLAG_IN_MEMORY) return vn::FreeMemory(bitmap);
  if (bitmap->Flags & FLAG_ON_DISK) vn::FreeFile(bitmap);
  bitmap->Flags &= ~uint32_t{FLAG_ALLOCATED};
}

VnStatus VN_CALL Vn_FreeImage(BitmapHandle* bitmap, int32_t freeAttachments) {
  if (!(bitmap->Flags & FLAG_ALLOCATED)) return OK;
  if (!freeAttachments) {
    bitmap->PaintPalette = nullptr;
    bitmap->Palette = nullptr;
    bitmap->Region = nullptr;
  }
  Vn_FreeBitmap(bitmap);
  return OK;
}
