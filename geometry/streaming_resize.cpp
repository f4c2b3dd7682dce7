// The streaming resizer: rows in, each scaled over itself and told how many times to emit.
#include <vncore/vncore.h>
#include "geometry/scale_row.h"
#include "geometry/scale_row_in_place.h"

struct Vn_ResizeState {
  int32_t LastRow;   // row of the call before, at first -1
  int32_t Backward;  // 1 while the accumulator counts for falling rows
  int32_t OldWidth;
  int32_t OldHeight;
  int32_t NewWidth;
  int32_t NewHeight;
  int32_t XStep;  // whole source pixels per destination pixel
  int32_t XRemainder;
  int32_t Reserved1;
  int32_t Reserved2;
  int32_t YStep;  // whole destination rows per source row
  int32_t YRemainder;
  int32_t Reserved3;
  int32_t YAccumulator;  // in 1/OldHeight of a destination row
};

namespace {

// The accumulator as it stands in front of `row`, in wrapping 32-bit arithmetic.
void Synchronise(ResizeState* state, uint32_t row, bool backward) {
  state->YAccumulator = static_cast<int32_t>(static_cast<uint32_t>(state->YRemainder) * row %
                                             static_cast<uint32_t>(state->OldHeight));
  state->Backward = backward;
}

// 1 when the step past a row carries into one more destination row, else 0.
uint32_t StepForward(ResizeState* state) {
  const auto height = static_cast<uint32_t>(state->OldHeight);
  const uint32_t sum =
      static_cast<uint32_t>(state->YAccumulator) + static_cast<uint32_t>(state->YRemainder);
  state->YAccumulator = static_cast<int32_t>(sum < height ? sum : sum - height);
  return sum >= height;
}

uint32_t StepBackward(ResizeState* state) {
  state->YAccumulator -= state->YRemainder;
  if (state->YAccumulator >= 0) return 0;
  state->YAccumulator += state->OldHeight;
  return 1;
}

uint32_t CountOf(ResizeState* state, uint32_t row) {
  const uint32_t delta = static_cast<uint32_t>(state->LastRow) - row;
  state->LastRow = static_cast<int32_t>(row);
  const auto whole = static_cast<uint32_t>(state->YStep);
  if (delta == 1) {
    if (!state->Backward) Synchronise(state, row, true);
    return whole + StepBackward(state);
  }
  if (delta != UINT32_MAX || state->Backward) Synchronise(state, row, false);
  return whole + StepForward(state);
}

void ScaleBuffer(const ResizeState& state, uint8_t* buffer, int32_t bitsPerPixel) {
  // A width below 0 has no pixels to take.
  if (state.OldWidth == state.NewWidth || state.OldWidth < 0) return;
  const auto width = static_cast<uint32_t>(state.NewWidth);
  const auto quotient = static_cast<uint32_t>(state.XStep);
  const auto remainder = static_cast<uint32_t>(state.XRemainder);
  const bool enlarge = state.OldWidth < state.NewWidth;
  if (enlarge || bitsPerPixel < 8) {
    vn::ScaleRowInPlace(bitsPerPixel, quotient, remainder, buffer, width, enlarge);
  } else {
    const uint32_t rowBytes =
        (static_cast<uint32_t>(state.OldWidth) * static_cast<uint32_t>(bitsPerPixel) + 7) >> 3;
    vn::ScaleRow(bitsPerPixel, rowBytes, 0, quotient, 0, remainder, buffer, buffer, width, width,
                 0);
  }
}

}  // namespace

VnStatus VN_CALL Vn_StartResize(int32_t oldWidth, int32_t oldHeight, int32_t newWidth,
                                int32_t newHeight, ResizeState** state) {
  if (newWidth < 1 || newHeight < 1) return ERR_INVALID_PARAMETER;
  if (oldHeight < 1) return ERR_INVALID_PARAMETER;  // a divisor
  auto* made = static_cast<ResizeState*>(Vn_OsAlloc(sizeof(ResizeState)));
  if (!made) return ERR_NO_MEMORY;
  *made = {};
  made->LastRow = -1;
  made->OldWidth = oldWidth;
  made->OldHeight = oldHeight;
  made->NewWidth = newWidth;
  made->NewHeight = newHeight;
  made->XStep = oldWidth / newWidth;
  made->XRemainder = oldWidth % newWidth;
  made->YStep = newHeight / oldHeight;
  made->YRemainder = newHeight % oldHeight;
  *state = made;
  return OK;
}

uint32_t VN_CALL Vn_Resize(uint8_t* buffer, uint32_t row, int32_t bitsPerPixel, uint32_t* outWidth,
                           uint32_t* outCount, ResizeState* state) {
  *outWidth = static_cast<uint32_t>(state->NewWidth);
  *outCount = 1;
  if (state->OldWidth == state->NewWidth && state->OldHeight == state->NewHeight) return 1;
  *outCount = CountOf(state, row);
  if (*outCount) ScaleBuffer(*state, buffer, bitsPerPixel);
  return *outCount;
}

VnStatus VN_CALL Vn_StopResize(ResizeState* state) {
  Vn_OsFree(state);
  return OK;
}
