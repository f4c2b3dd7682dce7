// The one scheme by which long operations report progress and hear a stop.
#ifndef VNCORE_KERNEL_PROGRESS_H
#define VNCORE_KERNEL_PROGRESS_H

#include <vncore/vncore.h>
#include "kernel/stepper.h"

namespace vn {

// Takes the thread's callback once. Begin() tells it the start percentage, Step() follows each unit
// of work. Both return false when the callback asked to stop; Result() is then its value. With more
// units than percent, the callback hears each whole percent; the last unit always gives `end`.
// Without any unit the start is all that it hears. An end below the start wraps in 32 bits.
class Progress {
 public:
  explicit Progress(uint32_t units, int32_t start = 0, int32_t end = 100)
      : callback_(Vn_GetStatusCallBack()),
        percent_(static_cast<uint32_t>(start)),
        end_(static_cast<uint32_t>(end)) {
    if (callback_ && units) step_ = Stepper::Dividing(end_ - percent_, units);
  }

  bool Begin() { return !callback_ || Tell(); }

  bool Step() { return !callback_ || !Advance() || Tell(); }

  // For work from 0 to 100 whose units are estimated: as Step, but silent from the end percentage
  // on, which End tells when the work is done.
  bool StepShortOfEnd() { return !callback_ || !Advance() || percent_ >= end_ || Tell(); }
  bool End() {
    percent_ = end_;
    return Begin();
  }

  // Calls of the callback so far.
  uint32_t Calls() const { return calls_; }
  VnStatus Result() const { return result_; }
  // As far as the callback was to hear; without one, the start.
  int32_t Percent() const { return percent_; }

  // Nobody listens: units need not be told one by one.
  bool Silent() const { return !callback_; }

 private:
  // True when the callback is to hear of the unit.
  bool Advance() {
    const bool carried = step_.WouldCarry();
    percent_ += step_.Advance();
    return carried || step_.quotient;
  }

  bool Tell() {
    ++calls_;
    result_ = callback_(static_cast<int32_t>(percent_));
    return result_ == OK;
  }

  VnStatusCallBack callback_;
  uint32_t percent_;
  uint32_t end_;
  Stepper step_{};
  uint32_t calls_ = 0;
  VnStatus result_ = OK;
};

}  // namespace vn

#endif
