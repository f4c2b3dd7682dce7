// The position in which a camera held the picture, out of an Exif block.
#ifndef VNCORE_TOOLS_EXIF_ORIENTATION_H
#define VNCORE_TOOLS_EXIF_ORIENTATION_H

#include <cstddef>
#include <cstdint>

namespace vn::tool {

// Reads the orientation tag from what an APP1 marker of a JPEG file holds: 1 to 8, and 1 (upright)
// also for anything that is no Exif block, has no such tag or is damaged. One number of one
// directory needs no library, and the picture is then the same however the tool was built.
// CIPA DC-008 (Exif 2.32), sections 4.5 and 4.6.4.
int32_t ExifOrientation(const uint8_t* block, size_t size);

}  // namespace vn::tool

#endif
