// What is alive, over all tables of the platform.
#include <vncore/platform/headless/headless.h>
#include "platform/headless/base/kernel_objects.h"
#include "platform/headless/memory/global_memory.h"
#include "platform/headless/memory/mappings.h"
#include "platform/headless/objects/objects.h"

void Headless_GetCounts(Headless_Counts* counts) {
  counts->globalBlocks = headless::CountGlobalBlocks();
  headless::CountKernelHandles(&counts->mappings, &counts->files);
  counts->views = headless::CountViews();
  headless::CountLiveObjects(&counts->objects, &counts->contexts);
}
