// The device that the tool paints on: the headless platform's screen.
#ifndef VNCORE_TOOLS_HEADLESS_DEVICE_H
#define VNCORE_TOOLS_HEADLESS_DEVICE_H

#include <vncore/vncore.h>
#include "tools/formats/picture.h"

namespace vn::tool {

// Makes the platform claim Win32s, where disk storage is a real temporary file. While there is no
// bitmap; further calls change nothing.
void ClaimWin32s();

// A picture and where it comes.
struct Painting {
  BitmapHandle* bitmap;
  RECT source;       // columns and storage rows
  RECT destination;  // pixels of the screen, and beyond it
};

class HeadlessDevice {
 public:
  // A screen of `bits` (1, 4, 8, 16 or 24); 8 bits make a palette device.
  HeadlessDevice(int32_t width, int32_t height, int32_t bits);

  // All of the screen.
  RECT Area() const { return {0, 0, width_, height_}; }

  // Realises the bitmap's paint palette and paints. What the destination leaves of the screen
  // becomes black.
  void Paint(const Painting& picture);

  // The same with an effect (an EFFECT_ value), which runs in the bitmap's region if it has one. With
  // `before` the effect begins over that picture, in the nearest colours of the palette. Calls the
  // thread's status callback from the effect alone; false when that stopped it.
  bool PaintEffect(const Painting& picture, uint32_t effect, const Painting* before);

  // Makes the bitmap's region black where it would be painted, or without one the destination.
  void Blacken(const Painting& picture);

  // What the screen shows, as a picture: paletted up to 8 bits, else 24 bits.
  PictureInfo Info() const;
  void WriteTo(PictureSink& sink) const;

 private:
  int32_t width_;
  int32_t height_;
};

}  // namespace vn::tool

#endif
