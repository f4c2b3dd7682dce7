// The window on the desktop.
#ifndef VNCORE_TOOLS_WINDOW_H
#define VNCORE_TOOLS_WINDOW_H

#include <SDL.h>
#include <memory>
#include <string>

#include "tools/formats/destroyer.h"
#include "tools/operations/value_parsers.h"

namespace vn::tool {

using OwnedRenderer = std::unique_ptr<SDL_Renderer, Destroyer<&SDL_DestroyRenderer>>;
using OwnedTexture = std::unique_ptr<SDL_Texture, Destroyer<&SDL_DestroyTexture>>;

// SDL with its video. Throws Failure where there is no display.
//
// It and the window end with the process, not before. To wake its own wait SDL sends the window an
// event over a second connection; when the window is gone before the X server reads that, closing the
// connection tells of a bad window, and Xlib ends the program as a failure.
class VideoSession {
 public:
  VideoSession();
  VideoSession(const VideoSession&) = delete;
  VideoSession& operator=(const VideoSession&) = delete;

  // What a window can have of the desktop.
  Size Room() const;
};

// Resizable. Throws Failure when it cannot be opened.
class Window {
 public:
  explicit Window(Size size);

  SDL_Renderer* renderer() const { return renderer_.get(); }
  // Pixels that the renderer has, at least 1 by 1.
  Size size() const;
  void SetTitle(const std::string& title) { SDL_SetWindowTitle(window_, title.c_str()); }

 private:
  SDL_Window* window_;
  OwnedRenderer renderer_;
};

}  // namespace vn::tool

#endif
