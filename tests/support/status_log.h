// A status callback that writes down what it hears, and can stop the operation.
#ifndef VNCORE_TESTS_SUPPORT_STATUS_LOG_H
#define VNCORE_TESTS_SUPPORT_STATUS_LOG_H

#include <vector>

#include <vncore/vncore.h>

namespace vn::test {

// Installed while it lives. The call number `stopAt`, the first being 1, answers `stopValue`.
class StatusLog {
 public:
  explicit StatusLog(size_t stopAt = 0, VnStatus stopValue = 77)
      : stopAt_(stopAt), stopValue_(stopValue), before_(Current()) {
    Current() = this;
    callback_ = Vn_SetStatusCallBack(&Hear);
  }
  StatusLog(const StatusLog&) = delete;
  StatusLog& operator=(const StatusLog&) = delete;
  ~StatusLog() {
    Vn_SetStatusCallBack(callback_);
    Current() = before_;
  }

  const std::vector<int32_t>& percents() const { return percents_; }

 private:
  static StatusLog*& Current() {
    static StatusLog* current = nullptr;
    return current;
  }
  static VnStatus VN_CALL Hear(int32_t percent) {
    StatusLog& log = *Current();
    log.percents_.push_back(percent);
    return log.percents_.size() == log.stopAt_ ? log.stopValue_ : static_cast<VnStatus>(OK);
  }

  size_t stopAt_;
  VnStatus stopValue_;
  StatusLog* before_;
  VnStatusCallBack callback_;
  std::vector<int32_t> percents_;
};

// What the scheme makes a callback hear for `units` units of work, from `start` to `end` percent.
inline std::vector<int32_t> ExpectedPercents(int64_t units, int32_t start = 0, int32_t end = 100) {
  std::vector<int32_t> percents{start};
  for (int64_t unit = 1; unit <= units; ++unit) {
    const auto percent = static_cast<int32_t>(start + unit * (end - start) / units);
    if (units <= end - start || percent != percents.back()) percents.push_back(percent);
  }
  return percents;
}

}  // namespace vn::test

#endif
