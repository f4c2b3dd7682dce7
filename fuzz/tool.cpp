// The tool's readers, fed with a file, and its options, fed with text: an input that begins as a
// picture does is one, and any other is lines such as "--scale 50%". What follows the head of a BMP
// file is a DIB for the library and its clipboard too.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/world.h"
#include "tools/formats/gimp_palette.h"
#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"
#include "tools/operations/geometry_operations.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/operation.h"
#include "tools/operations/reduction.h"
#include "tools/operations/save_bitmap.h"
#include "tools/operations/value_parsers.h"
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

void ReadPicture(const std::string& path, const ReadOptions& options, Bitmap& bitmap) {
  const auto picture = OpenPicture(path, options);
  const PictureInfo& info = picture->Info();
  if (int64_t{info.width} * info.height > 2'000'000) return;
  LoadBitmap(*picture, STORAGE_AUTO, bitmap);
}

// A block of global memory with a DIB that somebody else made.
HGLOBAL BlockOf(const uint8_t* dib, size_t size) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
  if (void* const at = GlobalLock(block)) {
    std::memcpy(at, dib, size);
    GlobalUnlock(block);
  }
  return block;
}

void TakeDib(World& world, const uint8_t* dib, size_t size) {
  const HGLOBAL block = BlockOf(dib, size);
  if (Vn_ChangeFromDIB(world.Fresh(), block) != OK) GlobalFree(block);
  const HGLOBAL pasted = BlockOf(dib, size);
  if (!OpenClipboard(nullptr)) std::abort();
  EmptyClipboard();
  if (!SetClipboardData(CF_DIB, pasted)) GlobalFree(pasted);
  CloseClipboard();
  Vn_CopyFromClipboard(nullptr, world.Fresh());
}

// Scaling to what takes longer than a moment.
bool IsLong(const std::string& option, const std::string& value) {
  if (option != "--scale" && option != "--resample" && option != "--fit" &&
      option != "--fill-box") {
    return false;
  }
  if (const auto size = ParseSize(value)) return int64_t{size->width} * size->height > 1 << 18;
  return std::atof(value.c_str()) > 1000;
}

// All that `vncore convert` can do to a picture.
const std::vector<OperationKind>& Kinds() {
  static const GeometrySettings settings;
  static const std::vector<OperationKind> kinds = [] {
    std::vector<OperationKind> all = OperationKinds();
    for (const OperationKind& kind : GeometryKinds(&settings))
      all.push_back(kind);
    return all;
  }();
  return kinds;
}

// "@" is a picture of 2 by 2 pixels; other files stay unread.
std::string NameFiles(std::string value) {
  static const uint8_t kBmp[54 + 16] = {'B', 'M', 70, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40,
                                        0,   0,   0,  2, 0, 0, 0, 2, 0, 0, 0,  1, 0, 24};
  static const MemoryFile bmp(kBmp, sizeof kBmp);
  std::replace(value.begin(), value.end(), '/', '_');
  if (value.starts_with('@')) value = bmp.Path() + value.substr(1);
  return value;
}

void RunOption(const std::string& option, const std::string& value, Bitmap& bitmap) {
  ParseSize(value), ParsePart(value), ParseColor(value), ParseStorage(value);
  for (const OperationKind& kind : Kinds()) {
    if (kind.option != option || IsLong(option, value)) continue;
    if (const auto operation = kind.parse(NameFiles(value))) (*operation)(bitmap);
  }
  for (const auto& setting : Reduction::Settings()) {
    if (setting.option != option) continue;
    Reduction reduction;
    if (reduction.Take(option, NameFiles(value))) reduction.Build()(bitmap);
  }
}

void RunOptions(std::string_view text, Bitmap& bitmap) {
  if (Vn_CreateBitmap(bitmap, STORAGE_AUTO, 40, 30, 24, ORDER_BGR, nullptr, VIEW_TOP_FIRST) != OK) {
    return;
  }
  for (int left = 8; left > 0 && !text.empty(); --left) {
    const std::string line(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    const size_t space = line.find(' ');
    RunOption(line.substr(0, space), space == line.npos ? "" : line.substr(space + 1), bitmap);
    // A picture that grew beyond what a moment does is not gone on with.
    if (bitmap->DataSize > 1 << 20) return;
  }
}

void Run(World& world, const uint8_t* data, size_t size) {
  constexpr size_t kFileHeader = 14;
  if (size > kFileHeader && data[0] == 'B' && data[1] == 'M') {
    TakeDib(world, data + kFileHeader, size - kFileHeader);
  }
  const MemoryFile file(data, size);
  bool isPicture = true;
  ReadOptions managed;
  managed.srgb = true;
  try {
    for (const ReadOptions& options : {ReadOptions{}, managed}) {
      Bitmap bitmap;
      ReadPicture(file.Path(), options, bitmap);
    }
  } catch (const Failure& failure) {
    isPicture = std::string_view(failure.what()).find(": not a ") == std::string_view::npos;
  }
  if (!isPicture) {
    Bitmap other;
    RunOptions({reinterpret_cast<const char*>(data), size}, other);
    NoFile sink;
    if (other->Flags & FLAG_ALLOCATED) SaveBitmap(other, sink);
  }
}

}  // namespace

}  // namespace vn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  for (const bool win32s : {false, true}) {
    vn::fuzz::World world(win32s);
    try {
      vn::fuzz::Run(world, data, size);
    } catch (const vn::tool::Failure&) {
      // One line on standard error.
    } catch (const std::bad_alloc&) {
      // Another.
    }
  }
  return 0;
}
