// The device room's rows. A paint that fails has painted nothing.
#include "kernel/guards.h"
#include "tests/failures/failure_rows.h"
#include "tests/support/failure_walk.h"
#include "tests/support/test_printer.h"

namespace vn::test {
namespace {

// Paints the whole bitmap under a display mode.
Call Paint(uint32_t mode, const RECT& to) {
  return [=](Scene& s) {
    const DisplayModeScope scope(~0u, mode);
    return Vn_PaintDC(s.screen(), s.bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY);
  };
}

Call PaintEffect(uint32_t mode, uint32_t effect) {
  return [=](Scene& s) {
    const DisplayModeScope scope(~0u, mode);
    const RECT to = {0, 0, 50, 20};
    return Vn_PaintDCEffect(s.screen(), s.bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY, effect);
  };
}

void GiveRows(Scene& s) { s.bytes.assign(size_t{4} * s.bitmap->BytesPerLine, 0x35); }

// On the direct way what is told is the usage of the table.
Call PaintRows(const RECT& to) {
  return [=](Scene& s) {
    const VnStatus status = Vn_PaintDCBuffer(s.screen(), s.bitmap, nullptr, nullptr, &to, nullptr,
                                             SRCCOPY, s.bytes.data(), 3, 4);
    return status == DIB_PAL_COLORS ? VnStatus{OK} : status;
  };
}

// Prints on a printer that lives for the call, and keeps the page that came of it.
template <class Print>
Call OnPrinter(Print print) {
  return [print](Scene& s) -> VnStatus {
    const TestPrinter printer(24);
    const HDC job = print(s.bitmap);
    s.bytes = printer.page;
    if (job) return OK;
    return Vn_GetStatusCallBack() ? kStopValue : static_cast<VnStatus>(ERR_NO_MEMORY);
  };
}

// A paint that fails leaves its part of the page white, and the job goes on.
constexpr Terms kPrinting = {.hides = kMemory | kFiles | kObjects};

const AddRows deviceRows({
    {"Vn_PrintBitmap", OnPrinter([](BitmapHandle* b) { return Vn_PrintBitmap(b, 3, 4, 30, 0, 1); }),
     kPrinting},
    {"Vn_PrintBitmapExt",
     OnPrinter([](BitmapHandle* b) { return Vn_PrintBitmapExt({}, b, 0, 0, 0, 0, 1); }), kPrinting},
    {"Vn_PrintBitmapFast",
     OnPrinter([](BitmapHandle* b) { return Vn_PrintBitmapFast({}, b, 3, 4, 40, 12, 1); }),
     kPrinting},
    {"Vn_PaintDC, dithered",
     Paint(MODE_DEVICE_INDEXES | MODE_DITHER, {5, 5, 45, 17}),
     {.bits = 24, .hides = kFiles}},
    {"Vn_PaintDC, dithered and scaled",
     Paint(MODE_DEVICE_INDEXES | MODE_DITHER, {0, 0, 90, 30}),
     {.bits = 24, .hides = kFiles}},
    {"Vn_PaintDC, widened", Paint(0, {-7, -3, 20, 70}), {.bits = 32, .hides = kFiles}},
    {"Vn_PaintDC, fixed palette",
     Paint(MODE_DITHER | MODE_FIXED_PALETTE, {0, 0, 40, 12}),
     {.hides = kFiles}},
    {"Vn_PaintDC, vote", Paint(MODE_BITONAL_VOTE, {0, 0, 17, 11}), {.bits = 1, .hides = kFiles}},
    {"Vn_PaintDC, gray scaled",
     Paint(MODE_BITONAL_GRAY, {0, 0, 25, 33}),
     {.bits = 1, .hides = kFiles}},
    {"Vn_PaintDC, gray", Paint(MODE_BITONAL_GRAY, {1, 1, 41, 13}), {.bits = 1, .hides = kFiles}},
    {"Vn_PaintDCBuffer, dithered", PaintRows({5, 5, 45, 17}), {.bits = 24, .prepare = GiveRows}},
    {"Vn_PaintDCBuffer, scaled", PaintRows({0, 0, 90, 30}), {.bits = 32, .prepare = GiveRows}},
    {"Vn_PaintDCBuffer, direct", PaintRows({0, 0, 40, 12}), {.prepare = GiveRows}},
    {"Vn_PaintDCEffect, reduced",
     PaintEffect(MODE_DITHER, EFFECT_DISSOLVE_16),
     {.bits = 24, .hides = kFiles | kObjects, .spoils = kScreen, .stopSpoils = kScreen}},
    {"Vn_PaintDCEffect, ordered",
     PaintEffect(MODE_DITHER | MODE_ORDERED_DITHER, EFFECT_FRAMES_IN),
     {.bits = 24, .hides = kFiles, .spoils = kScreen, .stopSpoils = kScreen}},
    {"Vn_GetDitherFlags", Done([](Scene& s) {
       int32_t bits, kind;
       Vn_GetDitherFlags(s.screen(), s.bitmap, &bits, &kind);
     })},
    {"Vn_CreatePaintPalette",
     [](Scene& s) { return s.Keep(Vn_CreatePaintPalette(s.screen(), s.bitmap)); }},
});

}  // namespace
}  // namespace vn::test
