// CreateFileMappingA, MapViewOfFile, UnmapViewOfFile.
#include "platform/headless/memory/mappings.h"

#include <mutex>
#include <unordered_map>

#include "platform/headless/base/faults.h"

namespace headless {
namespace {

// Each view holds its mapping. Views of the same offset share an address, hence the multimap.
struct ViewTable {
  std::mutex mutex;
  std::unordered_multimap<const void*, std::shared_ptr<Mapping>> views;
};

ViewTable& Views() {
  static auto& table = *new ViewTable;
  return table;
}

constexpr uint64_t kViewGranularity = 65536;  // a view's offset is a multiple of it, as on Windows

HANDLE CreateMapping(uint64_t size) {
  Pages pages = Pages::Zeroed(size);
  if (!pages) return nullptr;
  return AddKernelObject(std::make_shared<Mapping>(std::move(pages), size));
}

void* MapView(HANDLE handle, uint64_t offset, uint64_t bytes) {
  std::shared_ptr<Mapping> mapping = FindMapping(handle);
  if (!mapping || offset % kViewGranularity || offset >= mapping->size() ||
      bytes > mapping->size() - offset) {
    return nullptr;
  }
  void* address = mapping->base() + offset;
  ViewTable& table = Views();
  const std::lock_guard lock(table.mutex);
  table.views.emplace(address, std::move(mapping));
  return address;
}

}  // namespace

uint32_t CountViews() {
  ViewTable& table = Views();
  const std::lock_guard lock(table.mutex);
  return static_cast<uint32_t>(table.views.size());
}

}  // namespace headless

// Only sections of the paging file, without a name: nothing in the library asks for more.
HANDLE CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES, DWORD protection, DWORD sizeHigh,
                          DWORD sizeLow, LPCSTR name) {
  if (headless::FailsNow(HEADLESS_MEMORY)) return nullptr;
  if (file != INVALID_HANDLE_VALUE || !(protection & PAGE_READWRITE) || name) return nullptr;
  const uint64_t size = static_cast<uint64_t>(sizeHigh) << 32 | sizeLow;
  return headless::WithoutExceptions<HANDLE>(nullptr,
                                             [&] { return headless::CreateMapping(size); });
}

LPVOID MapViewOfFile(HANDLE mapping, DWORD, DWORD offsetHigh, DWORD offsetLow, SIZE_T bytes) {
  if (headless::FailsNow(HEADLESS_MEMORY)) return nullptr;
  const uint64_t offset = static_cast<uint64_t>(offsetHigh) << 32 | offsetLow;
  return headless::WithoutExceptions<LPVOID>(
      nullptr, [&] { return headless::MapView(mapping, offset, bytes); });
}

BOOL UnmapViewOfFile(LPCVOID address) {
  headless::ViewTable& table = headless::Views();
  std::shared_ptr<headless::Mapping> dying;  // its pages go after the table is unlocked
  const std::lock_guard lock(table.mutex);
  const auto view = table.views.find(address);
  if (view == table.views.end()) return FALSE;
  dying = std::move(view->second);
  table.views.erase(view);
  return TRUE;
}
