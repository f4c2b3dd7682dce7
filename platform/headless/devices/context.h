// Device contexts.
#ifndef VNCORE_PLATFORM_HEADLESS_CONTEXT_H
#define VNCORE_PLATFORM_HEADLESS_CONTEXT_H

#include <memory>
#include <vector>

#include "platform/headless/devices/device.h"
#include "platform/headless/objects/objects.h"
#include "platform/headless/surfaces/clip.h"

namespace headless {

// What SaveDC keeps.
struct ContextState {
  HBITMAP bitmap = nullptr;  // of a memory context
  HPALETTE palette = nullptr;
  bool backgroundPalette = false;
  HBRUSH brush = nullptr;
  COLORREF text = 0x000000;
  COLORREF background = 0xFFFFFF;
  Clip clip;
};

// OBJ_DC draws on its device's own surface, OBJ_MEMDC on the bitmap selected in it.
class Context : public Object {
 public:
  Context(DWORD type, std::shared_ptr<Device> device);
  ~Context() override;

  Device& device() const { return *device_; }
  const std::shared_ptr<Device>& SharedDevice() const { return device_; }
  bool memory() const { return type() == OBJ_MEMDC; }

  // What it draws on.
  Surface* Target() const;
  // The palette selected, null when it has been deleted since.
  Palette* SelectedPalette() const { return Find<Palette>(state.palette); }

  // Selection of a bitmap or a brush. The handle that was selected before, null for a failure.
  HGDIOBJ SelectBitmap(HBITMAP bitmap);
  HGDIOBJ SelectBrush(HBRUSH brush);

  int Save();
  bool Restore(int saved);

  ContextState state;

 private:
  std::shared_ptr<Device> device_;
  std::vector<ContextState> saved_;
};

// Deletes all contexts that draw on the device's own surface.
void CloseContextsOf(const Device& device);

}  // namespace headless

#endif
