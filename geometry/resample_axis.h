// One axis of a resampling.
#ifndef VNCORE_GEOMETRY_RESAMPLE_AXIS_H
#define VNCORE_GEOMETRY_RESAMPLE_AXIS_H

#include "kernel/stepper.h"

namespace vn {

// Old places become fewer new ones, each the average of a cell of old ones, or more: then each old
// place begins a span of new ones on the line to the next old place. An axis that keeps its size
// counts as enlarging, in spans of 1.
struct ResampleAxis {
  uint32_t oldSize, newSize;

  bool Enlarges() const { return oldSize <= newSize; }
  // The sizes of the cells, one for each new place, or the lengths of the spans, one for each old
  // place: this quotient, or 1 more.
  Stepper Sizes() const {
    return Enlarges() ? Stepper::Dividing(newSize, oldSize) : Stepper::Dividing(oldSize, newSize);
  }
  uint32_t LargestSize() const {
    const Stepper sizes = Sizes();
    return sizes.quotient + (sizes.remainder ? 1 : 0);
  }
  // Enlarging, half a span goes before the first one in the colour of the first old place, so that
  // old places lie in the middle of what they cover.
  uint32_t Lead() const { return Sizes().quotient / 2; }
};

}  // namespace vn

#endif
