// The table of mappings and files, and CloseHandle.
#include "platform/headless/base/kernel_objects.h"

#include <mutex>

#include "platform/headless/base/handle_table.h"

namespace headless {
namespace {

struct KernelTable {
  std::mutex mutex;
  HandleTable<std::shared_ptr<KernelObject>, HandleTag::kKernel> objects;
  uint32_t mappings = 0;
  uint32_t files = 0;

  uint32_t* CountOf(const KernelObject* object) {
    return object->kind() == KernelObject::Kind::kMapping ? &mappings : &files;
  }
};

// Outlives every static object that may still close a handle.
KernelTable& Table() {
  static auto& table = *new KernelTable;
  return table;
}

}  // namespace

HANDLE AddKernelObject(std::shared_ptr<KernelObject> object) {
  KernelTable& table = Table();
  const std::lock_guard lock(table.mutex);
  uint32_t* count = table.CountOf(object.get());
  const HANDLE handle = table.objects.Add(std::move(object));
  ++*count;
  return handle;
}

std::shared_ptr<KernelObject> FindKernelObject(HANDLE handle) {
  KernelTable& table = Table();
  const std::lock_guard lock(table.mutex);
  const auto* found = table.objects.Find(handle);
  return found ? *found : nullptr;
}

void CountKernelHandles(uint32_t* mappings, uint32_t* files) {
  KernelTable& table = Table();
  const std::lock_guard lock(table.mutex);
  *mappings = table.mappings;
  *files = table.files;
}

}  // namespace headless

BOOL CloseHandle(HANDLE handle) {
  headless::KernelTable& table = headless::Table();
  std::shared_ptr<headless::KernelObject> dying;  // destroyed after the table is unlocked
  const std::lock_guard lock(table.mutex);
  auto* found = table.objects.Find(handle);
  if (!found) return FALSE;
  dying = std::move(*found);
  table.objects.Remove(handle);
  --*table.CountOf(dying.get());
  return TRUE;
}
