// The 20 colours that a palette device keeps for the system, in the order of the default palette:
// the first ten lie at the low end of the system palette, the others at its high end.
#ifndef VNCORE_PLATFORM_HEADLESS_STATIC_COLORS_H
#define VNCORE_PLATFORM_HEADLESS_STATIC_COLORS_H

#include <vncore/platform/win32.h>

namespace headless {

inline constexpr int32_t kStaticColorCount = 20;
inline constexpr PALETTEENTRY kStaticColors[kStaticColorCount] = {
    {0, 0, 0, 0},       {128, 0, 0, 0},     {0, 128, 0, 0},     {128, 128, 0, 0},
    {0, 0, 128, 0},     {128, 0, 128, 0},   {0, 128, 128, 0},   {192, 192, 192, 0},
    {192, 220, 192, 0}, {166, 202, 240, 0},

    {255, 251, 240, 0}, {160, 160, 164, 0}, {128, 128, 128, 0}, {255, 0, 0, 0},
    {0, 255, 0, 0},     {255, 255, 0, 0},   {0, 0, 255, 0},     {255, 0, 255, 0},
    {0, 255, 255, 0},   {255, 255, 255, 0}};

}  // namespace headless

#endif
