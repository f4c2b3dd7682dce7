// The failure walk: each exported function is called with every operation of the platform below it
// failing in turn, and with the status callback stopping it at every call, in each kind of storage.
// After a failure the status must tell it, or the outcome must be that of a call without one;
// nothing may leak; and what the function was given must be as it was.
//
// A new function joins by a row in the file of its room (kernel_rows.cpp, color_rows.cpp, ...):
//
//   {"Vn_FlipBitmap", [](Scene& s) { return Vn_FlipBitmap(s.bitmap); }},
//
// `name` holds the exports that the row walks, and after a comma what tells it from other rows of
// theirs. The call runs with the failures; what has to be there before belongs to `prepare`. What
// the call makes goes into the scene, which frees it, and so compares it too. A row that needs more
// room than that is better off as two rows. `terms` states where a function keeps less:
//
//   {"Vn_FillBitmap, file", ..., {.hides = kFiles, .stopSpoils = kPixels}}
//
// The walk fails while an export that the library has is in no row.
#ifndef VNCORE_TESTS_FAILURES_FAILURE_ROWS_H
#define VNCORE_TESTS_FAILURES_FAILURE_ROWS_H

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {

// What a scene consists of, in sets.
enum Part : unsigned {
  kRecord = 1,    // the bitmap's plain fields
  kPixels = 2,    // its rows
  kPalettes = 4,  // the entries of both palettes
  kRegion = 8,    // the region's list and bounds
  kResult = 16,   // all of the second bitmap
  kMade = 32,     // what else the call made: palette, region, bytes
  kScreen = 64,   // the screen's pixels
  kAttachments = kPalettes | kRegion
};
inline constexpr unsigned kPartCount = 7;

// Families of failures, in sets.
enum Failures : unsigned { kMemory = 1, kFiles = 2, kObjects = 4, kStops = 8 };

// A bitmap of 40 by 12 random pixels with a palette and an elliptic region, on a screen of 8 bits.
class Scene {
 public:
  Scene(int32_t bits, const StorageKind& storage);
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  ~Scene();

  const StorageKind& kind;
  OwnedBitmap bitmap;
  OwnedBitmap result;  // without storage, until `prepare` or the call gives it some
  OwnedObject<HPALETTE> palette;
  OwnedObject<HRGN> region;
  Bytes bytes;
  void* block = nullptr;  // of the system layer
  HANDLE file = INVALID_HANDLE_VALUE;
  RECT box = {2, 2, 30, 10};
  Colors colors;  // 256 random ones
  HDC screen() const { return screen_.get(); }

  // Keep what a function gave, and tell whether it gave any.
  VnStatus Keep(HPALETTE made);
  VnStatus Keep(HRGN made);
  VnStatus Keep(void* made);

  // Bytes of each part, in the order of the bits of Part.
  std::array<Bytes, kPartCount> Print();

 private:
  DisplayScope display_;
  ScreenDC screen_;
};

// The status of a row function that was to move `wanted` bytes.
inline VnStatus Moved(int32_t count, uint32_t wanted) {
  return count == static_cast<int32_t>(wanted) ? static_cast<VnStatus>(OK) : count;
}

// What a function does not keep to. Most sets are empty.
struct Terms {
  int32_t bits = 4;         // depth of the scene's bitmap
  unsigned hides = 0;       // families that it does not report: the outcome is then open
  unsigned spoils = 0;      // parts that a reported failure may change
  unsigned stopSpoils = 0;  // parts that a stop by the status callback may change
  unsigned open = 0;        // parts that nobody has written after a success
  int64_t units = -1;       // of progress that it tells, if that is looked at
  void (*prepare)(Scene&) = nullptr;
};

using Call = std::function<VnStatus(Scene&)>;

// A call that has no failure to tell.
template <class Act>
Call Done(Act act) {
  return [act](Scene& s) -> VnStatus {
    act(s);
    return OK;
  };
}

struct FailureRow {
  std::string name;
  Call call;
  Terms terms = {};
};

// All rows of all rooms.
std::vector<FailureRow>& FailureRows();

// Adds rows before main: `const AddRows rows({...});` in the file of a room.
struct AddRows {
  explicit AddRows(std::vector<FailureRow> rows);
};

}  // namespace vn::test

#endif
