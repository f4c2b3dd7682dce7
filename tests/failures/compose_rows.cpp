// The compositing room's rows.
#include "kernel/guards.h"
#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

void GiveSource(Scene& s) { s.bytes.assign(s.bitmap->BytesPerLine, 0xFF); }

// Puts the pixels `left` to `right` of a row.
Call PutRun(int32_t left, int32_t right) {
  return [=](Scene& s) {
    const int32_t run[2] = {left, right};
    const BitmapLock lock(s.bitmap);
    return Vn_PutBitmapRowSegments(s.bitmap, s.bytes.data(), 5, 0, run, 2);
  };
}

// A second bitmap. At 24 bits it has no palette: the copy of one that fails would show as a texture
// without storage.
template <int32_t kBits>
void GiveBitmap(Scene& s) {
  Vn_CreateBitmap(s.result, s.kind.request, 32, 9, kBits, ORDER_BGR, nullptr, VIEW_TOP_FIRST);
  Vn_FillBitmap(s.result, 0x804020);
}

const AddRows composeRows({
    {"Vn_PutBitmapRowSegments, within bytes",
     PutRun(3, 21),
     {.bits = 1, .spoils = kPixels, .prepare = GiveSource}},
    {"Vn_PutBitmapRowSegments, whole bytes", PutRun(8, 24), {.bits = 8, .prepare = GiveSource}},
    {"Vn_FillBitmap",
     [](Scene& s) { return Vn_FillBitmap(s.bitmap, 0x20F010); },
     {.hides = kFiles, .stopSpoils = kPixels}},
    {"Vn_ClearBitmap",
     [](Scene& s) { return Vn_ClearBitmap(s.bitmap); },
     {.bits = 24, .hides = kFiles, .stopSpoils = kPixels}},
    {"Vn_CombineBitmap",
     [](Scene& s) {
       return Vn_CombineBitmap(s.bitmap, 3, 4, 30, 9, s.result, 0, 1,
                               COMBINE_MUL | COMBINE_SRC_NOT);
     },
     {.hides = kFiles, .stopSpoils = kPixels, .prepare = GiveBitmap<4>}},
    {"Vn_UnderlayBitmap",
     [](Scene& s) { return Vn_UnderlayBitmap(s.bitmap, s.result, UNDERLAY_STRETCH); },
     {.hides = kFiles, .spoils = kPixels, .prepare = GiveBitmap<24>}},
});

}  // namespace
}  // namespace vn::test
