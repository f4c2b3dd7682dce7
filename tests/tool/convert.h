// vncore convert on a picture of random pixels.
#ifndef VNCORE_TESTS_TOOL_CONVERT_H
#define VNCORE_TESTS_TOOL_CONVERT_H

#include "tests/tool/command.h"

namespace vn::test {

class Convert : public Command {
 protected:
  static constexpr int32_t kWidth = 61, kHeight = 34;

  Convert() {
    Make("in.png", kWidth, kHeight);
    in_ = Look("in.png");
  }
  // Converts `in` in both ways to hold a picture, which must give the same.
  Seen Result(const std::string& options, const std::string& in = "in.png") const {
    ExpectRuns("convert " + in + " out.png --low-memory --storage disk " + options);
    const std::string bytes = ReadFile(work_.File("out.png"));
    ExpectRuns("convert " + in + " out.png " + options);
    EXPECT_EQ(ReadFile(work_.File("out.png")), bytes) << options;
    return Look("out.png");
  }

  Seen in_;
};

}  // namespace vn::test

#endif
