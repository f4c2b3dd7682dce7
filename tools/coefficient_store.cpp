#include "tools/coefficient_store.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "platform/headless/temp_names.h"

namespace vn::tool {

// What libjpeg holds as a jvirt_barray_ptr. Lies in its pools, which free it.
struct CoefficientStore::Array {
  size_t at;  // where the first row lies in the file
  size_t blocks;
  JDIMENSION rows, mostRows;
  JBLOCKROW* window;  // rows as they are handed out
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
  array->blocks = blocks;
  array->rows = rows;
  array->mostRows = mostRows;
  array->window =
      static_cast<JBLOCKROW*>(jpeg->mem->alloc_small(jpeg, pool, mostRows * sizeof(JBLOCKROW)));
  store->bytes_ += sizeof(JBLOCK) * blocks * rows;
  return reinterpret_cast<jvirt_barray_ptr>(array);
}

void CoefficientStore::OnRealize(j_common_ptr jpeg) {
  auto* store = static_cast<CoefficientStore*>(jpeg->client_data);
  if (!store->map_ && store->bytes_ > 0 && !store->Map()) {
    GiveUp(jpeg, "there is not enough temporary space for a progressive picture");
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

JBLOCKARRAY CoefficientStore::OnAccess(j_common_ptr jpeg, jvirt_barray_ptr handle, JDIMENSION first,
                                       JDIMENSION count, boolean /*write*/) {
  const auto* store = static_cast<CoefficientStore*>(jpeg->client_data);
  const auto* array = reinterpret_cast<const Array*>(handle);
  if (!store->map_ || count > array->mostRows || first > array->rows ||
      count > array->rows - first) {
    ERREXIT(jpeg, JERR_BAD_VIRTUAL_ACCESS);
  }
  for (JDIMENSION i = 0; i < count; ++i) {
    const size_t row = size_t{first} + i;
    char* const at = store->map_ + array->at + sizeof(JBLOCK) * array->blocks * row;
    array->window[i] = reinterpret_cast<JBLOCKROW>(at);
  }
  return array->window;
}

}  // namespace vn::tool
