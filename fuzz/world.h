// What the calls of one input work on: some bitmaps, palettes, regions and a device, made anew for
// each input and gone after it.
#ifndef VNCORE_FUZZ_WORLD_H
#define VNCORE_FUZZ_WORLD_H

#include <cstdlib>
#include <memory>
#include <vector>

#include <vncore/vncore.h>
#include "fuzz/input.h"

namespace vn::fuzz {

struct Size {
  uint32_t width, height;
};

class World {
 public:
  // The library freshly attached, as on Win32s or not.
  explicit World(bool win32s);
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  // Ends the program when something stays alive that no call had given to the world.
  ~World();

  // One of the bitmaps, in whatever state it is: with pixels, without, never made.
  BitmapHandle* Bitmap(Input& input) { return &bitmaps_[input.Below(kBitmaps)]; }
  // The next of the bitmaps after being freed, for a function that writes a record whole.
  BitmapHandle* Fresh();
  // Made through Vn_CreateBitmap or its parts, with random pixels.
  void Create(Input& input);

  // Any measures, of which those that are possible make at most 16 KB at `bits`, or one long row.
  // What is possible is a matter of the `least` depth, if that is another.
  Size TakeSize(Input& input, int32_t bits, int32_t least = 0);
  // 256 colours, valid until the next call.
  const RGBQUAD* Colors(Input& input);
  // A palette or a region of the world's own, one of a bitmap's or long dead, or none.
  HPALETTE Palette(Input& input);
  HRGN Region(Input& input);
  // The screen, a memory context with a surface of any depth, or none; until the next call.
  HDC Device(Input& input);

  // Takes over what a call returned, or 0. Palettes and regions.
  void Keep(HGDIOBJ object);
  // The same of a match table, which a thread's setting may name until the end.
  void Keep(uint32_t* table) { tables_.push_back(table); }
  // One object more stays alive than when the world began.
  static void Lose();

  // Writes random pixels.
  static void Scribble(Input& input, BitmapHandle* bitmap);

 private:
  void Make(Input& input, BitmapHandle* bitmap);
  HGDIOBJ AnyObject(Input& input);
  void ReleaseDevice();

  static constexpr size_t kBitmaps = 3;
  const bool win32s_;
  BitmapHandle bitmaps_[kBitmaps] = {};
  size_t fresh_ = 0;
  std::vector<HGDIOBJ> objects_;
  std::vector<uint32_t*> tables_;
  RGBQUAD colors_[256];
  HDC device_ = nullptr;
  HGDIOBJ surface_ = nullptr;
};

// Memory of exactly `bytes` bytes, so that one too far is seen.
inline std::unique_ptr<uint8_t[]> Buffer(Input& input, size_t bytes) {
  std::unique_ptr<uint8_t[]> buffer(new uint8_t[bytes]);
  input.Fill(buffer.get(), bytes);
  return buffer;
}

}  // namespace vn::fuzz

#endif
