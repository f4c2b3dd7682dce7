// Open files.
#ifndef VNCORE_PLATFORM_HEADLESS_FILES_H
#define VNCORE_PLATFORM_HEADLESS_FILES_H

#include <sys/types.h>

#include <mutex>

#include "platform/headless/base/kernel_objects.h"

namespace headless {

// What tells two files apart, whatever names lead to them.
struct FileIdentity {
  dev_t device;
  ino_t number;
  bool operator==(const FileIdentity&) const = default;
};

// A descriptor with a position of its own, so that a seek costs no system call. Calls on one handle
// from several threads go one after the other.
class OpenFile : public KernelObject {
 public:
  OpenFile(int descriptor, FileIdentity identity, DWORD access, DWORD share)
      : KernelObject(Kind::kFile),
        descriptor_(descriptor),
        identity_(identity),
        access_(access),
        share_(share) {}
  ~OpenFile() override;

  // Bytes moved, or -1. A read ends early at the end of the file only; a write moves all or fails.
  // A write behind the end fills the gap with zeros that have their room on the disk.
  int64_t Read(void* buffer, uint32_t bytes);
  int64_t Write(const void* buffer, uint32_t bytes);
  // The new position; -1 when it would lie before the start of the file or above `limit`.
  int64_t Seek(int64_t offset, DWORD origin, int64_t limit);
  // Ends the file at the position, wherever it ended before.
  bool EndHere();

  const FileIdentity& identity() const { return identity_; }
  // Whether an open of the same file with this access and share mode can stand beside this one.
  bool Agrees(DWORD access, DWORD share) const;

 private:
  bool CloseGap();

  const int descriptor_;
  const FileIdentity identity_;
  const DWORD access_;
  const DWORD share_;
  std::mutex mutex_;
  int64_t position_ = 0;
  int64_t reached_ = 0;  // the file was seen to reach so far
};

}  // namespace headless

#endif
