// ReadFile, WriteFile, SetFilePointer, SetEndOfFile, byte for byte on POSIX files.
#include "platform/headless/files/files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/headless/base/faults.h"
#include "platform/headless/files/disk_space.h"
#include "platform/headless/files/open_files.h"

namespace headless {

OpenFile::~OpenFile() {
  OpenFiles& all = OpenFiles::Get();
  const std::lock_guard lock(all.mutex());
  all.Leave(this);
  close(descriptor_);
}

int64_t OpenFile::Read(void* buffer, uint32_t bytes) {
  if (!(access_ & GENERIC_READ)) return -1;
  const std::lock_guard lock(mutex_);
  uint32_t done = 0;
  while (done < bytes) {
    const ssize_t moved =
        pread(descriptor_, static_cast<uint8_t*>(buffer) + done, bytes - done, position_ + done);
    if (moved < 0 && errno == EINTR) continue;
    if (moved < 0) return -1;
    if (moved == 0) break;
    done += static_cast<uint32_t>(moved);
  }
  position_ += done;
  return done;
}

int64_t OpenFile::Write(const void* buffer, uint32_t bytes) {
  if (!(access_ & GENERIC_WRITE)) return -1;
  const std::lock_guard lock(mutex_);
  if (bytes > 0 && position_ > reached_ && !CloseGap()) return -1;
  uint32_t done = 0;
  while (done < bytes) {
    const ssize_t moved = pwrite(descriptor_, static_cast<const uint8_t*>(buffer) + done,
                                 bytes - done, position_ + done);
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) return -1;
    done += static_cast<uint32_t>(moved);
  }
  position_ += done;
  reached_ = std::max(reached_, position_);
  return done;
}

// Extends the file up to the position when it ends before.
bool OpenFile::CloseGap() {
  struct stat state;
  if (fstat(descriptor_, &state) != 0) return false;
  if (S_ISREG(state.st_mode) && !ExtendFile(descriptor_, state.st_size, position_)) return false;
  reached_ = position_;
  return true;
}

int64_t OpenFile::Seek(int64_t offset, DWORD origin, int64_t limit) {
  const std::lock_guard lock(mutex_);
  int64_t from = 0;
  if (origin == FILE_CURRENT) from = position_;
  if (origin == FILE_END) {
    struct stat state;
    if (fstat(descriptor_, &state) != 0) return -1;
    from = state.st_size;
  }
  int64_t position;
  if (__builtin_add_overflow(from, offset, &position) || position < 0 || position > limit) {
    return -1;
  }
  return position_ = position;
}

bool OpenFile::EndHere() {
  const std::lock_guard lock(mutex_);
  if (!(access_ & GENERIC_WRITE) || !CloseGap() || ftruncate(descriptor_, position_) != 0) {
    return false;
  }
  reached_ = position_;
  return true;
}

namespace {

// The part of ReadFile and WriteFile that they share: finding the file and telling the count.
template <class Move>
BOOL Transfer(HANDLE handle, LPDWORD done, Move&& move) {
  if (done) *done = 0;
  if (FailsNow(HEADLESS_FILE)) return FALSE;
  const std::shared_ptr<OpenFile> file = FindKernelObjectOf<OpenFile>(handle);
  const int64_t moved = file ? move(*file) : -1;
  if (moved < 0) return FALSE;
  if (done) *done = static_cast<DWORD>(moved);
  return TRUE;
}

}  // namespace
}  // namespace headless

// Overlapped transfer is not part of the subset; the argument must be null as for any plain file.
BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD bytes, LPDWORD done, LPOVERLAPPED) {
  return headless::Transfer(file, done,
                            [&](headless::OpenFile& open) { return open.Read(buffer, bytes); });
}

BOOL WriteFile(HANDLE file, LPCVOID buffer, DWORD bytes, LPDWORD done, LPOVERLAPPED) {
  return headless::Transfer(file, done,
                            [&](headless::OpenFile& open) { return open.Write(buffer, bytes); });
}

// Without a high word the offset is signed and the result must fit 32 bits.
DWORD SetFilePointer(HANDLE handle, LONG offset, PLONG offsetHigh, DWORD origin) {
  if (headless::FailsNow(HEADLESS_FILE) || origin > FILE_END) return INVALID_SET_FILE_POINTER;
  const auto file = headless::FindKernelObjectOf<headless::OpenFile>(handle);
  if (!file) return INVALID_SET_FILE_POINTER;
  int64_t distance = offset;
  int64_t limit = UINT32_MAX;
  if (offsetHigh) {
    distance = static_cast<int64_t>(static_cast<uint64_t>(*offsetHigh) << 32 |
                                    static_cast<uint32_t>(offset));
    limit = INT64_MAX;
  }
  const int64_t position = file->Seek(distance, origin, limit);
  if (position < 0) return INVALID_SET_FILE_POINTER;
  if (offsetHigh) *offsetHigh = static_cast<LONG>(position >> 32);
  return static_cast<DWORD>(position);
}

BOOL SetEndOfFile(HANDLE handle) {
  if (headless::FailsNow(HEADLESS_FILE)) return FALSE;
  const auto file = headless::FindKernelObjectOf<headless::OpenFile>(handle);
  return file && file->EndHere();
}
