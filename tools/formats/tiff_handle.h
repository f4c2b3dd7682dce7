// An open TIFF file of libtiff, over a file of ours.
#ifndef VNCORE_TOOLS_TIFF_HANDLE_H
#define VNCORE_TOOLS_TIFF_HANDLE_H

#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <string>

namespace vn::tool {

// Largest single block of memory that libtiff may ask for: a header may promise anything, and a
// compressed strip is taken in whole.
inline constexpr int64_t kMostTiffBlock = int64_t{256} << 20;

// The first error that libtiff told since it was last cleared.
struct TiffError {
  char text[256] = "";
};

// Makes one line of a text of libtiff's, which may hold line ends and whatever a file says.
void MakeOneLine(char* text);

struct TiffClose {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffPointer = std::unique_ptr<TIFF, TiffClose>;

// What libtiff does with the file; `file` goes to each.
struct TiffProcedures {
  TIFFReadWriteProc read, write;
  TIFFSeekProc seek;
  TIFFSizeProc size;
};

// Opens a file for libtiff, which reports its errors to `error` and warns nobody. Null on failure.
// `file` and `error` must outlive the handle and keep their places.
TiffPointer OpenTiff(const std::string& path, const char* mode, void* file,
                     const TiffProcedures& procedures, TiffError* error);

}  // namespace vn::tool

#endif
