// The pace of an effect, kept through the library's status callback.
#ifndef VNCORE_TOOLS_EFFECT_PACE_H
#define VNCORE_TOOLS_EFFECT_PACE_H

#include <SDL.h>
#include <chrono>
#include <functional>
#include <optional>

#include <vncore/vncore.h>

namespace vn::tool {

class EffectPace {
 public:
  // An effect is to last `seconds`. `present` brings the screen to the window.
  EffectPace(double seconds, std::function<void()> present);

  // For a StatusListener: shows what has been painted and waits until the percentage is due, longer
  // while the effect is held. An event that asks for something else stops the effect and stays in
  // the queue.
  VnStatus Heard(int32_t percent);

 private:
  using Clock = std::chrono::steady_clock;
  bool Interrupted();
  bool Stops(const SDL_Event& event);
  void Present();

  Clock::duration length_;
  std::function<void()> present_;
  std::optional<Clock::time_point> start_;
  Clock::time_point presented_{};
  bool held_ = false;
};

}  // namespace vn::tool

#endif
