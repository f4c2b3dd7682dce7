#include "tools/formats/tiff_handle.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>

namespace vn::tool {
namespace {

// Both say that nobody else needs to be told.
int OnError(TIFF*, void* user, const char*, const char* format, va_list arguments) {
  auto* error = static_cast<TiffError*>(user);
  if (error->text[0]) return 1;
  std::vsnprintf(error->text, sizeof error->text, format, arguments);
  MakeOneLine(error->text);
  return 1;
}
int OnWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }

// The file has its own owner.
int OnClose(thandle_t) { return 0; }

}  // namespace

void MakeOneLine(char* text) {
  for (; *text; ++text) {
    if (std::iscntrl(static_cast<unsigned char>(*text))) *text = ' ';
  }
}

TiffPointer OpenTiff(const std::string& path, const char* mode, void* file,
                     const TiffProcedures& procedures, TiffError* error) {
  struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  if (!options) {
    std::snprintf(error->text, sizeof error->text, "there is not enough memory");
    return nullptr;
  }
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMostTiffBlock);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &OnError, error);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &OnWarning, nullptr);
  // Not mapped: a file that someone else truncates meanwhile must be a failure and no signal.
  return TiffPointer(TIFFClientOpenExt(path.c_str(), mode, file, procedures.read, procedures.write,
                                       procedures.seek, &OnClose, procedures.size, nullptr, nullptr,
                                       options.get()));
}

}  // namespace vn::tool
