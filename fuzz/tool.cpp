// The tool's readers, fed with a file, and its option values, fed with text: an input that begins
// as a picture does is one, and any other is lines of an operation's letter and value.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include "fuzz/world.h"
#include "tools/formats/gimp_palette.h"
#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/operation.h"
#include "tools/operations/option_values.h"
#include "tools/operations/reduction.h"
#include "tools/operations/save_bitmap.h"
#include "tools/terminal/failure.h"

namespace vn::fuzz {

namespace {

using namespace vn::tool;

// A file without a name on any disk.
class MemoryFile {
 public:
  MemoryFile(const uint8_t* data, size_t size) : file_(memfd_create("input", 0)) {
    if (file_ < 0 || write(file_, data, size) != static_cast<ssize_t>(size)) std::abort();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(file_); }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

class NoFile : public PictureSink {
 public:
  void WriteRow(const uint8_t*) override {}
  void Finish() override {}
};

void ReadPicture(const std::string& path, Bitmap& bitmap) {
  const auto picture = OpenPicture(path, {});
  const PictureInfo& info = picture->Info();
  if (int64_t{info.width} * info.height > 2'000'000) return;
  LoadBitmap(*picture, STORAGE_AUTO, bitmap);
}

// Scaling to what takes longer than a moment.
bool IsLong(const OperationKind& kind, const std::string& value) {
  if (kind.option != "--scale") return false;
  if (const auto size = ParseSize(value)) return int64_t{size->width} * size->height > 1 << 18;
  return std::atof(value.c_str()) > 1000;
}

// A letter chooses the option; the rest of the line is its value.
void RunOperations(std::string_view text, Bitmap& bitmap) {
  if (Vn_CreateBitmap(bitmap, STORAGE_AUTO, 40, 30, 24, ORDER_BGR, nullptr, VIEW_TOP_FIRST) != OK) {
    return;
  }
  const auto& kinds = OperationKinds();
  const auto& settings = Reduction::Settings();
  for (int left = 8; left > 0 && !text.empty(); --left) {
    const std::string line(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (line.empty()) continue;
    const std::string value = line.substr(1);
    const size_t which = static_cast<uint8_t>(line[0] - 'a') % (kinds.size() + settings.size());
    ParseSize(value), ParseArea(value), ParseColor(value), ParseStorage(value);
    if (which < kinds.size()) {
      if (IsLong(kinds[which], value)) return;
      if (const auto operation = kinds[which].parse(value)) (*operation)(bitmap);
      // A picture that grew beyond what a moment does is not gone on with.
      if (bitmap->DataSize > 1 << 20) return;
    } else if (value.find('/') == value.npos) {
      Reduction reduction;
      if (reduction.Take(settings[which - kinds.size()].option, value)) reduction.Build()(bitmap);
    }
  }
}

void Run(const uint8_t* data, size_t size) {
  const MemoryFile file(data, size);
  bool isPicture = true;
  Bitmap bitmap;
  try {
    ReadPicture(file.Path(), bitmap);
  } catch (const Failure& failure) {
    isPicture = std::string_view(failure.what()).find(": not a ") == std::string_view::npos;
  }
  if (!isPicture) {
    Bitmap other;
    RunOperations({reinterpret_cast<const char*>(data), size}, other);
    NoFile sink;
    if (other->Flags & FLAG_ALLOCATED) SaveBitmap(other, sink);
  }
}

}  // namespace

}  // namespace vn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  for (const bool win32s : {false, true}) {
    const vn::fuzz::World world(win32s);
    try {
      vn::fuzz::Run(data, size);
    } catch (const vn::tool::Failure&) {
      // One line on standard error.
    } catch (const std::bad_alloc&) {
      // Another.
    }
  }
  return 0;
}
