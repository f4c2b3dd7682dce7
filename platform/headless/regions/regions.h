// Region objects.
#ifndef VNCORE_PLATFORM_HEADLESS_REGIONS_H
#define VNCORE_PLATFORM_HEADLESS_REGIONS_H

#include <utility>

#include "platform/headless/objects/objects.h"
#include "platform/headless/regions/region_set.h"
#include "platform/headless/regions/region_shapes.h"

namespace headless {

class Region : public Object {
 public:
  explicit Region(RegionSet pixels) : Object(OBJ_REGION), set(std::move(pixels)) {}

  HGDIOBJ SelectInto(Context& context, HGDIOBJ self) override;

  RegionSet set;
};

}  // namespace headless

#endif
