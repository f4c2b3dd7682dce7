// Regions: shapes, transforms, clip segments, and what writes through them.
#include "fuzz/calls.h"

#include <vector>

namespace vn::fuzz {

namespace {

void Polygon(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  Argument<const RegionTransform*> transform(world, input);
  POINT points[12];
  const uint32_t count = input.Below(13);
  for (uint32_t i = 0; i < count; ++i) {
    points[i].x = input.Number();
    points[i].y = input.Number();
  }
  const uint32_t rule = input.Below(3), combine = input.Below(8);
  Vn_SetBitmapRgnPolygon(bitmap, transform.get(), points, static_cast<int32_t>(count), rule,
                         combine);
}

// Twice the maximum holds the segments of any row.
void Segments(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  int32_t maximum = 0, count = 0;
  if (Vn_GetBitmapClipSegmentsMax(bitmap, &maximum) != OK || maximum < 1 || maximum > 1 << 16) {
    return;
  }
  const std::unique_ptr<int32_t[]> segments(new int32_t[2 * static_cast<size_t>(maximum)]);
  Vn_GetBitmapClipSegments(bitmap, input.Number(), segments.get(), &count);
}

const Call kCalls[] = {
    &Polygon,
    &Segments,
    &Decoded<&Vn_SetBitmapRgnHandle>,
    &Decoded<&Vn_SetBitmapRgnRoundRect>,
    &Decoded<&Vn_GetBitmapRgnHandle>,
    &Decoded<&Vn_GetBitmapRgnBounds>,
    &Decoded<&Vn_IsPtInBitmapRgn>,
    &Decoded<&Vn_OffsetBitmapRgn>,
    &Decoded<&Vn_BitmapHasRgn>,
    &Decoded<&Vn_FreeBitmapRgn>,
    &Decoded<&Vn_GetBitmapRgnArea>,
    &Decoded<&Vn_FillBitmap>,
    &Decoded<&Vn_PutPixelColor>,
    // A region outlives the rows below the new height.
    [](World& world, Input& input) {
      Vn_ChangeBitmapHeight(world.Bitmap(input), input.Below(256));
    },
    &Decoded<&Vn_SetBitmapRgnColor>,
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
