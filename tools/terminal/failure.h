// The one way in which the tool gives up: main() prints the message on one line and exits with 1.
#ifndef VNCORE_TOOLS_FAILURE_H
#define VNCORE_TOOLS_FAILURE_H

#include <stdexcept>
#include <string>

#include <vncore/vn_status.h>

namespace vn::tool {

class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A status of the library in words.
inline std::string StatusText(VnStatus status) {
  switch (status) {
    case ERR_NO_MEMORY:
      return "there is not enough memory or temporary space";
    case ERR_FILE_SEEK:
      return "a seek in the temporary file failed";
    case ERR_FILE_WRITE:
      return "the temporary file cannot be written (is the disk full?)";
    case ERR_FILE_READ:
      return "the temporary file cannot be read";
    case ERR_EMPTY_BITMAP:
      return "the picture has no pixels";
    default:
      return "the library returned " + std::to_string(status);
  }
}

}  // namespace vn::tool

#endif
