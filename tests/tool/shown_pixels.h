// What a picture shows, pixel by pixel.
#ifndef VNCORE_TESTS_TOOL_SHOWN_PIXELS_H
#define VNCORE_TESTS_TOOL_SHOWN_PIXELS_H

#include <cstdint>
#include <functional>
#include <string>

#include "tools/load_bitmap.h"

namespace vn::test {

// Reads a picture to its end, or throws Failure.
void Load(const std::string& path, Rgb background, tool::Bitmap& bitmap);

using ColorModel = std::function<Rgb(int32_t x, int32_t y)>;
// No channel of any pixel is further than `tolerance` from the model, `y` being 0 at the top.
void ExpectShows(tool::Bitmap& bitmap, const ColorModel& model, int32_t tolerance = 0);

}  // namespace vn::test

#endif
