// A mapped section of the paging file: the storage of every bitmap on Win32.
#ifndef VNCORE_KERNEL_MAPPED_SECTION_H
#define VNCORE_KERNEL_MAPPED_SECTION_H

#include <cstdint>
#include <utility>

#include <vncore/platform/win32.h>

namespace vn {

// Section and view together; both are given back unless they were released to a record.
class MappedSection {
 public:
  // Committed at once. Test it: empty when either step failed.
  explicit MappedSection(uint32_t size)
      : mapping_(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr,
                                    SEC_NOCACHE | SEC_COMMIT | PAGE_READWRITE, 0, size, nullptr)) {
    if (mapping_) view_ = static_cast<uint8_t*>(MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, 0));
  }
  MappedSection(const MappedSection&) = delete;
  MappedSection& operator=(const MappedSection&) = delete;
  ~MappedSection() { Free(mapping_, view_); }

  explicit operator bool() const { return view_ != nullptr; }
  uint8_t* view() const { return view_; }

  // Puts handle and view into a record's fields, which own them from then on.
  void ReleaseTo(HANDLE* storage, uint8_t** bits) {
    *storage = std::exchange(mapping_, nullptr);
    *bits = std::exchange(view_, nullptr);
  }

  static void Free(HANDLE mapping, uint8_t* view) {
    if (view) UnmapViewOfFile(view);
    if (mapping) CloseHandle(mapping);
  }

 private:
  HANDLE mapping_;
  uint8_t* view_ = nullptr;
};

}  // namespace vn

#endif
