// The thread's display mode.
#include "kernel/thread_settings.h"

uint32_t VN_CALL Vn_SetDisplayMode(uint32_t mask, uint32_t value) {
  vn::ThreadSettings& settings = vn::CurrentThreadSettings();
  const uint32_t before = settings.DisplayMode;
  settings.DisplayMode = (before & ~mask) | (value & mask);
  // While the bit is off the renderers fill the table with colours. The test is on `value` alone:
  // a mask without the bit restores the table too.
  if (!(before & MODE_DEVICE_INDEXES) && (value & MODE_DEVICE_INDEXES)) {
    vn::WriteIdentityIndexes(settings.PaintInfo.Indexes());
  }
  return before;
}

uint32_t VN_CALL Vn_GetDisplayMode(void) { return vn::CurrentThreadSettings().DisplayMode; }
