#include "tools/terminal/status_listener.h"

#include <utility>

#include "tools/terminal/interrupt.h"

namespace vn::tool {

thread_local StatusListener* StatusListener::current_ = nullptr;

StatusListener::StatusListener(Hear hear)
    : hear_(std::move(hear)),
      outer_(std::exchange(current_, this)),
      before_(Vn_SetStatusCallBack(&OnPercent)) {}

StatusListener::~StatusListener() {
  Vn_SetStatusCallBack(before_);
  current_ = outer_;
}

void StatusListener::Rethrow() const {
  if (thrown_) std::rethrow_exception(thrown_);
}

VnStatus VN_CALL StatusListener::OnPercent(int32_t percent) {
  // A shear to the left asks beyond its end until it may go on.
  if (PendingSignal() && percent <= 100) return kStopped;
  try {
    return current_->hear_(percent);
  } catch (...) {
    current_->thrown_ = std::current_exception();
    return kStopped;
  }
}

}  // namespace vn::tool
