// The library's status callback as an object.
#ifndef VNCORE_TOOLS_STATUS_LISTENER_H
#define VNCORE_TOOLS_STATUS_LISTENER_H

#include <exception>
#include <functional>

#include <vncore/vncore.h>

namespace vn::tool {

// What a listener answers to stop an operation: a value of the tool's own, neither OK nor an error of
// the library.
inline constexpr VnStatus kStopped = 0;

// While it lives it is the thread's status callback; of several the youngest hears. It stops
// operations after a signal by itself.
class StatusListener {
 public:
  // Hears a percentage and answers OK, or what stops the operation. What it throws stops it too.
  using Hear = std::function<VnStatus(int32_t percent)>;

  explicit StatusListener(Hear hear);
  StatusListener(const StatusListener&) = delete;
  StatusListener& operator=(const StatusListener&) = delete;
  ~StatusListener();

  // Throws what `hear` threw within the library, if anything.
  void Rethrow() const;

 private:
  static VnStatus VN_CALL OnPercent(int32_t percent);

  static thread_local StatusListener* current_;
  Hear hear_;
  StatusListener* outer_;
  VnStatusCallBack before_;
  std::exception_ptr thrown_;
};

}  // namespace vn::tool

#endif
