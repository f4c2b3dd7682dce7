// Every further format, through libvips: WebP, GIF, HEIC, AVIF, JPEG 2000, SVG, PDF and what else it
// was built with. A page at a time, rows as they come, 8 bits gray or 24 bits.
#ifndef VNCORE_TOOLS_VIPS_READER_H
#define VNCORE_TOOLS_VIPS_READER_H

#include <memory>

#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"

namespace vn::tool {

// Null for what libvips does not know either. Throws Failure for what it knows and cannot read.
std::unique_ptr<PictureSource> OpenByVips(std::unique_ptr<InputFile> file,
                                          const ReadOptions& options);

}  // namespace vn::tool

#endif
