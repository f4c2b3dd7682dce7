// The platform: region objects. Shapes of all sizes cover the same pixels, and so do combinations
// of them.
//
// Left out are curves that are thin for their height. Wine's stepping down a quadrant runs out of
// columns there before it has all rows, and leaves the rest of its rows at the tips to whatever the
// memory held; the headless platform gives such tips the middle columns.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <vncore/platform/win32.h>
#include "tests/cases/case.h"

namespace vn::cases {

namespace {

constexpr int32_t kArea = 512;  // all shapes lie within this square about the origin

RECT RandomBox(Case& test) {
  RECT box;
  box.left = test.Pick(-20, 40);
  box.top = test.Pick(-20, 40);
  // Now and then empty or the wrong way round.
  box.right = box.left + test.Pick(test.random.Chance(8) ? -20 : 1, 48);
  box.bottom = box.top + test.Pick(test.random.Chance(8) ? -20 : 1, 48);
  return box;
}

bool Thin(const RECT& box, int32_t cornerWidth, int32_t cornerHeight) {
  const int32_t width = std::min<int32_t>(std::abs(box.right - box.left) - 1, cornerWidth);
  const int32_t height = std::min<int32_t>(std::abs(box.bottom - box.top) - 1, cornerHeight);
  return width >= 2 && 3 * height > width * width;
}

HRGN RandomRegion(Case& test) {
  const int32_t kind = test.Pick(0, 4);
  const RECT box = RandomBox(test);
  test.Note("kind %d, box %d,%d to %d,%d", kind, static_cast<int>(box.left),
            static_cast<int>(box.top), static_cast<int>(box.right), static_cast<int>(box.bottom));
  switch (kind) {
    case 0:
      return CreateRectRgnIndirect(&box);
    case 1:
      return Thin(box, kArea, kArea) ? CreateRectRgnIndirect(&box)
                                     : CreateEllipticRgnIndirect(&box);
    case 2: {
      const int32_t width = test.Pick(0, 30), height = test.Pick(0, 30);
      test.Note("corners %dx%d", width, height);
      if (Thin(box, width, height)) return CreateRectRgnIndirect(&box);
      return CreateRoundRectRgn(box.left, box.top, box.right, box.bottom, width, height);
    }
    default: {
      POINT points[8];
      const int32_t count = test.Pick(2, 8);
      const int rule = test.OneOf({ALTERNATE, WINDING});
      test.Note("fill rule %d", rule);
      for (int32_t i = 0; i < count; ++i) {
        points[i].x = test.Pick(-20, 60);
        points[i].y = test.Pick(-20, 60);
        test.Note("point %d,%d", static_cast<int>(points[i].x), static_cast<int>(points[i].y));
      }
      return CreatePolygonRgn(points, count, rule);
    }
  }
}

// As listed, or pixel by pixel where there is no GetRegionData.
std::vector<RECT> RectsOf(HRGN region, const RECT& box) {
  std::vector<RECT> rects;
  if (const DWORD bytes = GetRegionData(region, 0, nullptr)) {
    std::vector<uint32_t> storage(bytes / 4 + 1);
    auto* data = reinterpret_cast<RGNDATA*>(storage.data());
    GetRegionData(region, bytes, data);
    rects.resize(data->rdh.nCount);
    if (!rects.empty()) {
      std::memcpy(rects.data(), data->Buffer, rects.size() * sizeof(RECT));
    }
    return rects;
  }
  for (LONG y = box.top; y < box.bottom; ++y) {
    for (LONG x = box.left; x < box.right; ++x) {
      if (PtInRegion(region, x, y)) rects.push_back({x, y, x + 1, y + 1});
    }
  }
  return rects;
}

// What the region covers, a row of bits per line: two platforms may cut the same pixels into
// rectangles differently.
void FoldRegion(Case& test, HRGN region) {
  test.FoldHandle("region", region);
  RECT box = {};
  test.Fold("GetRgnBox", GetRgnBox(region, &box));
  test.FoldBytes("box", &box, sizeof box);
  uint8_t covered[kArea][kArea / 8] = {};
  const auto cover = [&](const RECT& rect) {
    for (LONG y = rect.top; y < rect.bottom; ++y) {
      for (LONG x = rect.left; x < rect.right; ++x) {
        covered[y + kArea / 2][(x + kArea / 2) / 8] |= static_cast<uint8_t>(0x80 >> (x & 7));
      }
    }
  };
  for (const RECT& rect : RectsOf(region, box)) {
    if (rect.left < -kArea / 2 || rect.top < -kArea / 2 || rect.right > kArea / 2 ||
        rect.bottom > kArea / 2) {
      test.FoldBytes("rect far away", &rect, sizeof rect);
    } else {
      cover(rect);
    }
  }
  for (int32_t y = 0; y < kArea; ++y) {
    char name[24];
    std::snprintf(name, sizeof name, "line %d", y - kArea / 2);
    test.FoldBytes(name, covered[y], sizeof covered[y]);
  }
}

void Run(Case& test) {
  HRGN region = RandomRegion(test);
  FoldRegion(test, region);
  for (int32_t i = test.Pick(0, 4); i > 0; --i) {
    HRGN other = RandomRegion(test);
    const int mode = test.OneOf({RGN_AND, RGN_OR, RGN_XOR, RGN_DIFF, RGN_COPY});
    const bool swapped = test.random.Chance(2);
    test.Note("mode %d%s", mode, swapped ? " swapped" : "");
    test.Fold("CombineRgn",
              CombineRgn(region, swapped ? other : region, swapped ? region : other, mode));
    DeleteObject(other);
    if (test.random.Chance(3)) {
      const int x = test.Pick(-30, 30), y = test.Pick(-30, 30);
      test.Fold("OffsetRgn", OffsetRgn(region, x, y));
    }
  }
  FoldRegion(test, region);
  for (int i = 0; i < 4; ++i) {
    const int x = test.Pick(-20, 60), y = test.Pick(-20, 60);
    test.Fold("PtInRegion", PtInRegion(region, x, y) != 0);
  }
  DeleteObject(region);
}

const Registration registration({"shapes", 4000, 0xe36f6aa90db4b7aa, Run});

}  // namespace

}  // namespace vn::cases
