#include "region/region_source.h"

#include <cstring>

#include "kernel/platform_objects.h"
#include "region/region_builder.h"

namespace vn {
VnStatus ReadRegion(HRGN region, RegionRecord** record) {
  const uint32_t size = GetRegionData(region, 0, nullptr);
  if (size == 0) return ERR_INVALID_PARAMETER;
  ScratchBuffer<uint8_t> block(size_t{kRegionFieldBytes} + size + sizeof(BandNote));
  if (!block) return ERR_NO_MEMORY;
  std::memset(block.data(), 0, sizeof(RegionRecord));
  auto* read = reinterpret_cast<RegionRecord*>(block.data());
  if (GetRegionData(region, size, read->Data()) == 0) return ERR_INVALID_PARAMETER;
  ForgetBandOrder(read);
  *record = reinterpret_cast<RegionRecord*>(block.Release());
  return OK;
}

namespace {

class RegionScan {
 public:
  explicit RegionScan(HRGN region) : region_(region) {}

  VnStatus Run(int32_t height, const RegionMapping& mapping, RegionRecord** record) {
    RECT box;
    if (GetRgnBox(region_, &box) == RGN_ERROR) return ERR_INVALID_PARAMETER;
    strip_ = OwnedObject<HRGN>(CreateRectRgn(0, 0, 0, 0));
    row_ = OwnedObject<HRGN>(CreateRectRgn(0, 0, 0, 0));
    if (!found_ || !strip_ || !row_) return ERR_NO_MEMORY;
    for (int32_t y = mapping.NextRow(box.top, box.bottom, height); y < box.bottom;
         y = mapping.NextRow(y + 1, box.bottom, height)) {
      if (!ScanRow({box.left, y, box.right, y + 1})) return ERR_NO_MEMORY;
    }
    *record = found_.Finish(box);
    return OK;
  }

 private:
  bool ScanRow(const RECT& strip) {
    if (!SetStrip(strip)) return false;
    const int kind = CombineRgn(row_.get(), strip_.get(), region_, RGN_AND);
    if (kind == NULLREGION) return true;
    RECT runs;
    if (kind == RGN_ERROR || GetRgnBox(row_.get(), &runs) == RGN_ERROR) return false;
    return kind == SIMPLEREGION ? found_.Append(runs) : SplitRow(runs);
  }

  // The row has gaps. A run ends at the left of what the row lacks from its beginning on; the next
  // one begins at the left of what the row has from there on.
  bool SplitRow(const RECT& runs) {
    int32_t x = runs.left;
    while (x < runs.right) {
      int32_t end, next;
      if (!LeftOf({x, runs.top, runs.right, runs.bottom}, RGN_DIFF, &end)) return false;
      if (!found_.Append({x, runs.top, end, runs.bottom})) return false;
      if (!LeftOf({end, runs.top, runs.right, runs.bottom}, RGN_AND, &next)) return false;
      x = next;
    }
    return true;
  }

  // Where what remains of `strip` under the operation with the row begins: its right when nothing
  // remains.
  bool LeftOf(const RECT& strip, int mode, int32_t* left) {
    RECT rest{};
    if (!SetStrip(strip)) return false;
    const int kind = CombineRgn(strip_.get(), strip_.get(), row_.get(), mode);
    if (kind == RGN_ERROR || GetRgnBox(strip_.get(), &rest) == RGN_ERROR) return false;
    *left = kind == NULLREGION ? strip.right : rest.left;
    return true;
  }

  bool SetStrip(const RECT& rect) {
    return SetRectRgn(strip_.get(), rect.left, rect.top, rect.right, rect.bottom) != FALSE;
  }

  HRGN region_;
  RegionBuilder found_;
  OwnedObject<HRGN> strip_, row_;
};

}  // namespace

VnStatus ScanRegion(HRGN region, int32_t height, const RegionMapping& mapping,
                    RegionRecord** record) {
  return RegionScan(region).Run(height, mapping, record);
}

}  // namespace vn
