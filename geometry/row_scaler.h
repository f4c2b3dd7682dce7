// The rows of one bitmap scaled to one width, with what can be known beforehand worked out once.
#ifndef VNCORE_GEOMETRY_ROW_SCALER_H
#define VNCORE_GEOMETRY_ROW_SCALER_H

#include "geometry/row_scaler_loops.h"
#include "kernel/scratch_buffer.h"
#include "kernel/stepper.h"

namespace vn {

// Does what ScaleRow does from the first pixel on. From 8 bits up, where there are vectors, the
// places of all bytes are laid down at the start: 16 bytes of the new row come from up to four
// neighbouring 16-byte pieces of the old one, picked by masks. Otherwise, also when there is no
// memory for the masks, each row goes through ScaleRow.
class RowScaler {
 public:
  // `across` steps over the source, its divisor being the new width. Rows of `oldWidth` pixels are
  // read; `rowBytes` is what ScaleRow zeroes at 1 bit.
  RowScaler(int32_t bitsPerPixel, const Stepper& across, uint32_t oldWidth, uint32_t rowBytes,
            bool expand);

  // Writes a row of the new width. The rows must be apart.
  void Scale(const uint8_t* source, uint8_t* destination) const;

 private:
  bool Plan(uint32_t oldWidth);
  // Where piece `index` of the new row begins: the last one may overlap the one before it.
  uint32_t PieceStart(uint32_t index) const;

  int32_t bitsPerPixel_;
  Stepper across_;
  uint32_t rowBytes_;
  bool expand_;

  uint32_t targetBytes_ = 0;
  PickLoop vector_ = nullptr;
  PickPlan plan_{};
  ScratchBuffer<uint32_t> offsets_;
  ScratchBuffer<uint8_t> masks_;
};

}  // namespace vn

#endif
