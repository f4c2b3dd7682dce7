// Vn_ConvertBuffer: one row, in place, between any two of the seven pixel formats.
#include <algorithm>

#include "color/row_converter.h"
#include "kernel/pixel_format.h"

VnStatus VN_CALL Vn_ConvertBuffer(void* buffer, uint32_t width, uint32_t srcBits, uint32_t dstBits,
                                  uint32_t srcOrder, uint32_t dstOrder, const RGBQUAD* srcColors,
                                  const RGBQUAD* dstColors) {
  if (!buffer || width == 0) return ERR_INVALID_PARAMETER;
  const auto pixels = static_cast<size_t>(std::max(static_cast<int32_t>(width), 0));
  vn::RowConverter converter;
  if (!converter.Prepare({srcBits, srcOrder, srcColors}, {dstBits, dstOrder, dstColors}, pixels)) {
    return ERR_INVALID_PARAMETER;
  }
  converter.ConvertInPlace(static_cast<uint8_t*>(buffer), pixels);
  return OK;
}

uint32_t VN_CALL Vn_CalcConvertSize(uint32_t srcWidth, uint32_t srcBits, uint32_t dstWidth,
                                    uint32_t dstBits) {
  if (srcBits == 0) srcBits = 8;
  if (dstBits == 0) dstBits = 8;
  // The mixed term is a row of the new width that has not changed its depth yet.
  return std::max({vn::StrideOf(dstWidth, srcBits), vn::StrideOf(dstWidth, dstBits),
                   vn::StrideOf(srcWidth, srcBits)});
}
