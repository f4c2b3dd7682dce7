#include "tools/window/stage.h"

#include "kernel/guards.h"
#include "tools/terminal/status_listener.h"
#include "tools/window/effect_pace.h"

namespace vn::tool {
namespace {

constexpr uint32_t kStepTicks = 100;  // milliseconds

}  // namespace

Stage::Stage(Size window, const ScreenSettings& settings) : window_(window) { Rebuild(settings); }

void Stage::Rebuild(const ScreenSettings& settings) {
  settings_ = settings;
  const Size size = window_.size();
  view_.SetWindow(size);
  device_.emplace(size.width, size.height, settings.bits);
}

Painting Stage::PaintingOf(Bitmap& bitmap) const {
  const View::Placement place = view_.Place();
  return {bitmap, StorageRect(*bitmap.get(), place.part), place.destination};
}

void Stage::Paint(Bitmap& bitmap) {
  const DisplayModeScope mode(~0u, settings_.mode);
  device_->Paint(PaintingOf(bitmap));
  Take();
}

// Effects show all of a picture, whatever part of it is asked for.
bool Stage::RunEffect(Bitmap& bitmap, uint32_t effect, double seconds, const Painting* before) {
  if (!view_.PaintsWhole()) view_.Fit(false);
  const Painting painting = PaintingOf(bitmap);
  if (!before) device_->Blacken(painting);
  EffectPace pace(seconds, [this] {
    Take();
    screen_.Draw(window_.renderer());
    SDL_RenderPresent(window_.renderer());
  });
  const DisplayModeScope mode(~0u, settings_.mode);
  const StatusListener listener([&](int32_t percent) { return pace.Heard(percent); });
  const bool ended = device_->PaintEffect(painting, effect, before);
  listener.Rethrow();
  Take();
  return ended;
}

void Stage::Take() {
  Headless_Surface surface;
  Headless_GetScreen(&surface);
  screen_.Take(window_.renderer(), surface, device_->Area());
  dashes_.Forget();
}

void Stage::Present(Bitmap& bitmap) {
  SDL_Renderer* const renderer = window_.renderer();
  SDL_RenderClear(renderer);
  screen_.Draw(renderer);
  step_ = SDL_GetTicks() / kStepTicks;
  if (Vn_BitmapHasRgn(bitmap)) {
    dashes_.Draw(renderer, bitmap, view_.Transform(), step_ % Dashes::kFrames);
  }
  SDL_RenderPresent(renderer);
}

uint32_t Stage::MarchDue() const {
  const uint32_t now = SDL_GetTicks();
  return now / kStepTicks == step_ ? kStepTicks - now % kStepTicks : 0;
}

}  // namespace vn::tool
