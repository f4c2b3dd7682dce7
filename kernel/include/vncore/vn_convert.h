/* Conversion of pixel rows between formats, without dithering, and match tables. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_CONVERT_H
#define VNCORE_VN_CONVERT_H

VN_BEGIN_C

/* Depth code of Vn_ConvertBuffer: one byte per pixel that is itself a gray level. */
enum { VN_BPP_GRAY = 0 };

/* Converts `width` pixels in place from (`srcBits`, `srcOrder`) to (`dstBits`, `dstOrder`). Depths
 * are 1, 4, 8, 16, 24, 32 or BPP_GRAY; orders matter above 8 bits. Colour tables serve depths 1, 4
 * and 8 and are taken to be full (2, 16, 256 entries); null means the fixed palette. `buffer` holds
 * a row of either format, see Vn_CalcConvertSize. Colours go to palettes by nearest match.
 * Returns OK, or ERR_INVALID_PARAMETER with the buffer untouched. */
VN_API Vn_Status VN_CALL Vn_ConvertBuffer(void* buffer, uint32_t width, uint32_t srcBits,
                                          uint32_t dstBits, uint32_t srcOrder, uint32_t dstOrder,
                                          const Vn_RGBQUAD* srcColors, const Vn_RGBQUAD* dstColors);
/* Bytes of a buffer that serves both rows of a conversion: the largest stride of `dstWidth` pixels
 * at either depth and `srcWidth` pixels at `srcBits`. A depth of 0 counts as 8. */
VN_API uint32_t VN_CALL Vn_CalcConvertSize(uint32_t srcWidth, uint32_t srcBits, uint32_t dstWidth,
                                           uint32_t dstBits);

/* A match table: 32768 words by 15-bit colour (5 bits each of red, green, blue, red on top), each
 * an index into `colors` plus 1, the entry nearest to the cell's low corner; all 0, which stands for
 * no answer yet, without colours. The caller owns it and frees it with Vn_FreeUserMatchTable. Null
 * when memory fails. */
VN_API uint32_t* VN_CALL Vn_CreateUserMatchTable(const Vn_RGBQUAD* colors, uint32_t count);
/* Sets the calling thread's match table, neither copied nor checked; returns the previous one. */
VN_API uint32_t* VN_CALL Vn_SetUserMatchTable(uint32_t* table);
/* Frees a table, or does nothing for null. The thread's setting is not cleared. Returns OK. */
VN_API Vn_Status VN_CALL Vn_FreeUserMatchTable(uint32_t* table);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_CONVERT_NAMES)
#define VNCORE_VN_CONVERT_NAMES
enum { BPP_GRAY = VN_BPP_GRAY };
#endif
