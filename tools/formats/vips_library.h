// libvips, loaded when a picture needs it: linked with, it and the hundred libraries behind it would
// cost every run of the tool more than most runs take.
#ifndef VNCORE_TOOLS_VIPS_LIBRARY_H
#define VNCORE_TOOLS_VIPS_LIBRARY_H

#include <vips/vips.h>

#include <memory>

namespace vn::tool {

// Its functions under their own names, as many as are used.
struct VipsLibrary {
#define VNCORE_VIPS_FUNCTIONS(F)     \
  F(vips_init)                       \
  F(vips_shutdown)                   \
  F(vips_cache_set_max)              \
  F(vips_error_buffer)               \
  F(vips_error_clear)                \
  F(vips_source_new_from_descriptor) \
  F(vips_source_new_from_file)       \
  F(vips_foreign_find_load_source)   \
  F(vips_foreign_find_load)          \
  F(vips_image_new_from_source)      \
  F(vips_image_new_from_file)        \
  F(vips_image_get_typeof)           \
  F(vips_image_get_blob)             \
  F(vips_image_get_string)           \
  F(vips_image_get_n_pages)          \
  F(vips_image_get_orientation)      \
  F(vips_enum_nick)                  \
  F(vips_interpretation_get_type)    \
  F(vips_format_sizeof)              \
  F(vips_colourspace)                \
  F(vips_cast_uchar)                 \
  F(vips_extract_band)               \
  F(vips_region_new)                 \
  F(vips_region_prepare)             \
  F(g_object_unref)                  \
  F(g_log_set_handler)
#define VNCORE_VIPS_POINTER(name) decltype(&::name) name = nullptr;
  VNCORE_VIPS_FUNCTIONS(VNCORE_VIPS_POINTER)
#undef VNCORE_VIPS_POINTER

  // The library, started, until the program ends. Null where it is not installed.
  static const VipsLibrary* Get();
};

// An object of the library's.
template <class Object>
struct VipsUnref {
  void operator()(Object* object) const { VipsLibrary::Get()->g_object_unref(object); }
};
template <class Object>
using VipsOwned = std::unique_ptr<Object, VipsUnref<Object>>;

}  // namespace vn::tool

#endif
