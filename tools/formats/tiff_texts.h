// What TIFF files say of their pictures in fields: a colour profile, texts, XMP.
#ifndef VNCORE_TOOLS_TIFF_TEXTS_H
#define VNCORE_TOOLS_TIFF_TEXTS_H

#include "tools/formats/metadata.h"
#include "tools/formats/tiff_handle.h"

namespace vn::tool {

// Of the present page.
Metadata ReadTiffTexts(TIFF* tiff);
// Sets the fields of the page that is begun. False when libtiff has failed; `room` gets what is told.
// `gray`: the page is gray, else colours or a palette of them.
bool WriteTiffTexts(TIFF* tiff, const Metadata& metadata, bool gray, MetadataRoom* room);

}  // namespace vn::tool

#endif
