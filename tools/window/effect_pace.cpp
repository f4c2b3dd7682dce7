#include "tools/window/effect_pace.h"

#include <algorithm>
#include <utility>

#include "tools/terminal/interrupt.h"
#include "tools/terminal/status_listener.h"
#include "tools/window/keys.h"

namespace vn::tool {
namespace {

using std::chrono::milliseconds;

// An effect that is late shows itself this often.
constexpr milliseconds kLateFrame(33);
// A signal is heard this soon.
constexpr milliseconds kLongestWait(50);

}  // namespace

EffectPace::EffectPace(double seconds, std::function<void()> present)
    : length_(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds))),
      present_(std::move(present)) {}

VnStatus EffectPace::Heard(int32_t percent) {
  // What came before the first call was preparation.
  if (!start_) start_ = Clock::now();
  const auto due = length_ * percent / 100;
  if (Clock::now() < *start_ + due || Clock::now() - presented_ >= kLateFrame) Present();
  for (;;) {
    if (Interrupted() || PendingSignal()) return kStopped;
    const auto now = Clock::now();
    const auto left = *start_ + due - now;
    if (!held_ && left <= Clock::duration::zero()) return OK;
    const auto wait =
        held_ ? kLongestWait
              : std::clamp(std::chrono::ceil<milliseconds>(left), milliseconds(1), kLongestWait);
    SDL_WaitEventTimeout(nullptr, static_cast<int>(wait.count()));
    if (held_) *start_ += Clock::now() - now;
  }
}

bool EffectPace::Interrupted() {
  SDL_PumpEvents();
  const auto next = [](SDL_Event* event, SDL_eventaction action) {
    return SDL_PeepEvents(event, 1, action, SDL_FIRSTEVENT, SDL_LASTEVENT) > 0;
  };
  SDL_Event event;
  while (next(&event, SDL_PEEKEVENT)) {
    if (Stops(event)) return true;
    next(&event, SDL_GETEVENT);
  }
  return false;
}

bool EffectPace::Stops(const SDL_Event& event) {
  switch (event.type) {
    case SDL_KEYDOWN: {
      const Key* const key = FindKey(event.key.keysym);
      if (!key || event.key.repeat) return false;
      if (key->action != Action::kHold) return true;
      held_ = !held_;
      return false;
    }
    case SDL_WINDOWEVENT:
      if (event.window.event == SDL_WINDOWEVENT_EXPOSED) Present();
      return event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED;
    default:
      return event.type == SDL_QUIT || event.type == SDL_MOUSEBUTTONDOWN ||
             event.type == SDL_MOUSEWHEEL || event.type == SDL_DROPFILE;
  }
}

void EffectPace::Present() {
  present_();
  presented_ = Clock::now();
}

}  // namespace vn::tool
