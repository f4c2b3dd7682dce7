// Device contexts.
#ifndef VNCORE_PLATFORM_HEADLESS_CONTEXT_H
#define VNCORE_PLATFORM_HEADLESS_CONTEXT_H

#include <memory>
#include <utility>
#include <vector>

#include "platform/headless/devices/device.h"
#include "platform/headless/objects/objects.h"
#include "platform/headless/surfaces/clip.h"
#include "platform/headless/surfaces/color_map.h"

namespace headless {

// What SaveDC keeps.
struct ContextState {
  HBITMAP bitmap = nullptr;  // of a memory context
  HPALETTE palette = nullptr;
  bool backgroundPalette = false;
  HBRUSH brush = nullptr;
  HPEN pen = nullptr;
  HFONT font = nullptr;
  COLORREF text = 0x000000;
  COLORREF background = 0xFFFFFF;
  int backgroundMode = OPAQUE;
  int operation = R2_COPYPEN;  // of pens and brushes in figures
  int fillRule = ALTERNATE;    // of polygons
  UINT textAlign = TA_LEFT | TA_TOP;
  POINT position{0, 0};
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
  // Whether a pixel lies on the surface and within the clip.
  bool Shows(int x, int y) const;
  // What monochrome pictures and patterns show on this context.
  MonochromeColors Monochrome() const { return {RgbOf(state.text), RgbOf(state.background)}; }
  // The palette selected, null when it has been deleted since.
  Palette* SelectedPalette() const { return Find<Palette>(state.palette); }

  // Selection of a bitmap, or of an object that any number of contexts may hold, which goes into its
  // place in the state. The handle that was selected before, null for a failure.
  HGDIOBJ SelectBitmap(HBITMAP bitmap);
  template <class Handle>
  HGDIOBJ SelectShared(Handle ContextState::*place, HGDIOBJ object) {
    HoldObject(object);
    const Handle before = std::exchange(state.*place, static_cast<Handle>(object));
    LetGoObject(before);
    return before;
  }

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
