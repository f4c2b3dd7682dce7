// The three kinds of storage, each as a test can bring it about.
#ifndef VNCORE_TESTS_SUPPORT_STORAGE_KINDS_H
#define VNCORE_TESTS_SUPPORT_STORAGE_KINDS_H

#include <optional>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {

struct StorageKind {
  const char* name;
  bool win32s;
  int32_t request;
  uint32_t flags;  // of an allocated, unlocked bitmap
};

inline constexpr StorageKind kStorageKinds[] = {
    {"mapped section", false, STORAGE_AUTO, FLAG_ALLOCATED | FLAG_IN_MEMORY},
    {"global memory", true, STORAGE_MEMORY, FLAG_ALLOCATED | FLAG_IN_MEMORY},
    {"temporary file", true, STORAGE_DISK, FLAG_ALLOCATED | FLAG_ON_DISK},
};

// Calls `use(kind)` with the library attached so that the kind's request gives its storage. On
// Windows, where the version cannot be chosen, once, with the storage that comes of itself.
template <class Use>
void WithEachStorage(Use use) {
#ifdef _WIN32
  use(kStorageKinds[0]);
#else
  for (const StorageKind& kind : kStorageKinds) {
    SCOPED_TRACE(kind.name);
    std::optional<Win32sScope> win32s;
    if (kind.win32s) win32s.emplace();
    use(kind);
  }
#endif
}

}  // namespace vn::test

#endif
