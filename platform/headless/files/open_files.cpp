// CreateFileA and DeleteFileA: share modes between the handles of this process, and the read-only
// attribute, which is a file without any write permission.
#include "platform/headless/files/open_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/headless/base/faults.h"
#include "platform/headless/files/temp_names.h"

namespace headless {

OpenFiles& OpenFiles::Get() {
  static auto& files = *new OpenFiles;  // outlives every static object that may still close a file
  return files;
}

bool OpenFile::Agrees(DWORD access, DWORD share) const {
  const auto within = [](DWORD wanted, DWORD allowed) {
    return (!(wanted & GENERIC_READ) || (allowed & FILE_SHARE_READ)) &&
           (!(wanted & GENERIC_WRITE) || (allowed & FILE_SHARE_WRITE));
  };
  return within(access, share_) && within(access_, share);
}

bool OpenFiles::Allows(const FileIdentity& identity, DWORD access, DWORD share) const {
  return std::all_of(files_.begin(), files_.end(), [&](const OpenFile* file) {
    return file->identity() != identity || file->Agrees(access, share);
  });
}

bool OpenFiles::IsOpen(const FileIdentity& identity) const {
  return std::any_of(files_.begin(), files_.end(),
                     [&](const OpenFile* file) { return file->identity() == identity; });
}

namespace {

constexpr mode_t kWritable = S_IWUSR | S_IWGRP | S_IWOTH;

// A descriptor while it has no owner yet.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  explicit operator bool() const { return number_ >= 0; }
  int get() const { return number_; }
  int Release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

struct OpenRequest {
  const char* name;
  DWORD access, share, disposition, attributes;

  bool Reads() const { return access & GENERIC_READ; }
  bool Writes() const { return access & GENERIC_WRITE; }
  bool Creates() const {
    return disposition == CREATE_NEW || disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS;
  }
  bool Empties() const { return disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING; }
  bool MakesReadOnly() const { return attributes & FILE_ATTRIBUTE_READONLY; }
  bool IsValid() const {
    return name && disposition >= CREATE_NEW && disposition <= TRUNCATE_EXISTING &&
           (disposition != TRUNCATE_EXISTING || Writes());
  }
};

// Emptying a file needs a writable descriptor even when the handle will only read. A link is not
// followed, and nothing waited for, where the name is a temporary file's.
Descriptor OpenDescriptor(const OpenRequest& request, bool* created) {
  int flags = O_CLOEXEC | (IsTempName(request.name) ? O_NOFOLLOW | O_NONBLOCK : 0);
  if (request.Writes() || request.Empties()) {
    flags |= request.Reads() ? O_RDWR : O_WRONLY;
  }
  *created = false;
  if (request.Creates()) {
    const mode_t mode = request.MakesReadOnly() ? 0444 : 0666;
    Descriptor file(open(request.name, flags | O_CREAT | O_EXCL, mode));
    *created = static_cast<bool>(file);
    if (file || request.disposition == CREATE_NEW || errno != EEXIST) return file;
  }
  return Descriptor(open(request.name, flags));
}

// A temporary file is this user's, and has no other name.
bool IsOwn(const struct stat& state) {
  return S_ISREG(state.st_mode) && state.st_uid == geteuid() && state.st_nlink <= 1;
}

// What Windows refuses before a file is touched: folders, writing or emptying a read-only file,
// and what the share modes forbid.
bool MayOpen(const OpenRequest& request, const struct stat& state, bool created) {
  if (S_ISDIR(state.st_mode)) return false;
  if (created) return true;
  if (IsTempName(request.name) && !IsOwn(state)) return false;
  const bool changes = request.Writes() || request.Empties();
  if (changes && S_ISREG(state.st_mode) && !(state.st_mode & kWritable)) return false;
  const DWORD access = request.access | (request.Empties() ? GENERIC_WRITE : 0);
  return OpenFiles::Get().Allows({state.st_dev, state.st_ino}, access, request.share);
}

bool Empty(const OpenRequest& request, int descriptor, mode_t mode) {
  if (ftruncate(descriptor, 0) != 0) return false;
  const bool replaces = request.disposition == CREATE_ALWAYS && request.MakesReadOnly();
  return !replaces || fchmod(descriptor, mode & 07777 & ~kWritable) == 0;
}

HANDLE Open(const OpenRequest& request) {
  bool created = false;
  std::shared_ptr<OpenFile> opened;  // closed, if need be, after the list is unlocked
  OpenFiles& all = OpenFiles::Get();
  {
    const std::lock_guard lock(all.mutex());
    Descriptor file = OpenDescriptor(request, &created);
    struct stat state;
    if (!file || fstat(file.get(), &state) != 0 || !MayOpen(request, state, created)) {
      return INVALID_HANDLE_VALUE;
    }
    if (request.Empties() && !created && !Empty(request, file.get(), state.st_mode)) {
      return INVALID_HANDLE_VALUE;
    }
    const FileIdentity identity{state.st_dev, state.st_ino};
    opened = std::make_shared<OpenFile>(file.get(), identity, request.access, request.share);
    file.Release();
    all.Enter(opened.get());
  }
  return AddKernelObject(std::move(opened));
}

BOOL Delete(const char* name) {
  OpenFiles& all = OpenFiles::Get();
  const std::lock_guard lock(all.mutex());
  struct stat state;
  if (stat(name, &state) != 0 || S_ISDIR(state.st_mode) || !(state.st_mode & kWritable)) {
    return FALSE;
  }
  // Nobody shares for deletion, so an open file stays.
  if (all.IsOpen({state.st_dev, state.st_ino})) return FALSE;
  return unlink(name) == 0;
}

}  // namespace
}  // namespace headless

HANDLE CreateFileA(LPCSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                   DWORD attributes, HANDLE) {
  if (headless::FailsNow(HEADLESS_FILE)) return INVALID_HANDLE_VALUE;
  const headless::OpenRequest request{name, access, share, disposition, attributes};
  if (!request.IsValid()) return INVALID_HANDLE_VALUE;
  return headless::WithoutExceptions<HANDLE>(INVALID_HANDLE_VALUE,
                                             [&] { return headless::Open(request); });
}

BOOL DeleteFileA(LPCSTR name) { return headless::Delete(name); }
