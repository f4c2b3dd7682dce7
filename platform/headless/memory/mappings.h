// File mappings over the system's own memory, as the calls that lay something over one see them.
#ifndef VNCORE_PLATFORM_HEADLESS_MAPPINGS_H
#define VNCORE_PLATFORM_HEADLESS_MAPPINGS_H

#include <memory>

#include "platform/headless/base/kernel_objects.h"
#include "platform/headless/memory/pages.h"

namespace headless {

// One section. All its views are the same addresses, so a write through one is seen in all. Its
// handle, its views and the DIB sections over it hold it by shared pointers; the pages go when the
// last of them lets go.
class Mapping : public KernelObject {
 public:
  Mapping(Pages pages, uint64_t size)
      : KernelObject(Kind::kMapping), pages_(std::move(pages)), size_(size) {}

  uint8_t* base() const { return pages_.base(); }
  uint64_t size() const { return size_; }  // bytes, as asked for at creation

 private:
  Pages pages_;
  uint64_t size_;
};

// The mapping behind a handle; null for a dead handle or another kind of object.
inline std::shared_ptr<Mapping> FindMapping(HANDLE handle) {
  return FindKernelObjectOf<Mapping>(handle);
}

// Views that are mapped now.
uint32_t CountViews();

}  // namespace headless

#endif
