// A 20000 by 20000 24-bit picture in a temporary file, mirrored and turned there. Prints the time
// of each operation, the memory that was resident at most, and how the time compares with reading
// and writing the file once: back into its place, and into another such file, which a turn has to
// make. Fails above 48 MiB, or when a turn takes more than six times as long as the second. The
// times that are compared are the processor's, the system's part included: how long a disk takes to
// swallow a new file is in the time on the wall.
//
//   vncore_large_turns [EDGE]      another size than 20000
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <vncore/platform/headless/headless.h>
#include <vncore/vncore.h>
#include "kernel/owned_bitmap.h"

namespace {

constexpr long kMostKib = 48 * 1024;
constexpr double kMostTimes = 6;

struct Times {
  double processor, wall;
};

double SecondsOf(clockid_t clock) {
  timespec now;
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}
Times Now() { return {SecondsOf(CLOCK_PROCESS_CPUTIME_ID), SecondsOf(CLOCK_MONOTONIC)}; }

template <class Work>
Times TimesOf(const Work& work) {
  const Times start = Now();
  work();
  const Times end = Now();
  return {end.processor - start.processor, end.wall - start.wall};
}

// The picture read once and written back, in runs of some MiB.
bool WriteBack(BitmapHandle* bitmap) {
  const auto height = static_cast<uint32_t>(bitmap->Height);
  const uint32_t rows = std::clamp((4u << 20) / bitmap->BytesPerLine, 1u, height);
  std::vector<uint8_t> run(size_t{rows} * bitmap->BytesPerLine);
  for (uint32_t y = 0; y < height; y += rows) {
    const uint32_t bytes = std::min(rows, height - y) * bitmap->BytesPerLine;
    if (Vn_GetBitmapRow(bitmap, run.data(), y, bytes) != static_cast<int32_t>(bytes) ||
        Vn_PutBitmapRow(bitmap, run.data(), y, bytes) != static_cast<int32_t>(bytes)) {
      return false;
    }
  }
  return true;
}

// The same into a second file.
bool CopyOver(BitmapHandle* bitmap) {
  vn::OwnedBitmap copy;
  return Vn_CreateBitmap(copy, STORAGE_DISK, static_cast<uint32_t>(bitmap->Width),
                         static_cast<uint32_t>(bitmap->Height), 24, ORDER_BGR, nullptr,
                         VIEW_TOP_FIRST) == OK &&
         Vn_CopyBitmapData(copy, bitmap) == OK;
}

void FillWithNoise(BitmapHandle* bitmap) {
  std::vector<uint8_t> row(bitmap->BytesPerLine);
  uint32_t noise = 1;
  for (uint32_t y = 0; y < static_cast<uint32_t>(bitmap->Height); ++y) {
    for (uint8_t& byte : row) {
      noise = noise * 1664525 + 1013904223;
      byte = static_cast<uint8_t>(noise >> 24);
    }
    Vn_PutBitmapRow(bitmap, row.data(), y, bitmap->BytesPerLine);
  }
}

struct Operation {
  const char* name;
  VnStatus (*run)(BitmapHandle* bitmap);
  bool bounded;  // by kMostTimes
};
const Operation kOperations[] = {
    {"flip", [](BitmapHandle* b) { return Vn_FlipBitmap(b); }, false},
    {"mirror", [](BitmapHandle* b) { return Vn_ReverseBitmap(b); }, false},
    {"half turn", [](BitmapHandle* b) { return Vn_RotateBitmap(b, 180, 1); }, false},
    {"quarter turn", [](BitmapHandle* b) { return Vn_RotateBitmap(b, 90, 1); }, true},
    {"17.3 degrees", [](BitmapHandle* b) { return Vn_RotateBitmapFine(b, 1730, 0, 0); }, true},
};

}  // namespace

int main(int argc, char** argv) {
  const int edge = argc > 1 ? std::atoi(argv[1]) : 20000;
  if (edge < 1) return 2;
  // A machine with little memory: what is larger than a few MiB goes to temporary files.
  Headless_SetVersion(HEADLESS_VERSION_WIN32S);
  if (!Headless_Restart()) return 2;
  Headless_SetLargestBlock(8 << 20);
  vn::OwnedBitmap bitmap;
  if (Vn_CreateBitmap(bitmap, STORAGE_DISK, static_cast<uint32_t>(edge),
                      static_cast<uint32_t>(edge), 24, ORDER_BGR, nullptr, VIEW_TOP_FIRST) != OK) {
    return 2;
  }
  FillWithNoise(bitmap);
  bool good = true;
  const Times inPlace = TimesOf([&] { good = WriteBack(bitmap); });
  const Times copy = TimesOf([&] { good = good && CopyOver(bitmap); });
  std::printf(
      "%dx%d in a temporary file, written back: %.2f s, copied: %.2f s; on the wall %.1f s, %.1f "
      "s\n",
      edge, edge, inPlace.processor, copy.processor, inPlace.wall, copy.wall);
  for (const Operation& operation : kOperations) {
    VnStatus status = OK;
    const Times own = TimesOf([&] { status = operation.run(bitmap); });
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const double times = own.processor / copy.processor;
    std::printf(
        "%s: %.2f s, %.1f times writing back, %.1f times the copy; on the wall %.1f s; peak %ld "
        "KiB of %ld\n",
        operation.name, own.processor, own.processor / inPlace.processor, times, own.wall,
        usage.ru_maxrss, kMostKib);
    std::fflush(stdout);
    good = good && status == OK && usage.ru_maxrss < kMostKib &&
           (!operation.bounded || times <= kMostTimes);
  }
  return good ? 0 : 1;
}
