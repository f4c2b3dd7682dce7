// The display mode and the index table that hangs on it.
#include <gtest/gtest.h>

#include <vncore/vncore.h>
#include "kernel/guards.h"
#include "kernel/thread_settings.h"

namespace vn::test {
namespace {

TEST(DisplayMode, ReplacesTheBitsOfTheMask) {
  const uint32_t before = Vn_GetDisplayMode();
  EXPECT_EQ(Vn_SetDisplayMode(~0u, 0x1234), before);
  EXPECT_EQ(Vn_GetDisplayMode(), 0x1234u);
  EXPECT_EQ(Vn_SetDisplayMode(0xF0, 0xFF), 0x1234u);
  EXPECT_EQ(Vn_GetDisplayMode(), 0x12F4u);
  EXPECT_EQ(Vn_SetDisplayMode(~0u, before), 0x12F4u);
  EXPECT_EQ(Vn_GetDisplayMode(), before);
}

TEST(DisplayMode, RestoresTheIdentityTable) {
  uint16_t* indexes = CurrentThreadSettings().PaintInfo.Indexes();
  const DisplayModeScope scope(MODE_DEVICE_INDEXES, 0);
  for (const uint32_t mask : {uint32_t{MODE_DEVICE_INDEXES}, 0u}) {
    Vn_SetDisplayMode(MODE_DEVICE_INDEXES, 0);
    indexes[7] = 1000;
    Vn_SetDisplayMode(mask, MODE_DEVICE_INDEXES);
    EXPECT_EQ(indexes[7], 7);
    EXPECT_EQ(Vn_GetDisplayMode() & MODE_DEVICE_INDEXES, mask);
  }
  Vn_SetDisplayMode(MODE_DEVICE_INDEXES, MODE_DEVICE_INDEXES);
  indexes[7] = 1000;
  Vn_SetDisplayMode(MODE_DEVICE_INDEXES, MODE_DEVICE_INDEXES);
  EXPECT_EQ(indexes[7], 1000) << "the bit was on already";
  indexes[7] = 7;
}

}  // namespace
}  // namespace vn::test
