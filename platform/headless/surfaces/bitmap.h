// Bitmap objects: device bitmaps and DIB sections.
#ifndef VNCORE_PLATFORM_HEADLESS_BITMAP_H
#define VNCORE_PLATFORM_HEADLESS_BITMAP_H

#include <memory>

#include "platform/headless/memory/mappings.h"
#include "platform/headless/objects/objects.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

// Rows of device bitmaps are padded to 2 bytes where they cross the interface.
constexpr uint64_t WordRowBytes(uint64_t width, uint32_t bits) {
  return (width * bits + 15) / 16 * 2;
}

class Bitmap : public Object {
 public:
  // A device bitmap with zeroed rows, from the top down. Throws when memory fails.
  Bitmap(int32_t width, int32_t height, uint32_t bits, std::shared_ptr<ColorTable> colors);
  // A DIB section over its own memory or over a mapping that it holds.
  Bitmap(const Surface& rows, Pages memory, std::shared_ptr<Mapping> mapping);

  int Describe(int bytes, void* result) const override;
  HGDIOBJ SelectInto(Context& context, HGDIOBJ self) override;

  // The row that lies first in memory.
  uint8_t* bits() const {
    return surface.pitch < 0 ? surface.Row(surface.height - 1) : surface.top;
  }
  bool section() const { return section_; }

  Surface surface;
  bool selected = false;  // in a context, and so in no other

 private:
  Pages memory_;
  std::shared_ptr<Mapping> mapping_;
  const bool section_;
};

// The monochrome pixel that every memory context begins with.
HBITMAP DefaultBitmap();

}  // namespace headless

#endif
