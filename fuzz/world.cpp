#include "fuzz/world.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <vncore/platform/headless/headless.h>
#include "kernel/picture_size.h"

namespace vn::fuzz {

namespace {

constexpr std::initializer_list<int32_t> kDepths = {1, 4, 8, 16, 24, 32};
// What thousands of inputs a second can afford; wide rows are worth more than many.
constexpr uint32_t kMostBytes = 1 << 14, kMostInRow = 1 << 17;
constexpr int32_t kMostRowsOnWin32s = 1 << 14;

Headless_Counts counts;

}  // namespace

World::World(bool win32s) : win32s_(win32s) {
  const Headless_Display display = {64, 48, 24, 0, 20, DT_RASDISPLAY, 96};
  Headless_SetDisplay(&display);
  Headless_SetVersion(win32s ? HEADLESS_VERSION_WIN32S : HEADLESS_VERSION_WIN32);
  Headless_SetLargestBlock(win32s ? 1 << 16 : 1 << 26);
  Headless_SetFreeMemory(uint64_t{1} << 34);
  if (!Headless_Restart()) std::abort();
  Vn_GetDisplayMode();  // the thread's settings exist before anything is counted
  Headless_GetCounts(&counts);
}

World::~World() {
  Vn_SetStatusCallBack(nullptr);
  ReleaseDevice();
  if (OpenClipboard(nullptr)) {
    EmptyClipboard();
    CloseClipboard();
  }
  for (BitmapHandle& bitmap : bitmaps_)
    Vn_FreeBitmap(&bitmap);
  for (const HGDIOBJ object : objects_)
    DeleteObject(object);
  for (uint32_t* const table : tables_)
    Vn_FreeUserMatchTable(table);
  Headless_Counts now;
  Headless_GetCounts(&now);
  if (std::memcmp(&now, &counts, sizeof now) == 0) return;
  std::fprintf(stderr,
               "left alive: %u blocks, %u mappings, %u views, %u files, %u objects, %u contexts\n",
               now.globalBlocks - counts.globalBlocks, now.mappings - counts.mappings,
               now.views - counts.views, now.files - counts.files, now.objects - counts.objects,
               now.contexts - counts.contexts);
  std::abort();
}

void World::Lose() { ++counts.objects; }

BitmapHandle* World::Fresh() {
  BitmapHandle* const bitmap = &bitmaps_[fresh_++ % kBitmaps];
  Vn_FreeBitmap(bitmap);
  *bitmap = {};
  return bitmap;
}

Size World::TakeSize(Input& input, int32_t bits, int32_t least) {
  const auto width = static_cast<uint32_t>(input.Number());
  const auto height = static_cast<uint32_t>(input.Number());
  if (bits < 1 || bits > 32) bits = 8;  // which 0 stands for
  const uint64_t stride = (uint64_t{width} * static_cast<uint32_t>(bits) + 31) / 32 * 4;
  // Impossible ones are left to the library.
  const bool possible =
      SizeFits(static_cast<int32_t>(width), static_cast<int32_t>(height), least ? least : bits);
  if (!possible || stride * height <= kMostBytes) return {width, height};
  if (stride > kMostInRow) return {kMostInRow * 8 / static_cast<uint32_t>(bits), 1};
  return {width, static_cast<uint32_t>(std::max<uint64_t>(kMostBytes / stride, 1))};
}

void World::Create(Input& input) {
  BitmapHandle* const bitmap = Fresh();
  Make(input, bitmap);
  // A region takes a rectangle a row there, of a record without storage too.
  if (win32s_) bitmap->Height = std::min(bitmap->Height, kMostRowsOnWin32s);
}

void World::Make(Input& input, BitmapHandle* bitmap) {
  const uint8_t kind = input.Byte();
  const int32_t bits = kind & 1 ? input.Number() : input.OneOf(kDepths);
  const Size size = TakeSize(input, bits);
  if (kind & 2) {
    // A record without storage, now and then.
    Vn_InitBitmap(bitmap, size.width, size.height, bits);
    if (kind & 4) return;
    if (kind & 8) Vn_AllocateBitmap(bitmap, STORAGE_AUTO);
  } else {
    const int32_t storage = input.OneOf({STORAGE_AUTO, STORAGE_DISK, STORAGE_MEMORY, 0});
    Vn_CreateBitmap(bitmap, storage, size.width, size.height, bits,
                    kind & 4 ? ORDER_RGB : ORDER_BGR, kind & 8 ? Colors(input) : nullptr,
                    kind & 16 ? VIEW_TOP_FIRST : VIEW_BOTTOM_FIRST);
  }
  Scribble(input, bitmap);
}

void World::Scribble(Input& input, BitmapHandle* bitmap) {
  if (!(bitmap->Flags & FLAG_ALLOCATED) || bitmap->DataSize > 2 * kMostInRow) return;
  const auto rows = Buffer(input, bitmap->DataSize);
  const int32_t state = Vn_LockBitmap(bitmap);
  Vn_PutBitmapRow(bitmap, rows.get(), 0, bitmap->DataSize);  // all of them, in one move
  Vn_UnlockBitmap(bitmap, state);
}

const RGBQUAD* World::Colors(Input& input) {
  const uint8_t kind = input.Byte();
  input.Fill(colors_, sizeof colors_);
  for (uint32_t i = 0; i < 256; ++i) {
    RGBQUAD& color = colors_[i];
    if (!(kind & 1)) color.rgbReserved = 0;
    if (kind & 2) color.rgbRed = color.rgbGreen = color.rgbBlue;
    // A ramp, rising or falling, of 256 entries or of 16 or 2.
    if (kind & 4) {
      const uint32_t steps = kind & 8 ? 255 : kind & 16 ? 15 : 1;
      const auto level = static_cast<BYTE>(std::min(i, steps) * 255 / steps);
      color.rgbRed = color.rgbGreen = color.rgbBlue =
          kind & 32 ? static_cast<BYTE>(255 - level) : level;
    }
  }
  return colors_;
}

HPALETTE World::Palette(Input& input) {
  switch (input.Below(4)) {
    case 0:
      return nullptr;
    case 1:
      return Bitmap(input)->Palette;
    case 2: {
      const RGBQUAD* const colors = Colors(input);
      Keep(Vn_CreatePalette(colors, input.Below(256) + 1));
      break;
    }
    default:
      break;
  }
  return static_cast<HPALETTE>(AnyObject(input));
}

HGDIOBJ World::AnyObject(Input& input) {
  const size_t which = input.Byte();
  return objects_.empty() ? nullptr : objects_[which % objects_.size()];
}

HRGN World::Region(Input& input) {
  const uint32_t kind = input.Below(5);
  if (kind == 0) return nullptr;
  if (kind == 1) return static_cast<HRGN>(AnyObject(input));
  RECT box;
  box.left = input.Number();
  box.top = input.Number();
  box.right = input.Number();
  box.bottom = input.Number();
  HRGN region = kind == 2 ? CreateEllipticRgnIndirect(&box) : CreateRectRgnIndirect(&box);
  if (kind == 4) {
    const int32_t x = input.Number(), y = input.Number();
    OffsetRgn(region, x, y);
  }
  Keep(region);
  return region;
}

void World::ReleaseDevice() {
  if (!device_) return;
  if (surface_) {
    DeleteDC(device_);
    DeleteObject(surface_);
  } else {
    ReleaseDC(nullptr, device_);
  }
  device_ = nullptr;
  surface_ = nullptr;
}

HDC World::Device(Input& input) {
  ReleaseDevice();
  const uint8_t kind = input.Byte();
  if ((kind & 7) == 7) return nullptr;
  const int32_t bits = input.OneOf(kDepths);
  if (kind & 1) {
    device_ = CreateCompatibleDC(nullptr);
    surface_ = CreateBitmap(input.Between(1, 99), input.Between(1, 70), 1, static_cast<UINT>(bits),
                            nullptr);
    SelectObject(device_, surface_);
    return device_;
  }
  const int32_t technology = kind & 16 ? DT_RASPRINTER : kind & 32 ? DT_METAFILE : DT_RASDISPLAY;
  const Headless_Display display = {99,         70, bits, kind & 8 && bits == 8, kind & 64 ? 0 : 20,
                                    technology, 96};
  Headless_SetDisplay(&display);
  return device_ = GetDC(nullptr);
}

void World::Keep(HGDIOBJ object) {
  if (object) objects_.push_back(object);
}

}  // namespace vn::fuzz
