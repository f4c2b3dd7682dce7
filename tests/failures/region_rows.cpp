// The region room's rows. A failing combination may leave the new shape alone.
#include "region/region_motion.h"
#include "tests/failures/failure_rows.h"
#include "tests/support/frame_region.h"

namespace vn::test {
namespace {

constexpr RegionTransform kTransform = {VIEW_TOP_FIRST, 2, 3, 3, 2, 1, -1};
constexpr POINT kPoints[] = {{0, 0}, {20, 3}, {9, 11}};

void GiveRegion(Scene& s) { s.region = OwnedObject<HRGN>(CreateEllipticRgnIndirect(&s.box)); }

Call SetHandle(uint32_t mode) {
  return
      [=](Scene& s) { return Vn_SetBitmapRgnHandle(s.bitmap, &kTransform, s.region.get(), mode); };
}

VnStatus GetHandle(Scene& s) {
  HRGN made = nullptr;
  const VnStatus status = Vn_GetBitmapRgnHandle(s.bitmap, nullptr, &made);
  s.Keep(made);
  return status;
}

COLORREF ColorIn(Scene& s) {
  const RGBQUAD& c = s.colors[5];
  return RGB(c.rgbRed, c.rgbGreen, c.rgbBlue);
}

// Every other pixel: the list of its turned form has to grow.
void SelectBoard(Scene& s) {
  Vn_ClearBitmap(s.bitmap);
  Vn_FreeBitmapRgn(s.bitmap);
  for (int32_t y = 0; y < 12; ++y) {
    for (int32_t x = y % 2; x < 40; x += 2)
      Select(s.bitmap, {x, y, x + 1, y + 1}, x || y ? REGION_COMBINE_OR : REGION_COMBINE_REPLACE);
  }
}

const Terms kReplacing = {.prepare = GiveRegion};
const Terms kCombining = {.spoils = kRegion, .prepare = GiveRegion};

const AddRows regionRows({
    {"Vn_SetBitmapRgnHandle, and", SetHandle(REGION_COMBINE_AND), kCombining},
    {"Vn_SetBitmapRgnHandle, replace", SetHandle(REGION_COMBINE_REPLACE), kReplacing},
    {"Vn_SetBitmapRgnHandle, new minus old", SetHandle(REGION_COMBINE_NEW_MINUS_OLD), kCombining},
    {"Vn_SetBitmapRgnHandle, old minus new", SetHandle(REGION_COMBINE_OLD_MINUS_NEW), kCombining},
    {"Vn_SetBitmapRgnHandle, or", SetHandle(REGION_COMBINE_OR), kCombining},
    {"Vn_SetBitmapRgnHandle, xor", SetHandle(REGION_COMBINE_XOR), kCombining},
    {"Vn_SetBitmapRgnHandle, inverted", SetHandle(REGION_COMBINE_REPLACE_INVERTED), kReplacing},
    {"Vn_SetBitmapRgnRect",
     [](Scene& s) { return Vn_SetBitmapRgnRect(s.bitmap, nullptr, &s.box, REGION_COMBINE_OR); },
     {.spoils = kRegion}},
    {"Vn_SetBitmapRgnEllipse",
     [](Scene& s) {
       return Vn_SetBitmapRgnEllipse(s.bitmap, &kTransform, &s.box, REGION_COMBINE_REPLACE);
     }},
    {"Vn_SetBitmapRgnPolygon",
     [](Scene& s) {
       return Vn_SetBitmapRgnPolygon(s.bitmap, nullptr, kPoints, 3, REGION_FILL_WINDING,
                                     REGION_COMBINE_REPLACE);
     }},
    {"Vn_SetBitmapRgnRoundRect",
     [](Scene& s) {
       return Vn_SetBitmapRgnRoundRect(s.bitmap, nullptr, &s.box, 5, 5, REGION_COMBINE_REPLACE);
     }},
    {"Vn_FreeBitmapRgn", [](Scene& s) { return Vn_FreeBitmapRgn(s.bitmap); }},
    {"Vn_OffsetBitmapRgn", [](Scene& s) { return Vn_OffsetBitmapRgn(s.bitmap, 1, 2); }},
    {"Vn_OffsetBitmapRgn, without one",
     [](Scene& s) { return Vn_OffsetBitmapRgn(s.bitmap, 1, 2); },
     {.prepare = [](Scene& s) { Vn_FreeBitmapRgn(s.bitmap); }}},
    {"Vn_GetBitmapRgnHandle, cached", GetHandle},
    {"Vn_GetBitmapRgnHandle, built",
     GetHandle,
     {.prepare = [](Scene& s) { Vn_OffsetBitmapRgn(s.bitmap, 1, 1); }}},
    {"Vn_GetBitmapRgnBounds",
     [](Scene& s) { return Vn_GetBitmapRgnBounds(s.bitmap, &kTransform, &s.box); }},
    {"Vn_IsPtInBitmapRgn Vn_BitmapHasRgn",
     [](Scene& s) -> VnStatus {
       return Vn_BitmapHasRgn(s.bitmap) & Vn_IsPtInBitmapRgn(s.bitmap, 5, 9);
     }},
    {"Vn_GetBitmapRgnArea Vn_GetBitmapClipSegmentsMax Vn_GetBitmapClipSegments",
     [](Scene& s) {
       int32_t segments[40], count;
       uint32_t area;
       EXPECT_EQ(Vn_GetBitmapRgnArea(s.bitmap, &area), OK);
       EXPECT_EQ(Vn_GetBitmapClipSegmentsMax(s.bitmap, &count), OK);
       return Vn_GetBitmapClipSegments(s.bitmap, 5, segments, &count);
     }},
    {"Vn_SetBitmapRgnColor",
     [](Scene& s) { return Vn_SetBitmapRgnColor(s.bitmap, 0, REGION_COMBINE_REPLACE); }},
    {"Vn_SetBitmapRgnColor, or",
     [](Scene& s) { return Vn_SetBitmapRgnColor(s.bitmap, ColorIn(s), REGION_COMBINE_OR); },
     {.hides = kFiles, .spoils = kRegion}},
    {"Vn_PaintRgnDC",
     [](Scene& s) {
       return Vn_PaintRgnDC(s.screen(), s.bitmap, nullptr, nullptr, &s.box, nullptr, SRCCOPY);
     },
     {.hides = kFiles}},
    {"Vn_PaintRgnDCBuffer",
     [](Scene& s) -> VnStatus {
       const RECT to = {0, 0, 40, 12};
       const VnStatus usage = Vn_PaintRgnDCBuffer(s.screen(), s.bitmap, nullptr, nullptr, &to,
                                                  nullptr, SRCCOPY, s.bytes.data(), 3, 4);
       return usage == DIB_PAL_COLORS ? VnStatus{OK} : usage;
     },
     {.prepare = [](Scene& s) { s.bytes.assign(size_t{4} * s.bitmap->BytesPerLine, 0x35); }}},
    {"Vn_PaintRgnDCEffect",
     [](Scene& s) {
       return Vn_PaintRgnDCEffect(s.screen(), s.bitmap, nullptr, nullptr, &s.box, nullptr, SRCCOPY,
                                  EFFECT_ROWS_DOWN);
     },
     {.hides = kFiles, .spoils = kScreen, .stopSpoils = kScreen}},
    {"Vn_FrameBitmapRgn",
     [](Scene& s) { return FrameRegion(s.screen(), s.bitmap, &kTransform, 3); }},
    // Not exported, but under every operation of geometry.
    {"CopyRegion",
     [](Scene& s) { return CopyRegion(s.result, s.bitmap, 3, 3); },
     {.prepare = [](Scene& s) { Vn_InitBitmap(s.result, 20, 20, 8); }}},
    {"CopyRegion, with its cache",
     [](Scene& s) { return CopyRegion(s.result, s.bitmap, 0, 0); },
     {.hides = kObjects, .prepare = [](Scene& s) { Vn_InitBitmap(s.result, 40, 12, 8); }}},
    {"RotateRegion",
     [](Scene& s) { return RotateRegion(s.bitmap, 40, 12, 100); },
     {.prepare = SelectBoard}},
});

}  // namespace
}  // namespace vn::test
