#include "fuzz/calls.h"

namespace vn::fuzz {

namespace {

uint32_t stepsLeft;

VnStatus VN_CALL Stop(int32_t) { return stepsLeft-- == 0 ? kStop : VnStatus{OK}; }

void MakeBitmap(World& world, Input& input) { world.Create(input); }

// The fields that are the caller's to set, and marks that need not be true.
void ChangeFields(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const uint8_t kind = input.Byte();
  if (kind & 1) bitmap->ViewOrigin = input.Below(3);
  if (kind & 2) bitmap->ColorOrder = input.Below(3);
  if (kind & 4) bitmap->DitherMethod = input.Below(10);
  if (kind & 8) {
    bitmap->Flags ^= static_cast<uint32_t>(
        input.OneOf({FLAG_GRAY_PALETTE, FLAG_OPTIMIZED_PALETTE, FLAG_FIXED_PALETTE,
                     FLAG_CUSTOM_PALETTE, FLAG_PALETTE_INDEXES}));
  }
  if (kind & 16) input.Fill(bitmap->DibColors, sizeof bitmap->DibColors);
  if (kind & 32) {
    bitmap->XResolution = input.Number();
    bitmap->YResolution = input.Number();
  }
}

void SetStatus(World&, Input& input) {
  stepsLeft = input.Byte();
  Vn_SetStatusCallBack(stepsLeft % 4 ? &Stop : nullptr);
}

// Bitmaps, their fields, a region, and a status callback that stops.
const Call kCommonCalls[] = {
    &MakeBitmap,
    &ChangeFields,
    &SetStatus,
    &Decoded<&Vn_SetBitmapRgnRect>,
    &Decoded<&Vn_SetBitmapRgnEllipse>,
    &Decoded<&Vn_FreeBitmap>,
};
static_assert(std::size(kCommonCalls) <= kFirstOwnCall);

}  // namespace

void RunInput(const uint8_t* data, size_t size, const Call* own, size_t count) {
  for (const bool win32s : {false, true}) {
    Input input(data, size);
    World world(win32s);
    while (!input.Done()) {
      const size_t number = input.Below(kCallNumbers);
      if (number < std::size(kCommonCalls)) {
        kCommonCalls[number](world, input);
      } else if (number >= kFirstOwnCall && number - kFirstOwnCall < count) {
        own[number - kFirstOwnCall](world, input);
      }
    }
  }
}

}  // namespace vn::fuzz
