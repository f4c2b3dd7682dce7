// A temporary file for the coefficients of large progressive JPEG pictures.
//
// libjpeg keeps the coefficients of such a picture, 2 bytes a sample, until the last scan has come.
// It would spill them beyond its max_memory_to_use, but libjpeg-turbo is built without a place to
// spill to and fails there. Its memory manager is a table of methods, though, and three of them
// deal with these arrays: the store puts its own in their place. The arrays lie one behind the
// other in a file without a name, which is mapped; little of it is resident in the process at a
// time.
#ifndef VNCORE_TOOLS_COEFFICIENT_STORE_H
#define VNCORE_TOOLS_COEFFICIENT_STORE_H

#include <cstddef>

#include "tools/formats/jpeg_guard.h"

namespace vn::tool {

class CoefficientStore {
 public:
  CoefficientStore() = default;
  CoefficientStore(const CoefficientStore&) = delete;
  CoefficientStore& operator=(const CoefficientStore&) = delete;
  ~CoefficientStore();

  // Fewer bytes than this stay in libjpeg's memory.
  static constexpr size_t kLeast = size_t{4} << 20;

  // Takes the coefficients of `jpeg`, whose header is read, if they are many. To be called under
  // GuardJpeg; the store must live until the decompression ends. Uses client_data.
  void Serve(j_decompress_ptr jpeg);

 private:
  struct Array;

  static jvirt_barray_ptr OnRequest(j_common_ptr jpeg, int pool, boolean zero, JDIMENSION blocks,
                                    JDIMENSION rows, JDIMENSION mostRows);
  static void OnRealize(j_common_ptr jpeg);
  static JBLOCKARRAY OnAccess(j_common_ptr jpeg, jvirt_barray_ptr array, JDIMENSION first,
                              JDIMENSION count, boolean write);
  bool Map() noexcept;
  void LetGo(size_t from, size_t to) const;

  void (*realizeOthers_)(j_common_ptr) = nullptr;
  Array* last_ = nullptr;
  size_t bytes_ = 0;  // of all arrays
  char* map_ = nullptr;
};

}  // namespace vn::tool

#endif
