// Pictures of every kind that the tool reads, made from samples, and what they must show, told by
// slow models.
#ifndef VNCORE_TESTS_TOOL_SAMPLES_H
#define VNCORE_TESTS_TOOL_SAMPLES_H

#include <functional>
#include <string>

#include "tests/support/random.h"
#include "tests/support/told.h"
#include "tests/tool/seen.h"

namespace vn::test {

struct Sample {
  std::string kind;   // for the reader of a failure
  std::string bytes;  // of the file
  int32_t width, height;
  int32_t bits;        // of the bitmap that it becomes over white
  int32_t tolerance;   // by which a channel may be off
  bool hasResolution;  // and it is 300 by 150 dots per inch
  size_t padding;      // last bytes that need not be there
  std::function<Rgb(int32_t x, int32_t y, Rgb background)> shows;
};

using UseSample = std::function<void(const Sample&)>;

// Every kind of a format in some sizes, or one sample of each kind, small enough to be damaged many
// times.
void ForPngSamples(bool each, const UseSample& use);
void ForBmpSamples(bool each, const UseSample& use);
void ForJpegSamples(bool each, const UseSample& use);
void ForTiffSamples(bool each, const UseSample& use);

enum class Scans { kOne, kProgressive, kOneEach };
// A smooth picture of 8-bit gray or of YCbCr.
std::string MakeJpeg(bool gray, Scans scans, bool halfChroma, int32_t width, int32_t height);

}  // namespace vn::test

#endif
