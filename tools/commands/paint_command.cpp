// vncore paint: a picture through the library onto a device, and what the device shows as a
// picture.
#include <memory>
#include <string>
#include <utility>

#include "kernel/guards.h"
#include "tools/commands/commands.h"
#include "tools/commands/paint_options.h"
#include "tools/operations/headless_device.h"

namespace vn::tool {
namespace {

void Paint(const PaintOptions& options, const std::string& out) {
  PaintSubject subject(options);
  auto file = OpenPictureFile(out);
  subject.Load();
  HeadlessDevice device(subject.size().width, subject.size().height, options.deviceBits);
  {
    const DisplayModeScope mode(~0u, options.DisplayMode());
    device.Paint({subject.bitmap(), subject.Source(), device.Area()});
  }
  const auto sink = CreatePicture(std::move(file), device.Info());
  device.WriteTo(*sink);
  sink->Finish();
}

}  // namespace

void AddPaintCommand(CLI::App& app) {
  CLI::App* const paint =
      app.add_subcommand("paint", "Paint a picture on a device and keep what it shows");
  const auto options = std::make_shared<PaintOptions>();
  const auto out = std::make_shared<std::string>();
  paint->add_option("IN", options->in, "The picture")->required();
  paint->add_option("OUT", *out, "What the device shows")->required();
  options->AddTo(paint);
  paint->callback([options, out] { Paint(*options, *out); });
}

}  // namespace vn::tool
