// A text made of anything that can be written, for the reader of a failure.
#ifndef VNCORE_TESTS_SUPPORT_TOLD_H
#define VNCORE_TESTS_SUPPORT_TOLD_H

#include <sstream>
#include <string>

namespace vn::test {

template <class... Part>
std::string Told(const Part&... parts) {
  std::ostringstream text;
  ((text << parts << ' '), ...);
  return text.str();
}

}  // namespace vn::test

#endif
