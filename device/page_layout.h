// Where a picture stands on a printer page.
#ifndef VNCORE_DEVICE_PAGE_LAYOUT_H
#define VNCORE_DEVICE_PAGE_LAYOUT_H

#include <cstdint>

#include <vncore/platform/win32.h>

namespace vn {

// What a caller of the printing functions asks for; 0 leaves a value open.
struct Placement {
  int32_t x, y, width, height;
};

// The part of a page that a picture of this size covers: both sizes open make it as large as the
// page allows, one follows from the other by the picture's aspect, an open position centres. What
// reaches beyond the page is cut, so that the picture is squeezed. All zero when nothing is left.
RECT PlaceOnPage(const RECT& page, int32_t pictureWidth, int32_t pictureHeight,
                 const Placement& wanted);

}  // namespace vn

#endif
