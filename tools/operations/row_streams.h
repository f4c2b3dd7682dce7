// Rows that go from a picture's file to the next one as they come: no bitmap holds them.
#ifndef VNCORE_TOOLS_ROW_STREAMS_H
#define VNCORE_TOOLS_ROW_STREAMS_H

#include <memory>

#include "tools/formats/picture.h"
#include "tools/operations/value_parsers.h"

namespace vn::tool {

// Whether every line comes whole, once, in either order, and as it is to be seen.
bool IsStream(const PictureSource& source);
// Whether the lines also come in the order in which they are written.
bool ComesInOrder(const PictureSource& source);

// A part of a stream. What is read no more is not looked at: damage there stays unseen.
std::unique_ptr<PictureSource> CropRows(std::unique_ptr<PictureSource> source, const Part& part);
// A stream at another size, as Vn_SizeBitmap gives it.
std::unique_ptr<PictureSource> ScaleRows(std::unique_ptr<PictureSource> source,
                                         const NewSize& size);

// Whether a stream can be averaged to that size: it has colours that average, its lines come in order,
// and it grows in neither direction.
bool CanAverageRows(const PictureSource& source, int64_t width, int64_t height);
// A stream at that size, as Vn_ResampleBitmap gives it.
std::unique_ptr<PictureSource> AverageRows(std::unique_ptr<PictureSource> source, int64_t width,
                                           int64_t height);

// Writes all rows of a picture whose lines come in order, and reports to the thread's status
// callback. The sink is not finished. Throws Failure or Interruption.
void CopyRows(PictureSource& source, PictureSink& sink);

}  // namespace vn::tool

#endif
