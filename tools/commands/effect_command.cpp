// vncore effect: the states of a device while a picture comes onto it with an effect.
#include <cstdio>
#include <memory>
#include <string>

#include "kernel/guards.h"
#include "tools/commands/commands.h"
#include "tools/commands/paint_options.h"
#include "tools/commands/picture_options.h"
#include "tools/formats/frame_sink.h"
#include "tools/operations/effect_names.h"
#include "tools/operations/headless_device.h"
#include "tools/operations/load_bitmap.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

struct EffectOptions {
  PaintOptions paint;
  std::string out;
  uint32_t effect = EFFECT_DISSOLVE_8;
  int32_t frames = 10;
  double seconds = 0.1;
  std::string from;
};

// Takes frames from the screen at even steps of the status callback, the first before the effect
// and the last after it.
class FrameTaker {
 public:
  FrameTaker(FrameSink& sink, int32_t frames) : sink_(sink), frames_(frames) {}

  // What the listener could not throw through the library, and the frames that remain.
  void Finish() {
    listener_.Rethrow();
    ThrowIfInterrupted();
    while (taken_ < frames_)
      Take();
  }

 private:
  // The last frame waits for the end.
  VnStatus TakeUpTo(int32_t percent) {
    while (taken_ < frames_ - 1 && taken_ * 100 <= percent * (frames_ - 1))
      Take();
    return OK;
  }
  void Take() {
    Headless_Surface screen;
    Headless_GetScreen(&screen);
    sink_.Add(screen);
    ++taken_;
  }

  FrameSink& sink_;
  int32_t frames_, taken_ = 0;
  StatusListener listener_{[this](int32_t percent) { return TakeUpTo(percent); }};
};

// The picture that is on the screen before, if one is named.
void LoadFrom(const EffectOptions& options, Bitmap& bitmap) {
  if (options.from.empty()) return;
  const auto picture = OpenOnePicture(options.from, options.paint.read);
  const ProgressBar bar("reading " + options.from);
  LoadBitmap(*picture, options.paint.storage.kind.value_or(STORAGE_AUTO), bitmap);
}

void RunEffect(const EffectOptions& options) {
  PaintSubject subject(options.paint);
  const auto sink = OpenFrames(options.out, options.frames, options.seconds);
  subject.Load();
  Bitmap from;
  LoadFrom(options, from);
  HeadlessDevice device(subject.size().width, subject.size().height, options.paint.deviceBits);
  const DisplayModeScope mode(~0u, options.paint.DisplayMode());
  const Painting before{from, {0, 0, from->Width, from->Height}, device.Area()};
  FrameTaker frames(*sink, options.frames);
  // What stops it, the frames tell of.
  device.PaintEffect({subject.bitmap(), subject.Source(), device.Area()}, options.effect,
                     options.from.empty() ? nullptr : &before);
  frames.Finish();
  sink->Finish();
}

void ListEffects() {
  for (uint32_t effect = 0; effect < EFFECT_COUNT; ++effect)
    std::printf("%2u  %s\n", effect, kEffectNames[effect]);
  throw CLI::Success();
}

}  // namespace

void AddEffectCommand(CLI::App& app) {
  CLI::App* const effect = app.add_subcommand(
      "effect", "Bring a picture onto a device with an effect and keep its states");
  const auto options = std::make_shared<EffectOptions>();
  effect->add_option("IN", options->paint.in, "The picture")->required();
  effect->add_option("OUT", options->out, "A folder for numbered PNG files, or a .gif file")
      ->required();
  AddParsed(effect, "--effect", &options->effect, &ParseEffect, "NAME|NUMBER",
            "The effect, dissolve-8 if not given");
  effect->add_flag_callback("--list", &ListEffects, "Name all effects, and do nothing else");
  effect->add_option("--frames", options->frames, "States to keep, first and last included (10)")
      ->check(CLI::Range(2, 1000));
  effect->add_option("--seconds", options->seconds, "Time of a state in a .gif file (0.1)")
      ->check(CLI::Range(0.0, 600.0));
  effect->add_option("--from", options->from,
                     "The picture that is there before, black if not given");
  options->paint.AddTo(effect);
  effect->callback([options] { RunEffect(*options); });
}

}  // namespace vn::tool
