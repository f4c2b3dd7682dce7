// Vn_FrameBitmapRgn for tests that count what is alive: it leaves a platform region behind.
#ifndef VNCORE_TESTS_SUPPORT_FRAME_REGION_H
#define VNCORE_TESTS_SUPPORT_FRAME_REGION_H

#include <vncore/vncore.h>
#include "region/region_record.h"

#ifndef _WIN32
#include <algorithm>

#include "platform/headless/objects/objects.h"
#endif

namespace vn::test {

// Frames, and deletes what it left.
inline VnStatus FrameRegion(HDC hDC, BitmapHandle* bitmap, const RegionTransform* transform,
                            uint32_t frame) {
#ifdef _WIN32
  return Vn_FrameBitmapRgn(hDC, bitmap, transform, frame);
#else
  const auto before = headless::HandlesOf(OBJ_REGION);
  const VnStatus status = Vn_FrameBitmapRgn(hDC, bitmap, transform, frame);
  for (const HGDIOBJ region : headless::HandlesOf(OBJ_REGION)) {
    const bool cached = bitmap && bitmap->Region && bitmap->Region->CachedRegion == region;
    if (!cached && std::find(before.begin(), before.end(), region) == before.end()) {
      DeleteObject(region);
    }
  }
  return status;
#endif
}

}  // namespace vn::test

#endif
