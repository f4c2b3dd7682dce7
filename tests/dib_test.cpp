// DIBs and device bitmaps: what is refused, and what screens of every depth show. What a bitmap becomes
// there, and what comes back, is in the numbered cases.
#include <gtest/gtest.h>

#include <cstring>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

// A DIB of the test's own: freed unless it was handed on.
class Dib {
 public:
  explicit Dib(HGLOBAL memory) : memory_(memory) {}
  // A block of exactly these bytes.
  explicit Dib(const Bytes& bytes) : memory_(GlobalAlloc(GMEM_MOVEABLE, bytes.size())) {
    std::memcpy(GlobalLock(memory_), bytes.data(), bytes.size());
    GlobalUnlock(memory_);
  }
  Dib(const Dib&) = delete;
  Dib& operator=(const Dib&) = delete;
  ~Dib() {
    if (memory_) GlobalFree(memory_);
  }
  HGLOBAL get() const { return memory_; }
  HGLOBAL Release() { return std::exchange(memory_, nullptr); }

  Bytes Copy() const {
    const auto* at = static_cast<const uint8_t*>(GlobalLock(memory_));
    if (!at) return {};
    const Bytes bytes(at, at + GlobalSize(memory_));
    GlobalUnlock(memory_);
    return bytes;
  }

 private:
  HGLOBAL memory_;
};

std::vector<COLORREF> RedAndBlueSwapped(std::vector<COLORREF> colors) {
  for (COLORREF& c : colors)
    c = RGB(GetBValue(c), GetGValue(c), GetRValue(c));
  return colors;
}

TEST(Dib, CopiesFromLockedBitmapsAndMovesOnlyOthers) {
  Bitmap bitmap(37, 11, 8);
  const int32_t state = Vn_LockBitmap(bitmap);
  EXPECT_EQ(Vn_ChangeToDIB(bitmap), nullptr);
  const Dib dib(Vn_ConvertToDIB(bitmap));
  EXPECT_NE(dib.get(), nullptr);
  EXPECT_TRUE(bitmap->Flags & FLAG_LOCKED);
  Vn_UnlockBitmap(bitmap, state);
}

HEADLESS_TEST(Dib, Win32sMovesPicturesWithinTheirBlock) {
  const Win32sScope win32s;
  Random random(7);
  Bitmap bitmap(37, 11, 8, VIEW_BOTTOM_FIRST, ORDER_BGR, nullptr, STORAGE_MEMORY);
  FillRandom(bitmap, random);
  const std::vector<COLORREF> seen = SeenColors(bitmap);
  const HANDLE block = bitmap->Storage;
  Dib dib(Vn_ChangeToDIB(bitmap));
  EXPECT_EQ(dib.get(), block);
  Bitmap back;
  ASSERT_EQ(Vn_ChangeFromDIB(back, dib.get()), OK);
  EXPECT_EQ(back->Storage, dib.Release());
  EXPECT_FALSE(back->Flags & FLAG_LOCKED);
  EXPECT_EQ(SeenColors(back), seen);
}

// A DIB in bytes: 8 bits, 5 by 3 pixels, ten colours.
Bytes SmallDib(uint32_t headerBytes) {
  Bytes bytes;
  const auto put = [&](uint32_t value, int count) {
    for (int i = 0; i < count; ++i, value >>= 8)
      bytes.push_back(value);
  };
  put(headerBytes, 4);
  if (headerBytes == 12) {
    for (const uint32_t field : {5, 3, 1, 8})
      put(field, 2);
  } else {
    put(5, 4), put(3, 4), put(1, 2), put(8, 2);
    for (const uint32_t field : {0, 0, 5906, 0, 10, 0})
      put(field, 4);
    bytes.resize(headerBytes, 0xEE);
  }
  const uint32_t colors = headerBytes == 12 ? 256 : 10;
  for (uint32_t i = 0; i < colors; ++i)
    put(0xAA000000 | i << 16 | (i + 1) % 256 << 8 | (i + 2) % 256, headerBytes == 12 ? 3 : 4);
  for (uint32_t i = 0; i < 24; ++i)
    bytes.push_back(i % 10);
  return bytes;
}

TEST(Dib, RefusesWhatItCannotTakeAndLeavesItToTheCaller) {
  struct Damage {
    size_t at;
    uint8_t value;
    VnStatus status;
  };
  const Damage damages[] = {
      {4, 0, ERR_INVALID_PARAMETER},  // width
      {8, 0, ERR_INVALID_PARAMETER},  // height
      {12, 2, ERR_UNSUPPORTED},       // planes
      {16, 1, ERR_UNSUPPORTED},       // compression
      {14, 2, ERR_UNSUPPORTED},       // depth
      {11, 0xFF, ERR_UNSUPPORTED},    // a height below 0
      {7, 0x40, ERR_UNSUPPORTED},     // a row that wraps to few bytes
      {11, 0x20, ERR_UNSUPPORTED},    // rows that wrap to few bytes: 8 times 2 to the power 29
      {35, 0x40, ERR_UNSUPPORTED},    // a table that wraps
      {3, 0xFF, ERR_UNSUPPORTED},     // the header's own length
      {32, 11, ERR_UNSUPPORTED},      // one colour more than there is room for
  };
  for (const Damage& damage : damages) {
    SCOPED_TRACE(damage.at);
    Bytes bytes = SmallDib(40);
    bytes[damage.at] = damage.value;
    // An emptied picture comes before all else that is wrong with it.
    if (damage.status == ERR_INVALID_PARAMETER) bytes[16] = 1;
    const Dib dib(bytes);
    Bitmap bitmap;
    EXPECT_EQ(Vn_ChangeFromDIB(bitmap, dib.get()), damage.status);
    EXPECT_FALSE(bitmap->Flags & FLAG_ALLOCATED);
    EXPECT_EQ(dib.Copy(), bytes);
    EXPECT_FALSE(GlobalUnlock(dib.get()));
  }
  Bitmap bitmap;
  EXPECT_EQ(Vn_ChangeFromDIB(bitmap, nullptr), ERR_INVALID_PARAMETER);
  const Dib dib(SmallDib(40));
  EXPECT_EQ(Vn_ChangeFromDIB(nullptr, dib.get()), ERR_INVALID_PARAMETER);
}

// On Windows a block is longer than what was asked for.
HEADLESS_TEST(Dib, RefusesBlocksThatAreTooShort) {
  for (const uint32_t headerBytes : {12u, 40u, 124u}) {
    const Bytes whole = SmallDib(headerBytes);
    for (size_t size = 1; size < whole.size(); ++size) {
      SCOPED_TRACE(size);
      const Dib dib(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size)));
      Bitmap bitmap;
      ASSERT_EQ(Vn_ChangeFromDIB(bitmap, dib.get()), ERR_UNSUPPORTED);
    }
  }
}

HEADLESS_TEST(DeviceBitmap, ShowsOnEachScreenWhatTheScreenCanShow) {
  Random random(1);
  for (int32_t i = 0; i < 180; ++i) {
    const int32_t screenBits[] = {1, 4, 8, 24, 32}, bits = screenBits[i / 6 % 5];
    const DisplayScope display(bits);
    const ScreenDC screen;
    const Colors colors = RandomColors(random, 256);
    RandomBitmap bitmap(random, 37, 11, kDepths[i % 6], STORAGE_AUTO, colors.data());
    SCOPED_TRACE(Told("a screen of", bits, "bits, a bitmap of", kDepths[i % 6]));
    const std::vector<COLORREF> seen = SeenColors(bitmap);
    const OwnedObject<HBITMAP> object(Vn_ConvertToDDB(screen.get(), bitmap));
    Bitmap back;
    ASSERT_EQ(Vn_ConvertFromDDB(screen.get(), back, object.get(), nullptr), OK);
    EXPECT_EQ(back->BitsPerPixel, bits == 32 ? 24 : bits);
    const std::vector<COLORREF> shown = SeenColors(back);
    // Channels go to the device in the order in which they stand.
    const bool swaps = bitmap->BitsPerPixel > 8 && bitmap->ColorOrder == ORDER_RGB;
    if (bits >= 24) {
      EXPECT_EQ(shown, swaps ? RedAndBlueSwapped(seen) : seen);
    }
    // What a screen can show it shows again, through the moving forms.
    Bitmap again;
    const HBITMAP moved = Vn_ChangeToDDB(nullptr, back);
    EXPECT_FALSE(back->Flags & FLAG_ALLOCATED);
    ASSERT_EQ(Vn_ChangeFromDDB(screen.get(), again, moved, nullptr), OK);
    EXPECT_EQ(SeenColors(again), shown);
  }
}

TEST(DeviceBitmap, ConvertingFailsWithoutAnObject) {
  const ScreenDC screen;
  Bitmap bitmap, picture(37, 11, 24);
  EXPECT_EQ(Vn_ConvertFromDDB(screen.get(), bitmap, nullptr, nullptr), ERR_INVALID_PARAMETER);
  // Of another kind: nothing of it is deleted.
  const OwnedObject<HPALETTE> palette(Vn_CreateFixedPalette(4));
  const auto foreign = reinterpret_cast<HBITMAP>(palette.get());
  EXPECT_EQ(Vn_ChangeFromDDB(screen.get(), bitmap, foreign, palette.get()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_GetPaletteSize(palette.get()), 16u);
  // A context is needed to read one, and a lost one leaves the object to the caller.
  const HBITMAP object = Vn_ConvertToDDB(screen.get(), picture);
  EXPECT_EQ(Vn_ChangeFromDDB(nullptr, bitmap, object, nullptr), ERR_INVALID_PARAMETER);
  EXPECT_TRUE(DeleteObject(object));
}

}  // namespace
}  // namespace vn::test
