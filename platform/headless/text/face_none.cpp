// Where the library is built without the headers of FreeType and fontconfig: a device without fonts.
#include "platform/headless/text/face.h"

namespace headless {

Face* FindFace(const FontTraits&) { return nullptr; }

}  // namespace headless
