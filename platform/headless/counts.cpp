// What is alive, over all tables of the platform.
#include "platform/headless/global_memory.h"
#include "platform/headless/headless.h"
#include "platform/headless/kernel_objects.h"
#include "platform/headless/mappings.h"
#include "platform/headless/objects.h"

void Headless_GetCounts(Headless_Counts* counts) {
  counts->globalBlocks = headless::CountGlobalBlocks();
  headless::CountKernelHandles(&counts->mappings, &counts->files);
  counts->views = headless::CountViews();
  headless::CountLiveObjects(&counts->objects, &counts->contexts);
}
