// The geometry room's rows.
#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

void GiveBitmap(Scene& s) {
  Vn_CreateBitmap(s.result, s.kind.request, 32, 31, 4, 0, nullptr, VIEW_TOP_FIRST);
  Vn_ClearBitmap(s.result);
}

const AddRows geometryRows({
    {"Vn_StartResize Vn_Resize Vn_StopResize",
     [](Scene& s) {
       ResizeState* state = nullptr;
       const VnStatus status = Vn_StartResize(4, 4, 8, 8, &state);
       if (status != OK) return status;
       uint32_t width, count;
       s.bytes.assign(8, 0x5A);
       Vn_Resize(s.bytes.data(), 0, 8, &width, &count, state);
       return Vn_StopResize(state);
     }},
    {"Vn_ResizeBitmap",
     [](Scene& s) { return Vn_ResizeBitmap(s.bitmap, s.result); },
     {.hides = kFiles, .stopSpoils = kResult, .units = 31, .prepare = GiveBitmap}},
    {"Vn_ResampleBitmap, smaller",
     [](Scene& s) { return Vn_ResampleBitmap(s.bitmap, 17, 5); },
     {.hides = kFiles, .units = 5}},
    {"Vn_ResampleBitmap, larger",
     [](Scene& s) { return Vn_ResampleBitmap(s.bitmap, 90, 31); },
     {.bits = 24, .hides = kFiles}},
    // Without memory for its rows a shear leaves the bitmap as it is and calls that done. Nor does
    // the making of a bitmap tell that it got no palette.
    {"Vn_ShearBitmap",
     [](Scene& s) { return Vn_ShearBitmap(s.bitmap, 2000, 1, 0); },
     {.hides = kMemory | kFiles | kObjects, .stopSpoils = kRecord | kPixels | kAttachments}},
    // A turn back carries the region through two walks.
    {"Vn_ShearBitmap, columns to the left",
     [](Scene& s) { return Vn_ShearBitmap(s.bitmap, -2000, 0, 0); },
     {.bits = 24,
      .hides = kMemory | kFiles | kStops,
      .spoils = kRegion,
      .stopSpoils = kRecord | kPixels | kAttachments}},
    // From the resize on a failure takes palettes and region along, and the record names the dead.
    {"Vn_SizeBitmap",
     [](Scene& s) {
       const VnStatus status = Vn_SizeBitmap(s.bitmap, 9, 9);
       if (status != OK && Vn_GetPaletteSize(s.bitmap->Palette) == 0) {
         s.bitmap->Palette = s.bitmap->PaintPalette = nullptr;
         s.bitmap->Region = nullptr;
       }
       return status;
     },
     {.hides = kFiles, .spoils = kAttachments, .stopSpoils = kAttachments}},
    {"Vn_FlipBitmap",
     [](Scene& s) { return Vn_FlipBitmap(s.bitmap); },
     {.hides = kFiles, .stopSpoils = kPixels, .units = 6}},
    {"Vn_ReverseBitmap",
     [](Scene& s) { return Vn_ReverseBitmap(s.bitmap); },
     {.hides = kFiles, .stopSpoils = kPixels, .units = 12}},
    {"Vn_RotateBitmap, quarter turn",
     [](Scene& s) { return Vn_RotateBitmap(s.bitmap, 90, 1); },
     {.hides = kFiles, .units = 12}},
    // In place; the region is turned last.
    {"Vn_IntRotateBitmapFine, half turn",
     [](Scene& s) { return Vn_IntRotateBitmapFine(s.bitmap, 18000, 0, 0, 10, 30); },
     {.hides = kFiles, .spoils = kPixels, .stopSpoils = kPixels}},
    {"Vn_RotateBitmapFine",
     [](Scene& s) { return Vn_RotateBitmapFine(s.bitmap, 1730, 0, RGB(9, 99, 199)); },
     {.hides = kFiles, .units = 12}},
});

}  // namespace
}  // namespace vn::test
