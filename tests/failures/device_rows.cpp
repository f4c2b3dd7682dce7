// The device room's rows. A paint that fails has painted nothing.
#include "kernel/guards.h"
#include "tests/failures/failure_rows.h"
#include "tests/support/failure_walk.h"

namespace vn::test {
namespace {

// Paints the whole bitmap under a display mode.
VnStatus Paint(Scene& s, uint32_t mode, const RECT& to) {
  const DisplayModeScope scope(~0u, mode);
  return Vn_PaintDC(s.screen(), s.bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY);
}

VnStatus PaintEffect(Scene& s, uint32_t mode, uint32_t effect) {
  const DisplayModeScope scope(~0u, mode);
  const RECT to = {0, 0, 50, 20};
  return Vn_PaintDCEffect(s.screen(), s.bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY, effect);
}

void GiveRows(Scene& s) { s.bytes.assign(size_t{4} * s.bitmap->BytesPerLine, 0x35); }

VnStatus PaintRows(Scene& s, const RECT& to) {
  return Vn_PaintDCBuffer(s.screen(), s.bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY,
                          s.bytes.data(), 3, 4);
}

// Prints on a printer that lives for the call, and keeps the page that came of it.
template <class Print>
VnStatus OnPrinter(Scene& s, Print print) {
  const Headless_Printer printer = {
      "Printer,DRIVER,PORT:", {60, 40, 24, 0, 0, DT_RASPRINTER, 300}, 0};
  if (!Headless_SetPrinter(&printer)) return ERR_NO_MEMORY;
  Headless_SetPrintSink(
      [](void* scene, Headless_PrintEvent event, const Headless_Page* page) -> int32_t {
        const Headless_Surface& shown = page->surface;
        if (event == HEADLESS_PRINT_PAGE) {
          static_cast<Scene*>(scene)->bytes.assign(shown.bits,
                                                   shown.bits + shown.stride * shown.height);
        }
        return 1;
      },
      &s);
  const HDC job = print();
  Headless_SetPrintSink(nullptr, nullptr);
  Headless_SetPrinter(nullptr);
  if (job) return OK;
  return Vn_GetStatusCallBack() ? kStopValue : static_cast<VnStatus>(ERR_NO_MEMORY);
}

// A paint that fails leaves its part of the page white, and the job goes on.
constexpr Terms kPrinting = {.hides = kMemory | kFiles | kObjects};

const AddRows rows({
    {"Vn_PrintBitmap",
     [](Scene& s) {
       return OnPrinter(s, [&] { return Vn_PrintBitmap(s.bitmap, 3, 4, 30, 0, 1); });
     },
     kPrinting},
    {"Vn_PrintBitmapExt",
     [](Scene& s) {
       return OnPrinter(s, [&] { return Vn_PrintBitmapExt({}, s.bitmap, 0, 0, 0, 0, 1); });
     },
     kPrinting},
    {"Vn_PrintBitmapFast",
     [](Scene& s) {
       return OnPrinter(s, [&] { return Vn_PrintBitmapFast({}, s.bitmap, 3, 4, 40, 12, 1); });
     },
     kPrinting},
    {"Vn_PaintDC, dithered",
     [](Scene& s) {
       return Paint(s, MODE_DEVICE_INDEXES | MODE_DITHER, {5, 5, 45, 17});
     },
     {.bits = 24, .hides = kFiles}},
    {"Vn_PaintDC, dithered and scaled",
     [](Scene& s) {
       return Paint(s, MODE_DEVICE_INDEXES | MODE_DITHER, {0, 0, 90, 30});
     },
     {.bits = 24, .hides = kFiles}},
    {"Vn_PaintDC, widened",
     [](Scene& s) {
       return Paint(s, 0, {-7, -3, 20, 70});
     },
     {.bits = 32, .hides = kFiles}},
    {"Vn_PaintDC, fixed palette",
     [](Scene& s) {
       return Paint(s, MODE_DITHER | MODE_FIXED_PALETTE, {0, 0, 40, 12});
     },
     {.hides = kFiles}},
    {"Vn_PaintDC, vote",
     [](Scene& s) {
       return Paint(s, MODE_BITONAL_VOTE, {0, 0, 17, 11});
     },
     {.bits = 1, .hides = kFiles}},
    {"Vn_PaintDC, gray scaled",
     [](Scene& s) {
       return Paint(s, MODE_BITONAL_GRAY, {0, 0, 25, 33});
     },
     {.bits = 1, .hides = kFiles}},
    {"Vn_PaintDC, gray",
     [](Scene& s) {
       return Paint(s, MODE_BITONAL_GRAY, {1, 1, 41, 13});
     },
     {.bits = 1, .hides = kFiles}},
    {"Vn_PaintDCBuffer, dithered",
     [](Scene& s) {
       return PaintRows(s, {5, 5, 45, 17});
     },
     {.bits = 24, .prepare = GiveRows}},
    {"Vn_PaintDCBuffer, scaled",
     [](Scene& s) {
       return PaintRows(s, {0, 0, 90, 30});
     },
     {.bits = 32, .prepare = GiveRows}},
    {"Vn_PaintDCBuffer, direct",
     [](Scene& s) -> VnStatus {
       const VnStatus usage = PaintRows(s, {0, 0, 40, 12});
       return usage == DIB_PAL_COLORS ? VnStatus{OK} : usage;
     },
     {.prepare = GiveRows}},
    {"Vn_PaintDCEffect, reduced",
     [](Scene& s) { return PaintEffect(s, MODE_DITHER, EFFECT_DISSOLVE_16); },
     {.bits = 24, .hides = kFiles | kObjects, .spoils = kScreen, .stopSpoils = kScreen}},
    {"Vn_PaintDCEffect, ordered",
     [](Scene& s) { return PaintEffect(s, MODE_DITHER | MODE_ORDERED_DITHER, EFFECT_FRAMES_IN); },
     {.bits = 24, .hides = kFiles, .spoils = kScreen, .stopSpoils = kScreen}},
    {"Vn_GetDitherFlags",
     [](Scene& s) -> VnStatus {
       int32_t bits, kind;
       Vn_GetDitherFlags(s.screen(), s.bitmap, &bits, &kind);
       return OK;
     }},
    {"Vn_CreatePaintPalette",
     [](Scene& s) { return s.Keep(Vn_CreatePaintPalette(s.screen(), s.bitmap)); }},
    {"Vn_SetDisplayMode Vn_GetDisplayMode",
     [](Scene&) -> VnStatus {
       Vn_SetDisplayMode(~0u, Vn_GetDisplayMode());
       return OK;
     }},
});

}  // namespace
}  // namespace vn::test
