#include "platform/headless/files/disk_space.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>

namespace headless {
namespace {

bool Reserve(int file, int64_t from, int64_t end) {
  int failed;
  do {
    failed = fallocate(file, 0, from, end - from);
  } while (failed && errno == EINTR);
  if (!failed) return true;
  // A file system that cannot reserve can at least be asked.
  struct statvfs disk;
  if (errno != EOPNOTSUPP || fstatvfs(file, &disk) != 0) return false;
  return static_cast<uint64_t>(end - from) / disk.f_frsize < disk.f_bavail &&
         ftruncate(file, end) == 0;
}

}  // namespace

bool ExtendFile(int file, int64_t from, int64_t end) {
  if (from >= end || Reserve(file, from, end)) return true;
  [[maybe_unused]] const int ignored = ftruncate(file, from);  // what there was room for goes back
  return false;
}

}  // namespace headless
