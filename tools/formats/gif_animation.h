// Frames as one animated GIF file, where giflib is.
#ifndef VNCORE_TOOLS_GIF_ANIMATION_H
#define VNCORE_TOOLS_GIF_ANIMATION_H

#include "tools/formats/frame_sink.h"

namespace vn::tool {

// Throws Failure where the tool was built without giflib. Frames have up to 8 bits.
std::unique_ptr<FrameSink> OpenGifAnimation(const std::string& path, double seconds);

}  // namespace vn::tool

#endif
