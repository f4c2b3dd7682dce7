// Owners of what C libraries make.
#ifndef VNCORE_TOOLS_DESTROYER_H
#define VNCORE_TOOLS_DESTROYER_H

namespace vn::tool {

// For std::unique_ptr: ends an object by the library's own function.
template <auto Destroy>
struct Destroyer {
  template <class Object>
  void operator()(Object* object) const {
    Destroy(object);
  }
};

}  // namespace vn::tool

#endif
