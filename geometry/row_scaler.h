// The rows of one bitmap scaled to one width, with what can be known beforehand worked out once.
#ifndef VNCORE_GEOMETRY_ROW_SCALER_H
#define VNCORE_GEOMETRY_ROW_SCALER_H

#include "geometry/row_scaler_loops.h"
#include "kernel/scratch_buffer.h"
#include "kernel/stepper.h"

namespace vn {

// How rows are scaled, in the terms of ScaleRow.
struct RowScale {
  int32_t bitsPerPixel;
  Stepper across;       // from the accumulator on
  uint32_t startPixel;  // below 8 bits
  uint32_t oldPixels;   // of a source row, from the first one that is read on
  uint32_t newPixels;
  uint32_t rowBytes;
  bool expand;
};

// Does what ScaleRow does, for `rows` rows. Where there are vectors and rows enough to repay it, the
// places of all bytes are laid down at the start: 16 bytes of the new row come from up to four
// neighbouring 16-byte pieces of the old one, picked by masks. Below 8 bits each pixel picks its
// byte, and its bits in it are packed in a second step. Otherwise, also when there is no memory for
// the masks, each row goes through ScaleRow.
class RowScaler {
 public:
  RowScaler(const RowScale& scale, uint32_t rows);

  // Writes a row of new pixels. The rows must be apart.
  void Scale(const uint8_t* source, uint8_t* destination) const;

 private:
  bool Plan();
  bool PlanPacking();
  // Where piece `index` of the new row begins: the last one may overlap the one before it.
  uint32_t PieceStart(uint32_t index) const;

  RowScale scale_;
  uint32_t targetBytes_ = 0;  // that are picked
  uint32_t packedBytes_ = 0;  // below 8 bits: of a new row
  PickLoop vector_ = nullptr;
  PackLoop pack_ = nullptr;  // below 8 bits
  PickPlan plan_{};
  ScratchBuffer<uint32_t> offsets_;
  ScratchBuffer<uint8_t> masks_;
  ScratchBuffer<uint8_t> picked_;  // below 8 bits: for each new pixel its byte,
  ScratchBuffer<uint8_t> chosen_;  // and the bits of it that are the pixel
};

}  // namespace vn

#endif
