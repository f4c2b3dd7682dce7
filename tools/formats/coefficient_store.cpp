#include "tools/formats/coefficient_store.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "platform/headless/files/temp_names.h"

namespace vn::tool {
namespace {

constexpr size_t kResident = size_t{1} << 20;  // of each array

}  // namespace

// What libjpeg holds as a jvirt_barray_ptr. Lies in its pools, which free it.
struct CoefficientStore::Array {
  Array* before;  // the array that was requested before this one
  size_t at;      // where the first row lies in the file
  size_t rowBytes;
  JDIMENSION rows, mostRows;
  size_t usedFrom, usedTo;  // what may be resident
  JBLOCKROW* row;           // where each row lies, once the file is mapped
};

CoefficientStore::~CoefficientStore() {
  if (map_) munmap(map_, bytes_);
}

void CoefficientStore::Serve(j_decompress_ptr jpeg) {
  size_t bytes = 0;
  for (int i = 0; i < jpeg->num_components; ++i) {
    const jpeg_component_info& component = jpeg->comp_info[i];
    bytes += sizeof(JBLOCK) * component.width_in_blocks * component.height_in_blocks;
  }
  if (bytes < kLeast) return;
  jpeg->client_data = this;
  realizeOthers_ = jpeg->mem->realize_virt_arrays;
  jpeg->mem->request_virt_barray = &OnRequest;
  jpeg->mem->realize_virt_arrays = &OnRealize;
  jpeg->mem->access_virt_barray = &OnAccess;
}

// A new file reads as zeros, which is what `zero` asks for.
jvirt_barray_ptr CoefficientStore::OnRequest(j_common_ptr jpeg, int pool, boolean /*zero*/,
                                             JDIMENSION blocks, JDIMENSION rows,
                                             JDIMENSION mostRows) {
  auto* store = static_cast<CoefficientStore*>(jpeg->client_data);
  auto* array = static_cast<Array*>(jpeg->mem->alloc_small(jpeg, pool, sizeof(Array)));
  array->at = store->bytes_;
  array->rowBytes = sizeof(JBLOCK) * blocks;
  array->rows = rows;
  array->mostRows = mostRows;
  array->usedFrom = array->usedTo = array->at;
  // All rows: libjpeg's own arrays hand out a place in the list of all, and the smoothing of
  // unfinished pictures reads on from there, past the rows that it has asked for.
  array->row =
      static_cast<JBLOCKROW*>(jpeg->mem->alloc_small(jpeg, pool, rows * sizeof(JBLOCKROW)));
  array->before = store->last_;
  store->last_ = array;
  store->bytes_ += array->rowBytes * rows;
  return reinterpret_cast<jvirt_barray_ptr>(array);
}

void CoefficientStore::OnRealize(j_common_ptr jpeg) {
  auto* store = static_cast<CoefficientStore*>(jpeg->client_data);
  if (!store->map_ && store->bytes_ > 0 && !store->Map()) {
    GiveUp(jpeg, "there is not enough temporary space for a progressive picture");
  }
  for (Array* array = store->last_; array; array = array->before) {
    for (JDIMENSION i = 0; i < array->rows; ++i) {
      array->row[i] = reinterpret_cast<JBLOCKROW>(store->map_ + array->at + array->rowBytes * i);
    }
  }
  store->realizeOthers_(jpeg);
}

bool CoefficientStore::Map() noexcept {
  const int descriptor = headless::OpenUnlinkedTempFile();
  if (descriptor < 0) return false;
  // Reserved, not only sized: a full disk must be found here and not by a write to the mapping.
  if (posix_fallocate(descriptor, 0, static_cast<off_t>(bytes_)) == 0) {
    void* const map = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (map != MAP_FAILED) map_ = static_cast<char*>(map);
  }
  close(descriptor);
  return map_ != nullptr;
}

// Pages that are let go stay in the file; whoever touches them again finds them there.
void CoefficientStore::LetGo(size_t from, size_t to) const {
  static const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  from = from / page * page;
  madvise(map_ + from, to - from, MADV_DONTNEED);
}

JBLOCKARRAY CoefficientStore::OnAccess(j_common_ptr jpeg, jvirt_barray_ptr handle, JDIMENSION first,
                                       JDIMENSION count, boolean /*write*/) {
  const auto* store = static_cast<CoefficientStore*>(jpeg->client_data);
  auto* array = reinterpret_cast<Array*>(handle);
  if (!store->map_ || count > array->mostRows || first > array->rows ||
      count > array->rows - first) {
    ERREXIT(jpeg, JERR_BAD_VIRTUAL_ACCESS);
  }
  const size_t from = array->at + array->rowBytes * first, to = from + array->rowBytes * count;
  if (from < array->usedFrom || to > array->usedFrom + kResident) {
    store->LetGo(array->usedFrom, array->usedTo);
    array->usedFrom = array->usedTo = from;
  }
  array->usedTo = std::max(array->usedTo, to);
  return array->row + first;
}

}  // namespace vn::tool
