// Brightness of a row of pixels shifted by a row of grays. No inline functions here: the vector form
// includes this.
#ifndef VNCORE_COMPOSE_UNDERLAY_ROWS_H
#define VNCORE_COMPOSE_UNDERLAY_ROWS_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Adds grays[x] - 128 to the three bytes of pixel x, within 0 to 255. The rows are apart.
using ShadeRow = void (*)(uint8_t* pixels, const uint8_t* grays, size_t width);

void ShadePlain(uint8_t* pixels, const uint8_t* grays, size_t width);
void ShadeAvx2(uint8_t* pixels, const uint8_t* grays, size_t width);

}  // namespace vn

#endif
