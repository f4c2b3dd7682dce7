#include "device/paint_plan.h"

#include <cstdlib>

#include "color/fixed_palettes.h"
#include "color/palettes.h"
#include "device/paint_tools.h"
#include "kernel/guards.h"
#include "kernel/rects.h"

namespace vn {
namespace {

// What a device shows, in the depths that rows can be reduced to.
int32_t DeviceDepth(HDC hDC) {
  const int32_t raw = GetDeviceCaps(hDC, TECHNOLOGY) == DT_METAFILE
                          ? 24
                          : GetDeviceCaps(hDC, BITSPIXEL) * GetDeviceCaps(hDC, PLANES);
  if (raw < 4) return 1;
  if (raw < 8) return 4;
  return raw < 16 ? 8 : 24;
}

// PAINT_DIRECT when the bitmap's colours are the fixed palette of its depth, or there are none.
int32_t MatchFixedPalette(const BitmapHandle& bitmap) {
  RGBQUAD colors[kMaxColors];
  const auto bits = static_cast<uint32_t>(bitmap.BitsPerPixel);
  const uint32_t count =
      Vn_GetPaletteEntries(ActivePalette(bitmap), 0, bits == 4 ? 16 : 256, colors);
  const RGBQUAD* fixed = Vn_IntGetFixedPalette(bits);
  for (uint32_t i = 0; i < count; ++i) {
    if (colors[i].rgbBlue != fixed[i].rgbBlue || colors[i].rgbGreen != fixed[i].rgbGreen ||
        colors[i].rgbRed != fixed[i].rgbRed) {
      return PAINT_DITHER;
    }
  }
  return PAINT_DIRECT;
}

int32_t KindOf1Bit(BitmapHandle* bitmap, int32_t deviceBits, uint32_t mode) {
  constexpr uint32_t kBoth = MODE_DITHER | MODE_FIXED_PALETTE;
  const int32_t fallback = (mode & kBoth) == kBoth ? PAINT_DITHER : PAINT_DIRECT;
  const bool gray = (mode & MODE_BITONAL_GRAY) && deviceBits != 1;
  if (!gray && !(mode & MODE_BITONAL_VOTE)) return deviceBits == 8 ? fallback : PAINT_DIRECT;
  switch (Vn_IsGrayScaleBitmap(bitmap)) {
    case 1:
      return gray ? PAINT_GRAY : PAINT_VOTE;
    case 2:
      return gray ? PAINT_GRAY_INVERTED : PAINT_VOTE_INVERTED;
    default:
      return fallback;
  }
}

int32_t KindOf4Bits(const BitmapHandle& bitmap, int32_t deviceBits, uint32_t mode) {
  if (!(mode & MODE_DITHER)) return PAINT_DIRECT;
  if (deviceBits == 1) return PAINT_DITHER;
  if (deviceBits == 4) return MatchFixedPalette(bitmap);
  return deviceBits == 8 && (mode & MODE_FIXED_PALETTE) ? PAINT_DITHER : PAINT_DIRECT;
}

int32_t KindOf8Bits(const BitmapHandle& bitmap, int32_t deviceBits, uint32_t mode) {
  if (!(mode & MODE_DITHER)) return PAINT_DIRECT;
  if (deviceBits <= 4) return PAINT_DITHER;
  return deviceBits == 8 && (mode & MODE_FIXED_PALETTE) ? MatchFixedPalette(bitmap) : PAINT_DIRECT;
}

int32_t PaintKind(BitmapHandle* bitmap, int32_t deviceBits) {
  const uint32_t mode = Vn_GetDisplayMode();
  const bool reduced = (mode & MODE_DITHER) && deviceBits <= 8;
  switch (bitmap->BitsPerPixel) {
    case 1:
      return KindOf1Bit(bitmap, deviceBits, mode);
    case 4:
      return KindOf4Bits(*bitmap, deviceBits, mode);
    case 8:
      return KindOf8Bits(*bitmap, deviceBits, mode);
    case 16:
    case 32:
      return reduced ? PAINT_DITHER : PAINT_EXPAND;
    case 24:
      return reduced ? PAINT_DITHER : PAINT_DIRECT;
    default:
      return PAINT_DIRECT;
  }
}

HPALETTE GrayRampPalette() {
  return Vn_CreatePalette(GrayRamp256.data(), static_cast<uint32_t>(GrayRamp256.size()));
}

HPALETTE FixedPaletteOf(int32_t deviceBits) {
  return deviceBits > 8 ? nullptr : Vn_CreateFixedPalette(static_cast<uint32_t>(deviceBits));
}

}  // namespace

bool SameSize(const RECT& source, const RECT& destination) {
  const auto magnitude = [](const RECT& r) { return std::abs(int64_t{r.bottom} - r.top); };
  return int64_t{destination.right} - destination.left == int64_t{source.right} - source.left &&
         magnitude(source) == magnitude(destination);
}

PaintPlan PlanPaint(HDC hDC, BitmapHandle* bitmap) {
  PaintPlan plan;
  Vn_GetDitherFlags(hDC, bitmap, &plan.deviceBits, &plan.kind);
  return plan;
}

bool PlanRects(PaintJob* job, const RECT* source, const RECT* sourceClip, const RECT& destination,
               const RECT* destinationClip) {
  const RECT whole = {0, 0, job->bitmap->Width, job->bitmap->Height};
  job->source = job->sourceClip = source ? *source : whole;
  job->destination = job->destinationClip = destination;
  return (!sourceClip || IntersectRects(&job->sourceClip, *sourceClip, job->source)) &&
         (!destinationClip ||
          IntersectRects(&job->destinationClip, destination, *destinationClip)) &&
         IntersectRects(&job->sourceClip, job->sourceClip, whole);
}

VnStatus Render(const PaintJob& job, const PaintPlan& plan, PaintTools* tools) {
  const BitmapLock lock(job.bitmap);
  const bool same = SameSize(job.source, job.destination);
  switch (plan.kind) {
    case PAINT_GRAY:
    case PAINT_GRAY_INVERTED: {
      const bool invert = plan.kind == PAINT_GRAY_INVERTED;
      return same ? PaintBitonalGray(job, invert, tools)
                  : PaintBitonalGrayScaled(job, invert, tools);
    }
    case PAINT_VOTE:
    case PAINT_VOTE_INVERTED:
      // At 1:1 there is nothing to vote on.
      if (!same) return PaintBitonalVote(job, plan.kind == PAINT_VOTE_INVERTED, tools);
      return PaintUnscaled(job, plan.deviceBits, PAINT_DIRECT, tools);
    default:
      return same ? PaintUnscaled(job, plan.deviceBits, plan.kind, tools)
                  : PaintScaled(job, plan.deviceBits, plan.kind, tools);
  }
}

VnStatus PaintBitmap(HDC hDC, BitmapHandle* bitmap, const RECT* source, const RECT* sourceClip,
                     const RECT* destination, const RECT* destinationClip, uint32_t rasterOp) {
  PaintJob job{hDC, bitmap, {}, {}, {}, {}, {}, rasterOp};
  if (!PlanRects(&job, source, sourceClip, *destination, destinationClip)) return OK;
  PaintTools tools;
  return Render(job, PlanPaint(hDC, bitmap), &tools);
}

}  // namespace vn

VnStatus VN_CALL Vn_PaintDC(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                            const RECT* sourceClip, const RECT* destination,
                            const RECT* destinationClip, uint32_t rasterOp) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  if (!destination || !hDC) return ERR_INVALID_PARAMETER;
  return vn::PaintBitmap(hDC, bitmap, source, sourceClip, destination, destinationClip, rasterOp);
}

void VN_CALL Vn_GetDitherFlags(HDC hDC, BitmapHandle* bitmap, int32_t* deviceBits,
                               int32_t* paintKind) {
  *deviceBits = vn::DeviceDepth(hDC);
  *paintKind = bitmap ? vn::PaintKind(bitmap, *deviceBits) : PAINT_DIRECT;
}

HPALETTE VN_CALL Vn_CreatePaintPalette(HDC hDC, BitmapHandle* bitmap) {
  if (!bitmap) return nullptr;
  int32_t deviceBits = 0;
  int32_t kind = 0;
  Vn_GetDitherFlags(hDC, bitmap, &deviceBits, &kind);
  if (kind == PAINT_DITHER) return vn::FixedPaletteOf(deviceBits);
  if (kind == PAINT_GRAY || kind == PAINT_GRAY_INVERTED) return vn::GrayRampPalette();
  // A private copy of the bitmap's own palette.
  return bitmap->BitsPerPixel > 8 ? nullptr : Vn_DupPalette(vn::ActivePalette(*bitmap));
}
