#include "tools/window/viewer.h"

#include <algorithm>
#include <utility>

#include "tools/operations/effect_names.h"
#include "tools/operations/load_bitmap.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/program.h"
#include "tools/terminal/progress_bar.h"
#include "tools/window/title.h"

namespace vn::tool {
namespace {

constexpr uint32_t kIdleTicks = 250;  // milliseconds; a signal is heard this soon
constexpr uint32_t kDitherBits = MODE_ORDERED_DITHER | MODE_CLUSTERED_MATRIX;

Size SizeOf(Bitmap& bitmap) { return {bitmap->Width, bitmap->Height}; }

// As the picture needs it, but wide enough for a title, and no larger than the desktop has room.
Size WindowSize(Size picture, Size room) {
  View view;
  view.SetPicture(picture);
  view.SetWindow(room);
  const RECT shown = view.Destination();
  const auto side = [](LONG needed, int32_t least, int32_t most) {
    return std::clamp(static_cast<int32_t>(needed), std::min(least, most), most);
  };
  return {side(shown.right - shown.left, 320, room.width),
          side(shown.bottom - shown.top, 240, room.height)};
}

// Whether Escape waits; what waits with it was pressed for the same end.
bool TakeEscape() {
  SDL_Event events[64];
  const int count =
      SDL_PeepEvents(events, std::ssize(events), SDL_PEEKEVENT, SDL_KEYDOWN, SDL_KEYDOWN);
  const bool escape = std::any_of(events, events + std::max(count, 0), [](const SDL_Event& event) {
    return event.key.keysym.sym == SDLK_ESCAPE;
  });
  if (escape) SDL_FlushEvent(SDL_KEYDOWN);
  return escape;
}

uint32_t CombineOf(SDL_Keymod modifiers) {
  if (modifiers & KMOD_SHIFT) return REGION_COMBINE_OR;
  if (modifiers & KMOD_CTRL) return REGION_COMBINE_OLD_MINUS_NEW;
  return REGION_COMBINE_REPLACE;
}

}  // namespace

Viewer::Viewer(const ViewerOptions& options) : options_(options), bitmap_(new Bitmap) {
  {
    const std::string& first = options_.pictures.front();
    const ProgressBar bar("reading " + first);
    LoadBitmap(*OpenPicture(first, {}), STORAGE_AUTO, *bitmap_);
  }
  if (options_.effect) effectName_ = kEffectNames[shownEffect_ = *options_.effect];
  const Size picture = SizeOf(*bitmap_);
  stage_.emplace(options_.size.value_or(WindowSize(picture, session_.Room())), options_.screen);
  stage_->view().SetPicture(picture);
}

void Viewer::Run() {
  while (!done_) {
    SDL_Event event;
    if (SDL_WaitEventTimeout(&event, static_cast<int>(Wait()))) {
      do {
        Obey(event);
      } while (!done_ && SDL_PollEvent(&event));
    }
    ThrowIfInterrupted();
    if (done_) return;
    if (stale_) {
      Repaint();
    } else if (Wait() == 0) {
      stage_->Present(*bitmap_);
    }
  }
}

// Milliseconds until there is something to do without an event.
uint32_t Viewer::Wait() {
  if (stale_) return 0;
  return Vn_BitmapHasRgn(*bitmap_) ? stage_->MarchDue() : kIdleTicks;
}

void Viewer::Obey(const SDL_Event& event) {
  switch (event.type) {
    case SDL_QUIT:
      done_ = true;
      break;
    case SDL_WINDOWEVENT:
      if (event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED) SetScreen(options_.screen);
      if (event.window.event == SDL_WINDOWEVENT_EXPOSED) stage_->Present(*bitmap_);
      break;
    case SDL_KEYDOWN:
      if (const Key* const key = FindKey(event.key.keysym)) ObeyKey(*key);
      break;
    case SDL_DROPFILE:
      dropped_.emplace_back(event.drop.file);
      SDL_free(event.drop.file);
      break;
    case SDL_DROPCOMPLETE:
      ShowDropped();
      break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
      ObeyButton(event.button);
      break;
    case SDL_MOUSEMOTION:
      ObeyMotion(event.motion);
      break;
    case SDL_MOUSEWHEEL: {
      int x = 0, y = 0;
      SDL_GetMouseState(&x, &y);
      if (event.wheel.y) stage_->view().StepZoom(event.wheel.y > 0 ? 1 : -1, {x, y});
      stale_ = true;
      break;
    }
  }
}

void Viewer::ObeyKey(const Key& key) {
  View& view = stage_->view();
  ScreenSettings screen = options_.screen;
  const auto bits = static_cast<uint32_t>(key.argument);
  stale_ = true;
  note_.clear();
  switch (key.action) {
    case Action::kScreen:
      screen.bits = key.argument;
      return SetScreen(screen);
    case Action::kDither:
      screen.mode = (screen.mode & ~kDitherBits) | bits;
      return SetScreen(screen);
    case Action::kToggleMode:
      screen.mode ^= bits;
      return SetScreen(screen);
    case Action::kTurn:
      return Turn(key.argument);
    case Action::kAgain:
      return ShowWithEffect(nullptr);
    case Action::kChooseEffect:
      options_.effect = (shownEffect_ + EFFECT_COUNT + bits) % EFFECT_COUNT;
      return ShowWithEffect(nullptr);
    case Action::kRandomEffect:
      options_.effect.reset();
      effectName_ = "random";
      return;
    case Action::kHold:
      return;
    case Action::kEscape:
      selection_.End();
      Vn_FreeBitmapRgn(*bitmap_);
      return;
    case Action::kZoom:
      return view.StepZoom(key.argument, view.Centre());
    case Action::kPixels:
      return view.ShowPixels(view.Centre());
    case Action::kFit:
      return view.Fit(true);
    case Action::kPanColumns:
      return view.Pan(-key.argument * stage_->window().size().width / 8, 0);
    case Action::kPanRows:
      return view.Pan(0, -key.argument * stage_->window().size().height / 8);
    case Action::kShape:
      return selection_.SwitchShape();
    case Action::kCopy:
      return Attempt(&Viewer::CopyPicture);
    case Action::kPaste:
      return Attempt(&Viewer::PastePicture);
    case Action::kPrint:
      return Attempt(&Viewer::PrintPicture);
    case Action::kQuit:
      done_ = true;
      return;
  }
}

void Viewer::ObeyButton(const SDL_MouseButtonEvent& button) {
  const bool down = button.type == SDL_MOUSEBUTTONDOWN;
  if (button.button == SDL_BUTTON_RIGHT) panning_ = down;
  if (button.button != SDL_BUTTON_LEFT) return;
  if (down) {
    selection_.Begin(*bitmap_, stage_->view().PixelAt({button.x, button.y}),
                     CombineOf(SDL_GetModState()));
  } else {
    selection_.End();
  }
}

void Viewer::ObeyMotion(const SDL_MouseMotionEvent& motion) {
  if (selection_.dragging()) {
    selection_.MoveTo(stage_->view().PixelAt({motion.x, motion.y}));
    stale_ = true;
  } else if (panning_) {
    stage_->view().Pan(motion.xrel, motion.yrel);
    stale_ = true;
  }
}

std::unique_ptr<Bitmap> Viewer::Load(const std::string& path) {
  const StatusListener listener(ProgressOf("reading " + path));
  try {
    auto bitmap = std::make_unique<Bitmap>();
    LoadBitmap(*OpenPicture(path, {}), STORAGE_AUTO, *bitmap);
    return bitmap;
  } catch (const Failure& failure) {
    TellFailure(failure);
    return nullptr;
  }
}

void Viewer::TellFailure(const Failure& failure) {
  note_ = std::exchange(stopped_, false) ? "stopped" : failure.what();
  if (!SDL_HasEvent(SDL_QUIT)) Complain("vnview", note_);
}

StatusListener::Hear Viewer::ProgressOf(const std::string& what) {
  stopped_ = false;
  return [this, what](int32_t percent) {
    stage_->window().SetTitle(what + ": " + std::to_string(percent) + " %");
    SDL_PumpEvents();
    stopped_ |= SDL_HasEvent(SDL_QUIT) || TakeEscape();
    return stopped_ ? kStopped : OK;
  };
}

// Passes over what cannot be read.
void Viewer::Turn(int32_t direction) {
  const size_t count = options_.pictures.size();
  // A pasted picture lies between that which showed and the next.
  size_t at = pasted_ && direction < 0 ? at_ + 1 : at_;
  for (size_t tried = pasted_ ? 0 : 1; tried < count; ++tried) {
    at = (at + count + static_cast<size_t>(direction)) % count;
    std::unique_ptr<Bitmap> next = Load(options_.pictures[at]);
    if (!next) continue;
    at_ = at;
    pasted_ = false;
    return Replace(std::move(next));
  }
}

void Viewer::Replace(std::unique_ptr<Bitmap> next) {
  selection_.End();
  const Painting before = stage_->PaintingOf(*bitmap_);
  bitmap_.swap(next);
  stage_->view().SetPicture(SizeOf(*bitmap_));
  stage_->view().Fit(false);
  ShowWithEffect(&before);
}

void Viewer::ShowWithEffect(const Painting* before) {
  shownEffect_ = options_.effect.value_or(random_() % (EFFECT_COUNT - 1) + 1);
  effectName_ = options_.effect ? "" : "random: ";
  effectName_ += kEffectNames[shownEffect_];
  TellTitle();
  stale_ = !stage_->RunEffect(*bitmap_, shownEffect_, options_.seconds, before);
  if (!stale_) stage_->Present(*bitmap_);
}

void Viewer::SetScreen(const ScreenSettings& settings) {
  options_.screen = settings;
  stage_->Rebuild(settings);
  stale_ = true;
}

void Viewer::Repaint() {
  stage_->Paint(*bitmap_);
  stage_->Present(*bitmap_);
  TellTitle();
  stale_ = false;
}

void Viewer::TellTitle() {
  const bool counts = !pasted_;
  stage_->window().SetTitle(Title({counts ? options_.pictures[at_] : "clipboard", at_,
                                   counts ? options_.pictures.size() : 1, *bitmap_, options_.screen,
                                   effectName_, stage_->view().zoom().Factor(), note_}));
}

}  // namespace vn::tool
