// The two 8 by 8 threshold matrices of ordered dithering, indexed by row and column.
#ifndef VNCORE_COLOR_THRESHOLD_MATRICES_H
#define VNCORE_COLOR_THRESHOLD_MATRICES_H

#include <cstdint>

namespace vn {

// Close to the recursive ordered matrix, not equal to it: 232 stands twice, and stays so, because
// pictures depend on the exact bytes.
inline constexpr uint8_t OrderedMatrix[8][8] = {
    {0, 128, 32, 160, 8, 136, 40, 168},   {192, 64, 224, 96, 200, 72, 232, 104},
    {48, 176, 16, 144, 56, 184, 24, 152}, {236, 112, 208, 80, 244, 120, 216, 88},
    {12, 140, 44, 172, 4, 132, 36, 164},  {204, 76, 232, 108, 196, 68, 228, 100},
    {60, 188, 28, 156, 52, 180, 20, 148}, {248, 124, 220, 92, 240, 116, 212, 84}};

// Grows two clustered dots, for devices that smear single pixels.
inline constexpr uint8_t ClusteredMatrix[8][8] = {
    {112, 40, 72, 104, 144, 176, 208, 136}, {88, 8, 16, 48, 192, 232, 240, 168},
    {56, 24, 0, 80, 160, 224, 248, 200},    {96, 64, 32, 120, 128, 216, 184, 152},
    {148, 180, 212, 140, 116, 44, 76, 108}, {196, 236, 244, 172, 92, 12, 20, 52},
    {164, 228, 252, 204, 60, 28, 4, 84},    {132, 220, 188, 156, 100, 68, 36, 124}};

}  // namespace vn

#endif
