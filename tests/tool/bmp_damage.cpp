// Damaged BMP files by the hundred thousand, through the tool's reader and, as a block of global
// memory, through the library: a file is a picture or a failure, leaves nothing alive, and is read
// within its bytes, which the sanitizers watch. Runs by scripts/damage_bmp.sh alone.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <vncore/platform/headless/headless.h>
#include "tests/tool/samples.h"
#include "tools/terminal/failure.h"

namespace vn::test {
namespace {

constexpr size_t kFileHeader = 14;
constexpr int64_t kMostPixels = 2'000'000;  // a claim beyond takes its time and tells nothing more

struct Counts {
  int64_t files = 0, pictures = 0, bitmaps = 0, pasted = 0;
};

class MemoryFile {
 public:
  explicit MemoryFile(const std::string& bytes) : file_(memfd_create("damaged", 0)) {
    if (file_ < 0 || write(file_, bytes.data(), bytes.size()) != ssize_t(bytes.size()))
      std::abort();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(file_); }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  const int file_;
};

bool ReadByTool(const std::string& bytes) {
  const MemoryFile file(bytes);
  try {
    const auto source = tool::OpenPicture(file.Path(), {});
    const tool::PictureInfo& info = source->Info();
    if (int64_t{info.width} * info.height > kMostPixels) return false;
    tool::Bitmap bitmap;
    tool::LoadBitmap(*source, STORAGE_AUTO, bitmap);
    return true;
  } catch (const tool::Failure& failure) {
    if (std::string(failure.what()).find('\n') != std::string::npos) std::abort();
    return false;
  }
}

HGLOBAL BlockOf(const std::string& bytes) {
  const size_t size = bytes.size() - std::min(bytes.size(), kFileHeader);
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
  if (void* const at = GlobalLock(block)) {
    std::memcpy(at, bytes.data() + kFileHeader, size);
    GlobalUnlock(block);
  }
  return block;
}

bool ChangeFromDib(const std::string& bytes) {
  const HGLOBAL block = BlockOf(bytes);
  OwnedBitmap bitmap;
  const bool taken = Vn_ChangeFromDIB(bitmap, block) == OK;
  if (!taken && GlobalFree(block)) std::abort();
  return taken;
}

bool Paste(const std::string& bytes) {
  const HGLOBAL block = BlockOf(bytes);
  OpenClipboard(nullptr);
  EmptyClipboard();
  if (!SetClipboardData(CF_DIB, block)) GlobalFree(block);
  CloseClipboard();
  OwnedBitmap bitmap;
  const bool pasted = Vn_CopyFromClipboard(nullptr, bitmap);
  OpenClipboard(nullptr);
  EmptyClipboard();
  CloseClipboard();
  return pasted;
}

// Half of the damage goes where the numbers stand, and half of that writes a number that is
// remarkable somewhere.
void Damage(Random& random, std::string* bytes) {
  constexpr uint32_t kRemarkable[] = {
      0,      1,      2,       12,         40,         255,        256,        257,       0x7FFF,
      0x8000, 0xFFFF, 0x10000, 0x3FFFFFFF, 0x40000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
  for (int32_t count = random.Between(1, 4); count > 0 && bytes->size() > 8; --count) {
    const auto last = static_cast<int32_t>(bytes->size()) - 4;
    const bool head = random.Chance(2);
    const auto at = static_cast<size_t>(random.Between(2, head ? std::min(last, 140) : last));
    if (head && random.Chance(2)) {
      const auto which = static_cast<size_t>(random.Between(0, std::size(kRemarkable) - 1));
      std::memcpy(&(*bytes)[at / 2 * 2], &kRemarkable[which], random.Chance(2) ? 2 : 4);
    } else {
      (*bytes)[at] = static_cast<char>(random.Next());
    }
  }
  if (random.Chance(8))
    bytes->resize(static_cast<size_t>(random.Between(2, int32_t(bytes->size()))));
  if (random.Chance(20)) bytes->append(static_cast<size_t>(random.Between(1, 2000)), '\x5A');
}

void Try(const std::string& bytes, Counts* counts) {
  Headless_Counts before, after;
  Headless_GetCounts(&before);
  ++counts->files;
  counts->pictures += ReadByTool(bytes);
  counts->bitmaps += ChangeFromDib(bytes);
  counts->pasted += Paste(bytes);
  Headless_GetCounts(&after);
  if (std::memcmp(&before, &after, sizeof before) != 0) {
    std::fprintf(stderr, "file %lld leaves something alive\n",
                 static_cast<long long>(counts->files));
    std::abort();
  }
}

// As on Win32s every third time: there blocks become storage.
void Run(int64_t files, uint64_t seed) {
  Random random(seed);
  Counts counts;
  for (int round = 0; counts.files < files; ++round) {
    Headless_SetVersion(round % 3 == 2 ? HEADLESS_VERSION_WIN32S : HEADLESS_VERSION_WIN32);
    if (!Headless_Restart()) std::abort();
    Vn_GetDisplayMode();  // the thread's settings exist before anything is counted
    ForBmpSamples(false, [&](const Sample& sample) {
      for (int i = 0; i < 20 && counts.files < files; ++i) {
        std::string bytes = sample.bytes;
        Damage(random, &bytes);
        Try(bytes, &counts);
      }
    });
  }
  std::printf("%lld files: %lld pictures for the tool, %lld bitmaps of DIBs, %lld pasted\n",
              static_cast<long long>(counts.files), static_cast<long long>(counts.pictures),
              static_cast<long long>(counts.bitmaps), static_cast<long long>(counts.pasted));
}

}  // namespace
}  // namespace vn::test

int main(int argc, char** argv) {
  const int64_t files = argc > 1 ? std::atoll(argv[1]) : 1000;
  vn::test::Run(files, argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
  return 0;
}
