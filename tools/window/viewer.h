// The viewer: pictures, and what keys and mouse make of them.
#ifndef VNCORE_TOOLS_VIEWER_H
#define VNCORE_TOOLS_VIEWER_H

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tools/terminal/failure.h"
#include "tools/terminal/status_listener.h"
#include "tools/window/keys.h"
#include "tools/window/selection.h"
#include "tools/window/stage.h"

namespace vn::tool {

struct ViewerOptions {
  std::vector<std::string> pictures;  // at least one
  std::optional<Size> size;           // of the window; else as the first picture needs it
  ScreenSettings screen;
  std::optional<uint32_t> effect;  // none: a random one each time
  double seconds = 1.5;            // that an effect lasts
};

class Viewer {
 public:
  // Loads the first picture and opens the window. Throws Failure or Interruption, as Run does.
  explicit Viewer(const ViewerOptions& options);
  // Until the window is closed.
  void Run();

 private:
  void Obey(const SDL_Event& event);
  void ObeyKey(const Key& key);
  void ObeyMotion(const SDL_MouseMotionEvent& motion);
  void ObeyButton(const SDL_MouseButtonEvent& button);

  // In the title and on standard error.
  void TellFailure(const Failure& failure);

  // viewer_desktop.cpp
  void Attempt(void (Viewer::*work)());
  void CopyPicture();
  void PastePicture();
  void PrintPicture();
  void ShowDropped();

  // Null for a picture that cannot be read, of which standard error tells, and at the end.
  std::unique_ptr<Bitmap> Load(const std::string& path);
  // Tells the title how far `what` is; Escape and the window's end stop it.
  StatusListener::Hear ProgressOf(const std::string& what);
  void Turn(int32_t direction);
  // Shows this one, with the effect over the picture before.
  void Replace(std::unique_ptr<Bitmap> next);
  void ShowWithEffect(const Painting* before);
  void SetScreen(const ScreenSettings& settings);
  void Repaint();
  uint32_t Wait();
  void TellTitle();

  ViewerOptions options_;
  VideoSession session_;
  size_t at_ = 0;                     // the picture that shows
  bool pasted_ = false;               // behind which that of the clipboard does
  std::vector<std::string> dropped_;  // files that have not been looked at
  std::string note_;
  std::unique_ptr<Bitmap> bitmap_;
  std::optional<Stage> stage_;
  Selection selection_;
  uint32_t shownEffect_ = EFFECT_PLAIN;
  std::string effectName_ = "random";
  bool stopped_ = false;  // what ProgressOf last told of
  bool panning_ = false, stale_ = true, done_ = false;
  std::mt19937 random_{std::random_device{}()};
};

}  // namespace vn::tool

#endif
