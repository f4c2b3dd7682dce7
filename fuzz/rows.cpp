// Bitmaps and rows: records, storage, rows, copies, single pixels, the system layer.
#include "fuzz/calls.h"

#include <cstring>

#include "kernel/process.h"

namespace vn::fuzz {

namespace {

void Allocate(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  if (bitmap->Flags & FLAG_ALLOCATED) return;
  Vn_AllocateBitmap(bitmap, input.OneOf({STORAGE_AUTO, STORAGE_DISK, STORAGE_MEMORY, 3}));
}

void ChangeHeight(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const Size size = world.TakeSize(input, bitmap->BitsPerPixel);
  const uint64_t bytes = uint64_t{bitmap->BytesPerLine} * size.height;
  if (bytes > 1 << 20 && bytes <= 0xFFFFFFFFu) return;
  Vn_ChangeBitmapHeight(bitmap, size.height);
  World::Scribble(input, bitmap);
}

// A row, or a part of one. The caller answers for row and count, and locks what has no address yet.
void MoveRow(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  if (bitmap->Flags & FLAG_ALLOCATED && (bitmap->Width < 1 || bitmap->Height < 1)) return;
  const auto row = static_cast<uint32_t>(input.Between(0, std::max(bitmap->Height, 1) - 1));
  const auto column = static_cast<uint32_t>(input.Between(0, std::max(bitmap->Width, 1) - 1));
  const uint64_t first = uint64_t{column} * static_cast<uint32_t>(bitmap->BitsPerPixel) / 8;
  if (first > bitmap->BytesPerLine) return;
  const auto left = static_cast<int32_t>(bitmap->BytesPerLine - first);
  const auto count = static_cast<uint32_t>(input.Between(0, left));
  if (count > 1 << 20) return;
  const auto buffer = Buffer(input, count);
  const int32_t state = input.Flag() || !bitmap->Bits ? Vn_LockBitmap(bitmap) : 1;
  switch (input.Below(3)) {
    case 0:
      Vn_GetBitmapRowCol(bitmap, buffer.get(), row, column, count);
      break;
    case 1:
      Vn_PutBitmapRowCol(bitmap, buffer.get(), row, column, count);
      break;
    default:
      Vn_GetBitmapRow(bitmap, buffer.get(), row, count);
      Vn_PutBitmapRow(bitmap, buffer.get(), row, count);
      break;
  }
  Vn_UnlockBitmap(bitmap, state);
}

// A record is moved by copying it: the source must not free what went along.
void MoveRecord(World& world, Input& input) {
  BitmapHandle* const source = world.Bitmap(input);
  BitmapHandle* const target = world.Fresh();
  if (target == source) return;
  Vn_CopyBitmapHandle(target, source);
  *source = {};
}

void Duplicate(World& world, Input& input) {
  BitmapHandle* const source = world.Bitmap(input);
  BitmapHandle* const target = world.Fresh();
  if (target == source) return;
  const uint32_t mode = input.Below(8);
  const int32_t bits = input.Number();
  const Size size = world.TakeSize(input, bits);
  const VnStatus status = Vn_DupBitmapNewDim(target, source, size.width, size.height, bits, mode);
  if (status == OK) World::Scribble(input, target);
  // What it shares stays the source's.
  if (!(mode & DUP_PALETTE)) target->Palette = target->PaintPalette = nullptr;
  if (!(mode & DUP_REGION)) target->Region = nullptr;
}

void Copy(World& world, Input& input) {
  BitmapHandle* const source = world.Bitmap(input);
  BitmapHandle* const target = world.Fresh();
  if (target != source) Vn_CopyBitmap(target, source);
}

void CopyRect(World& world, Input& input) {
  BitmapHandle* const source = world.Bitmap(input);
  BitmapHandle* const target = world.Fresh();
  // The rectangle is the caller's to answer for.
  if (target == source || source->Width < 0 || source->Height < 0) return;
  const auto left = static_cast<uint32_t>(input.Between(0, source->Width));
  const auto top = static_cast<uint32_t>(input.Between(0, source->Height));
  const int32_t width = input.Between(0, source->Width - static_cast<int32_t>(left));
  const int32_t height = input.Between(0, source->Height - static_cast<int32_t>(top));
  Vn_CopyBitmapRect(target, source, left, top, static_cast<uint32_t>(width),
                    static_cast<uint32_t>(height));
}

// What is handed on comes back here.
void FreeImage(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const BitmapHandle before = *bitmap;
  const int32_t attachments = input.Number();
  Vn_FreeImage(bitmap, attachments);
  if (attachments) return;
  bitmap->Palette = before.Palette;
  bitmap->PaintPalette = before.PaintPalette;
  bitmap->Region = before.Region;
}

void Memory(World&, Input& input) {
  const auto first = static_cast<uint32_t>(input.Number());
  const uint32_t kind = input.Below(3);
  void* const block = kind < 2 ? Vn_OsAllocInit(first, kind) : Vn_OsAlloc(first);
  if (!block) return;
  const auto size = static_cast<uint32_t>(input.Number());
  if (size > 1 << 20) {
    Vn_OsFree(block);
    return;
  }
  void* const other = Vn_OsReAlloc(block, size);
  if (other) std::memset(other, 1, size);
  Vn_OsFree(other ? other : block);
}

// A file of its own, a few operations long, directly or through the thread's slots.
void Files(World&, Input& input) {
  char name[MAX_PATH];
  Vn_OsGetTempName(name);
  const auto access = static_cast<uint32_t>(input.Number());
  const auto share = static_cast<uint32_t>(input.Number());
  const HANDLE file = input.Flag()   ? Vn_OsCreat(name, access)
                      : input.Flag() ? Vn_OsOpen(name, access, share)
                                     : Vn_RedirectedOpen(name, access, share);
  for (uint32_t left = input.Below(6); left > 0; --left) {
    const size_t count = input.Byte();
    const auto buffer = Buffer(input, count);
    switch (input.Below(5)) {
      case 0:
        Vn_OsRead(file, buffer.get(), static_cast<uint32_t>(count));
        break;
      case 1:
        Vn_OsWrite(file, buffer.get(), static_cast<uint32_t>(count));
        break;
      case 2:
        Vn_RedirectedRead(file, buffer.get(), static_cast<uint32_t>(count));
        break;
      case 3:
        Vn_RedirectedWrite(file, buffer.get(), static_cast<uint32_t>(count));
        break;
      default: {
        const int32_t offset = input.Number();
        if (input.Flag()) {
          Vn_OsSeek(file, offset, static_cast<int32_t>(input.Below(4)));
        } else {
          Vn_RedirectedSeek(file, offset, static_cast<int32_t>(input.Below(4)));
        }
        break;
      }
    }
  }
  if (input.Flag()) {
    Vn_OsClose(file);
  } else {
    Vn_RedirectedClose(file);
  }
  Vn_OsDelete(name);
}

HANDLE VN_CALL NoOpen(const char*, uint32_t, uint32_t) { return INVALID_HANDLE_VALUE; }

void Redirect(World&, Input& input) {
  if (input.Flag()) return Vn_RedirectIO(nullptr, nullptr, nullptr, nullptr, nullptr);
  VnOpenProc open = input.Flag() ? &NoOpen : nullptr;
  VnReadProc read = nullptr;
  Vn_FilterIO(&open, input.Flag() ? &read : nullptr, nullptr, nullptr, nullptr);
}

const Call kCalls[] = {
    &Allocate,
    &ChangeHeight,
    &MoveRow,
    &MoveRecord,
    &Duplicate,
    &Copy,
    &CopyRect,
    &Memory,
    &Files,
    &Redirect,
    &FreeImage,
    &Decoded<&Vn_AccessBitmap>,
    &Decoded<&Vn_ReleaseBitmap>,
    &Decoded<&Vn_LockBitmap>,
    &Decoded<&Vn_UnlockBitmap>,
    &Decoded<&Vn_CopyBitmapData>,
    &Decoded<&Vn_GetPixelColor>,
    &Decoded<&Vn_PutPixelColor>,
    &Decoded<&Vn_FillBitmap>,
    &Decoded<&Vn_VersionInfo>,
    &Decoded<&Vn_DefaultDithering>,
    &Decoded<&Vn_SetDefaultXResolution>,
    &Decoded<&Vn_SetDefaultYResolution>,
    &Decoded<&Vn_GetDefaultXResolution>,
    &Decoded<&Vn_GetDefaultYResolution>,
    &Decoded<&Vn_GetStatusCallBack>,
    // As by DllMain: a thread's settings go with it, and are there again for one that comes.
    [](World&, Input& input) {
      OnLoaderCall(nullptr, DLL_THREAD_DETACH);
      if (input.Flag()) OnLoaderCall(nullptr, DLL_THREAD_DETACH);
      if (!OnLoaderCall(nullptr, DLL_THREAD_ATTACH)) std::abort();
    },
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
