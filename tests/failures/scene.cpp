// What a failure row works on, and how it is compared.
#include <cstring>

#include "region/region_record.h"
#include "tests/failures/failure_rows.h"
#include "tests/support/screen.h"

namespace vn::test {
namespace {

constexpr uint32_t kColumns = 40, kRows = 12;

void Append(Bytes* to, const void* data, size_t size) {
  const auto* from = static_cast<const uint8_t*>(data);
  to->insert(to->end(), from, from + size);
}

// The plain fields: no handles, which other scenes have others of, no cache, and not the kind of
// storage, since a file may stand in for memory.
Bytes RecordBytes(BitmapHandle record) {
  record.Flags &= ~uint32_t{FLAG_IN_MEMORY | FLAG_ON_DISK};
  record.Storage = nullptr;
  record.Bits = nullptr;
  record.CurrentOffset = record.CurrentRow = 0;
  record.Palette = record.PaintPalette = nullptr;
  record.Region = nullptr;
  record.DitherState = nullptr;
  Bytes bytes;
  Append(&bytes, &record, sizeof record);
  return bytes;
}

Bytes PixelBytes(BitmapHandle* bitmap) {
  return bitmap->Flags & FLAG_ALLOCATED ? ReadAll(bitmap) : Bytes();
}

Bytes PaletteBytes(const BitmapHandle* bitmap) {
  Bytes bytes;
  for (const HPALETTE palette : {bitmap->Palette, bitmap->PaintPalette}) {
    Colors entries(256);
    const uint32_t count = Vn_GetPaletteEntries(palette, 0, 256, entries.data());
    Append(&bytes, &count, sizeof count);
    Append(&bytes, entries.data(), count * sizeof(RGBQUAD));
  }
  return bytes;
}

Bytes RegionBytes(BitmapHandle* bitmap) {
  Bytes bytes;
  if (!bitmap->Region) return bytes;
  Append(&bytes, &bitmap->Region->header, sizeof(RGNDATAHEADER));
  for (const RECT& rect : *bitmap->Region)
    Append(&bytes, &rect, sizeof rect);
  return bytes;
}

Bytes RectBytes(HRGN region) {
  Bytes bytes(region ? GetRegionData(region, 0, nullptr) : 0);
  std::vector<uint32_t> words(bytes.size() / 4 + 1);  // aligned
  if (region) GetRegionData(region, bytes.size(), (RGNDATA*)words.data());
  if (!bytes.empty()) std::memcpy(bytes.data(), words.data(), bytes.size());
  return bytes;
}

}  // namespace

Scene::Scene(int32_t bits, const StorageKind& storage) : kind(storage), display_(8) {
  Random random(71);
  colors = RandomColors(random, 256);
  EXPECT_EQ(Vn_CreateBitmap(bitmap, kind.request, kColumns, kRows, bits, ORDER_BGR, colors.data(),
                            VIEW_BOTTOM_FIRST),
            OK);
  FillRandom(bitmap, random);
  EXPECT_EQ(Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, REGION_COMBINE_REPLACE), OK);
  // The region's cache is full: copies duplicate it.
  HRGN cached = nullptr;
  EXPECT_EQ(Vn_GetBitmapRgnHandle(bitmap, nullptr, &cached), OK);
  DeleteObject(cached);
}

Scene::~Scene() {
  if (block) Vn_OsFree(block);
  if (file != INVALID_HANDLE_VALUE) Vn_OsClose(file);
}

VnStatus Scene::Keep(HPALETTE made) {
  palette = OwnedObject<HPALETTE>(made);
  return made ? OK : ERR_NO_MEMORY;
}
VnStatus Scene::Keep(HRGN made) {
  region = OwnedObject<HRGN>(made);
  return made ? OK : ERR_NO_MEMORY;
}
VnStatus Scene::Keep(void* made) {
  block = made;
  return made ? OK : ERR_NO_MEMORY;
}

std::array<Bytes, kPartCount> Scene::Print() {
  Bytes second = RecordBytes(*result.get());
  for (const Bytes& part : {PixelBytes(result), PaletteBytes(result), RegionBytes(result)})
    Append(&second, part.data(), part.size());
  Bytes made = bytes;
  const Bytes rects = RectBytes(region.get());
  Append(&made, rects.data(), rects.size());
  Colors entries(256);
  const uint32_t count = Vn_GetPaletteEntries(palette.get(), 0, 256, entries.data());
  Append(&made, entries.data(), count * sizeof(RGBQUAD));
  return {RecordBytes(*bitmap.get()),
          PixelBytes(bitmap),
          PaletteBytes(bitmap),
          RegionBytes(bitmap),
          second,
          made,
          ScreenBytes()};
}

}  // namespace vn::test
