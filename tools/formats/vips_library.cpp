#include "tools/formats/vips_library.h"

#include <dlfcn.h>

#include <type_traits>

namespace vn::tool {
namespace {

void Ignore(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

class Loaded {
 public:
  Loaded() : handle_(dlopen("libvips.so.42", RTLD_LAZY | RTLD_LOCAL)) {
    started_ = handle_ && Find() && library_.vips_init("vncore") == 0;
    if (!started_) return;
    // It warns of what it mends; here a picture is sound or a failure.
    for (const char* const domain : {"VIPS", "GLib-GObject"})
      library_.g_log_set_handler(domain, G_LOG_LEVEL_WARNING, &Ignore, nullptr);
    library_.vips_cache_set_max(0);
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  // Its libraries keep threads and handlers: it is never unloaded.
  ~Loaded() {
    if (started_) library_.vips_shutdown();
  }

  const VipsLibrary* Get() const { return started_ ? &library_ : nullptr; }

 private:
  bool Find() {
    bool all = true;
    const auto find = [&](auto& function, const char* name) {
      function =
          reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(handle_, name));
      all &= function != nullptr;
    };
#define VNCORE_VIPS_FIND(name) find(library_.name, #name);
    VNCORE_VIPS_FUNCTIONS(VNCORE_VIPS_FIND)
#undef VNCORE_VIPS_FIND
    return all;
  }

  void* const handle_;
  VipsLibrary library_;
  bool started_ = false;
};

}  // namespace

const VipsLibrary* VipsLibrary::Get() {
  static const Loaded loaded;
  return loaded.Get();
}

}  // namespace vn::tool
