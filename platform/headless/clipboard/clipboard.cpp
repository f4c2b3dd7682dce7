// The clipboard: one object per format, owned from the moment it is put there.
//
// It is one for the process. The thread that has opened it holds it, and may open it once more for
// the same window; anybody else fails. No format is made of another one.
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/headless/objects/objects.h"

namespace headless {
namespace {

// Which objects a format takes, and how they die.
bool IsDataOf(UINT format, HANDLE data) {
  if (format == CF_BITMAP || format == CF_PALETTE) {
    const Object* object = FindObject(data);
    return object && object->type() == (format == CF_BITMAP ? OBJ_BITMAP : OBJ_PAL);
  }
  return GlobalSize(data) != 0;
}
void FreeData(UINT format, HANDLE data) {
  if (format == CF_BITMAP || format == CF_PALETTE) {
    DeleteObject(data);
  } else {
    GlobalFree(data);
  }
}

class Clipboard {
 public:
  static Clipboard& Get() {
    static auto& clipboard = *new Clipboard;
    return clipboard;
  }

  bool Open(HWND window) {
    if (open_ && (holder_ != std::this_thread::get_id() || window_ != window)) return false;
    open_ = true;
    holder_ = std::this_thread::get_id();
    window_ = window;
    return true;
  }
  bool Held() const { return open_ && holder_ == std::this_thread::get_id(); }
  bool Close() {
    const bool held = Held();
    if (held) open_ = false;
    return held;
  }

  bool Empty() {
    if (!Held()) return false;
    for (const auto& [format, data] : std::exchange(contents_, {}))
      FreeData(format, data);
    return true;
  }
  // What fails stays the caller's.
  bool Put(UINT format, HANDLE data) {
    if (!Held() || format == 0 || !IsDataOf(format, data)) return false;
    const HANDLE before = std::exchange(contents_[format], data);
    if (before && before != data) FreeData(format, before);
    return true;
  }
  HANDLE Find(UINT format) const {
    const auto found = contents_.find(format);
    return found == contents_.end() ? nullptr : found->second;
  }

 private:
  std::map<UINT, HANDLE> contents_;
  bool open_ = false;
  std::thread::id holder_;
  HWND window_ = nullptr;
};

}  // namespace
}  // namespace headless

using namespace headless;

BOOL OpenClipboard(HWND window) {
  return Enter<BOOL>(FALSE, [&] { return Clipboard::Get().Open(window); });
}

BOOL CloseClipboard(void) {
  return Enter<BOOL>(FALSE, [] { return Clipboard::Get().Close(); });
}

BOOL EmptyClipboard(void) {
  return Enter<BOOL>(FALSE, [] { return Clipboard::Get().Empty(); });
}

HANDLE SetClipboardData(UINT format, HANDLE data) {
  return Enter<HANDLE>(nullptr,
                       [&] { return Clipboard::Get().Put(format, data) ? data : nullptr; });
}

// The clipboard keeps what it answers.
HANDLE GetClipboardData(UINT format) {
  return Enter<HANDLE>(nullptr, [&]() -> HANDLE {
    const Clipboard& clipboard = Clipboard::Get();
    return clipboard.Held() ? clipboard.Find(format) : nullptr;
  });
}

BOOL IsClipboardFormatAvailable(UINT format) {
  return Enter<BOOL>(FALSE, [&] { return Clipboard::Get().Find(format) != nullptr; });
}
