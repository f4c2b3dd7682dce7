// The pieces of which an effect makes up a rectangle, in their order. Nothing here paints.
#ifndef VNCORE_DEVICE_EFFECT_PIECES_H
#define VNCORE_DEVICE_EFFECT_PIECES_H

#include <vncore/vn_effect.h>

namespace vn {

// Takes the pieces. Every call answers false when the walk is to stop.
class PieceSink {
 public:
  virtual ~PieceSink() = default;
  // Before the first unit: how many there will be. An estimate may be off to either side.
  enum class Count { kExact, kEstimate };
  virtual bool Begin(uint32_t units, Count count) = 0;
  // One unit of work: `count` pieces, or none.
  virtual bool Unit(const RECT* pieces, size_t count) = 0;
};

// Walks over `area`, which is not empty. `effect` is an EFFECT_ value but EFFECT_PLAIN. Together
// the pieces cover the area, and lie in it but for EFFECT_SPIRAL_OUT, whose innermost ring starts
// from half the area's size and whose outermost may thus reach up to 15 pixels beyond.
void WalkPieces(uint32_t effect, const RECT& area, PieceSink& sink);

// Whether the effect shows the caller's source rectangle; the others show the whole bitmap.
bool ShowsSource(uint32_t effect);

}  // namespace vn

#endif
