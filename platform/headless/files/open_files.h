// The files that this process holds open, for share modes and deletion.
#ifndef VNCORE_PLATFORM_HEADLESS_OPEN_FILES_H
#define VNCORE_PLATFORM_HEADLESS_OPEN_FILES_H

#include <mutex>
#include <vector>

#include "platform/headless/files/files.h"

namespace headless {

// Locked while a file is opened, closed or deleted, so that a share mode cannot be overtaken.
class OpenFiles {
 public:
  static OpenFiles& Get();

  std::mutex& mutex() { return mutex_; }
  // All of the following with the mutex held.
  bool Allows(const FileIdentity& identity, DWORD access, DWORD share) const;
  bool IsOpen(const FileIdentity& identity) const;
  void Enter(const OpenFile* file) { files_.push_back(file); }  // may throw std::bad_alloc
  void Leave(const OpenFile* file) { std::erase(files_, file); }

 private:
  std::mutex mutex_;
  std::vector<const OpenFile*> files_;
};

}  // namespace headless

#endif
