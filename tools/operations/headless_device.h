// The device that the tool paints on: the headless platform's screen.
#ifndef VNCORE_TOOLS_HEADLESS_DEVICE_H
#define VNCORE_TOOLS_HEADLESS_DEVICE_H

#include <vncore/vncore.h>
#include "tools/formats/picture.h"

namespace vn::tool {

// Makes the platform claim Win32s, where disk storage is a real temporary file. Before any bitmap.
void ClaimWin32s();

class HeadlessDevice {
 public:
  // A screen of `bits` (1, 4, 8, 16 or 24); 8 bits make a palette device.
  HeadlessDevice(int32_t width, int32_t height, int32_t bits);

  // Realises the bitmap's paint palette and paints rows and columns `source` (null: all) over the
  // whole screen.
  void Paint(BitmapHandle* bitmap, const RECT* source);

  // The same with an effect (an EFFECT_ value), after `before`, all of it and by colours, was put
  // on the screen if it has pixels. Calls the thread's status callback from the effect alone.
  void PaintEffect(BitmapHandle* bitmap, const RECT* source, uint32_t effect, BitmapHandle* before);

  // What the screen shows, as a picture: paletted up to 8 bits, else 24 bits.
  PictureInfo Info() const;
  void WriteTo(PictureSink& sink) const;

 private:
  int32_t width_;
  int32_t height_;
};

}  // namespace vn::tool

#endif
