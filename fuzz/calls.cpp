#include "fuzz/calls.h"

namespace vn::fuzz {

namespace {

uint32_t stepsLeft;

VnStatus VN_CALL Stop(int32_t) { return stepsLeft-- == 0 ? VnStatus{77} : VnStatus{OK}; }

}  // namespace

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

void RunInput(const uint8_t* data, size_t size, const Call* calls, size_t count) {
  for (const bool win32s : {false, true}) {
    Input input(data, size);
    World world(win32s);
    while (!input.Done())
      calls[input.Below(count)](world, input);
  }
}

}  // namespace vn::fuzz
