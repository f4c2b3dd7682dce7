// vncore paint: a picture through the library onto a device, and what the device shows as a
// picture.
#include <memory>
#include <string>
#include <utility>

#include "kernel/guards.h"
#include "tools/commands/commands.h"
#include "tools/commands/paint_options.h"
#include "tools/commands/picture_options.h"
#include "tools/operations/headless_device.h"

namespace vn::tool {
namespace {

void Paint(const PaintOptions& options, const WriteOptions& write, const std::string& out) {
  PaintSubject subject(options);
  auto file = OpenPictureFile(out, write.form);
  subject.Load();
  HeadlessDevice device(subject.size().width, subject.size().height, options.deviceBits);
  {
    const DisplayModeScope mode(~0u, options.DisplayMode());
    device.Paint({subject.bitmap(), subject.Source(), device.Area()});
  }
  PictureInfo info = device.Info();
  info.xDotsPerInch = subject.bitmap()->XResolution;
  info.yDotsPerInch = subject.bitmap()->YResolution;
  info.metadata = write.MetadataOf(subject.Info());
  const auto sink = CreatePicture(std::move(file), info);
  device.WriteTo(*sink);
  sink->Finish();
}

}  // namespace

void AddPaintCommand(CLI::App& app) {
  CLI::App* const paint =
      app.add_subcommand("paint", "Paint a picture on a device and keep what it shows");
  const auto options = std::make_shared<PaintOptions>();
  const auto write = std::make_shared<WriteOptions>();
  const auto out = std::make_shared<std::string>();
  paint->add_option("IN", options->in, "The picture")->required();
  paint->add_option("OUT", *out, "What the device shows")->required();
  options->AddTo(paint);
  write->AddTo(paint);
  paint->callback([options, write, out] { Paint(*options, *write, *out); });
}

}  // namespace vn::tool
