// The operations of vncore convert. Each kind tells its own option, form and help, and the command
// line is made from that.
#ifndef VNCORE_TOOLS_OPERATION_H
#define VNCORE_TOOLS_OPERATION_H

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/formats/picture.h"
#include "tools/operations/bitmap.h"

namespace vn::tool {

// One step of a conversion. Throws Failure.
class Operation {
 public:
  using Run = std::function<void(Bitmap&)>;
  using Stream = std::function<std::unique_ptr<PictureSource>(std::unique_ptr<PictureSource>)>;

  struct WideSize {
    int64_t width, height;
  };
  struct Averaging {
    std::function<WideSize(int64_t width, int64_t height)> sizeOf;
    std::function<void(Bitmap&, WideSize)> run;
  };

  // `run` changes a bitmap and reports to the thread's status callback.
  template <std::convertible_to<Run> Function>
  Operation(Function run)
      : run_(std::move(run)) {}  // NOLINT: as a function passes for a std::function
  // `stream` makes of a stream (see row_streams.h) one whose rows are those that `run` gives.
  Operation(Run run, Stream stream) : run_(std::move(run)), stream_(std::move(stream)) {}

  // Averages a bitmap to the size that `sizeOf` makes of its own.
  explicit Operation(Averaging averaging)
      : run_([averaging](Bitmap& bitmap) {
          averaging.run(bitmap, averaging.sizeOf(bitmap->Width, bitmap->Height));
        }),
        averaging_(std::move(averaging)) {}

  void operator()(Bitmap& bitmap) const { run_(bitmap); }
  // Empty where the operation needs the whole picture.
  const Stream& AsStream() const { return stream_; }
  // Null for all others: what is averaged may be read smaller than it is.
  const Averaging* AsAveraging() const { return averaging_ ? &*averaging_ : nullptr; }

 private:
  Run run_;
  Stream stream_;
  std::optional<Averaging> averaging_;
};

struct OperationKind {
  std::string option;  // "--crop"
  std::string form;    // what its value looks like; empty: it takes none
  std::string help;
  // The operation for a value, or nothing for a value that is not of the form.
  std::function<std::optional<Operation>(const std::string& value)> parse;
};

// All kinds but colour reduction and those of geometry, in the order of the help.
const std::vector<OperationKind>& OperationKinds();

// What parses an operation that takes no value.
std::function<std::optional<Operation>(const std::string&)> PlainOperation(
    const char* option, VnStatus(VN_CALL* operation)(BitmapHandle*));

// Throws Failure for anything but OK, in the name of an option; Interruption after a signal.
void RequireDone(const std::string& option, VnStatus status);

}  // namespace vn::tool

#endif
