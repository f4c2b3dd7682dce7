// The nearest entry of a colour table, and maps of whole palettes made with it.
#ifndef VNCORE_COLOR_COLOR_MATCH_H
#define VNCORE_COLOR_COLOR_MATCH_H

#include <vncore/vncore.h>
#include "color/color_match_avx2.h"
#include "kernel/pixel_format.h"

namespace vn {

// Index of the entry of `colors` nearest to the colour (channels 0 to 255) by squared distance.
// Black and white look at the table's ends first; among equally near entries the first one wins,
// unless a later one is of the wanted colour's hue family: then the last such. 0xFFFFFFFF for
// `count` 0 when no short cut applied; the table needs one readable entry even then.
uint32_t ColorMatch(const RGBQUAD* colors, uint32_t count, uint32_t red, uint32_t green,
                    uint32_t blue);

// The search proper, without the look at the ends that ColorMatch takes first. `vectors` is what
// NearestForm gives, asked once for many searches: null without vectors.
uint32_t NearestEntry(const RGBQUAD* colors, uint32_t count, Rgb wanted, NearestVectors* vectors);
NearestVectors* NearestForm();

// A colour as the vector forms take it.
inline uint32_t WordOf(Rgb c) { return static_cast<uint32_t>(c.red << 16 | c.green << 8 | c.blue); }

// Fills `map` with the destination index (or gray, for null `dstColors`) of each source index (or
// gray level, for null `srcColors`). Returns 1 when the map is the identity, else 0.
int32_t BuildColorMap(const RGBQUAD* srcColors, uint32_t srcCount, const RGBQUAD* dstColors,
                      uint32_t dstCount, uint8_t* map);

// Fills `width` pixels of `row` with `color` in the format of `bitmap` (by its active palette up to
// 8 bits; whole bytes). Returns 1.
int32_t FillRowColor(BitmapHandle* bitmap, COLORREF color, uint8_t* row, uint32_t width);

}  // namespace vn

#endif
