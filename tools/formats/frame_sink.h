// Where the frames of a moving picture go.
#ifndef VNCORE_TOOLS_FRAME_SINK_H
#define VNCORE_TOOLS_FRAME_SINK_H

#include <memory>
#include <string>

#include <vncore/platform/headless/headless.h>

namespace vn::tool {

class FrameSink {
 public:
  virtual ~FrameSink() = default;
  // Writes what the surface shows as the next frame. Throws Failure or Interruption.
  virtual void Add(const Headless_Surface& surface) = 0;
  // Makes the frames appear. Without this call nothing is left of them.
  virtual void Finish() = 0;
};

// An animated GIF file for a name that ends so; for any other name a folder, made where it is
// missing, of numbered PNG files. `frames` is their number, `seconds` the time between two.
std::unique_ptr<FrameSink> OpenFrames(const std::string& path, int32_t frames, double seconds);

}  // namespace vn::tool

#endif
