#include "tools/window/window.h"

#include <algorithm>
#include <cstdlib>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

[[noreturn]] void Fail(const char* what) {
  throw Failure(std::string(what) + ": " + SDL_GetError());
}

// The drivers of the displays that the environment names. Left alone, SDL would go on to one that
// shows nothing.
std::string Drivers() {
  std::string drivers;
  if (std::getenv("WAYLAND_DISPLAY")) drivers = "wayland";
  if (std::getenv("DISPLAY")) drivers += drivers.empty() ? "x11" : ",x11";
  return drivers;
}

}  // namespace

VideoSession::VideoSession() {
  SDL_SetMainReady();
  if (!std::getenv("SDL_VIDEODRIVER")) {
    const std::string drivers = Drivers();
    if (drivers.empty()) throw Failure("there is no display to open a window on");
    SDL_SetHint(SDL_HINT_VIDEODRIVER, drivers.c_str());
  }
  // A window is no reason to keep the screen from sleeping.
  SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
  // The picture is made in memory; OpenGL would bring windows of its own for a moment, and put another
  // one in the place of the first.
  SDL_SetHint(SDL_HINT_RENDER_DRIVER, "software");
  SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) Fail("there is no display to open a window on");
}

Size VideoSession::Room() const {
  SDL_Rect usable{0, 0, 1024, 768};
  SDL_GetDisplayUsableBounds(0, &usable);
  // Frame and title bar take their part.
  return {std::max(usable.w * 9 / 10, 1), std::max(usable.h * 9 / 10, 1)};
}

Window::Window(Size size)
    : window_(SDL_CreateWindow("vnview", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                               size.width, size.height, SDL_WINDOW_RESIZABLE | SDL_WINDOW_HIDDEN)) {
  if (!window_) Fail("cannot open a window");
  // Renderers that the user prefers may put another window in its place, so it shows itself only
  // afterwards.
  renderer_.reset(SDL_CreateRenderer(window_, -1, 0));
  if (!renderer_) Fail("cannot draw in a window");
  SDL_ShowWindow(window_);
}

Size Window::size() const {
  Size size{};
  SDL_GetRendererOutputSize(renderer_.get(), &size.width, &size.height);
  return {std::max(size.width, 1), std::max(size.height, 1)};
}

}  // namespace vn::tool
