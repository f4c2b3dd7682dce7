// The error-diffusion filters as data. The loops are made from them by templates, those
// of vectors too: so nothing here becomes code.
#ifndef VNCORE_COLOR_DITHER_FILTERS_H
#define VNCORE_COLOR_DITHER_FILTERS_H

#include <cstdint>

namespace vn {

inline constexpr int kMostReach = 3;

// Where the error of a pixel goes. Row 0 of the weights is the present line, rows 1 to `rows` the
// following ones; column kMostReach is the pixel's own, the next one that of the pixel to its right.
struct DiffusionFilter {
  int32_t divisor;
  int32_t reach;  // columns to either side
  int32_t rows;   // lines below
  int16_t weights[4][2 * kMostReach + 1];
};

// By method; 0 has none. 1: Floyd and Steinberg 1976. 2: Stucki 1981. 3: Burkes 1988. 4: Sierra
// 1989. 5: Stevenson and Arce 1985, made for hexagonal grids. 6: Jarvis, Judice and Ninke 1976.
inline constexpr DiffusionFilter kDiffusionFilters[] = {
    {},
    {16, 1, 1, {{0, 0, 0, 0, 7, 0, 0}, {0, 0, 3, 5, 1, 0, 0}}},
    {42, 2, 2, {{0, 0, 0, 0, 8, 4, 0}, {0, 2, 4, 8, 4, 2, 0}, {0, 1, 2, 4, 2, 1, 0}}},
    {32, 2, 1, {{0, 0, 0, 0, 8, 4, 0}, {0, 2, 4, 8, 4, 2, 0}}},
    {32, 2, 2, {{0, 0, 0, 0, 5, 3, 0}, {0, 2, 4, 5, 4, 2, 0}, {0, 0, 2, 3, 2, 0, 0}}},
    {200,
     3,
     3,
     {{0, 0, 0, 0, 0, 32, 0},
      {12, 0, 26, 0, 30, 0, 16},
      {0, 12, 0, 26, 0, 12, 0},
      {5, 0, 12, 0, 12, 0, 5}}},
    {48, 2, 2, {{0, 0, 0, 0, 7, 5, 0}, {0, 3, 5, 7, 5, 3, 0}, {0, 1, 3, 5, 3, 1, 0}}},
};
inline constexpr int32_t kLastDiffusionMethod = 6;

}  // namespace vn

#endif
