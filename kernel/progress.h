// The one scheme by which long operations report progress and hear a stop.
#ifndef VNCORE_KERNEL_PROGRESS_H
#define VNCORE_KERNEL_PROGRESS_H

#include "kernel/stepper.h"
#include "kernel/vncore.h"

namespace vn {

// Takes the thread's callback once. Begin() tells it the start percentage, Step() follows each unit
// of work. Both return false when the callback asked to stop; Result() is then its value. With more
// units than percent, the callback hears each whole percent; the last unit always gives `end`.
class Progress {
 public:
  explicit Progress(uint32_t units, int32_t start = 0, int32_t end = 100)
      : callback_(Vn_GetStatusCallBack()), percent_(start) {
    if (callback_ && units) step_ = Stepper::Dividing(static_cast<uint32_t>(end - start), units);
  }

  bool Begin() { return !callback_ || Tell(); }

  bool Step() {
    if (!callback_) return true;
    const bool carried = step_.WouldCarry();
    percent_ += static_cast<int32_t>(step_.Advance());
    return (carried || step_.quotient) ? Tell() : true;
  }

  VnStatus Result() const { return result_; }

 private:
  bool Tell() {
    result_ = callback_(percent_);
    return result_ == OK;
  }

  VnStatusCallBack callback_;
  int32_t percent_;
  Stepper step_{};
  VnStatus result_ = OK;
};

}  // namespace vn

#endif
