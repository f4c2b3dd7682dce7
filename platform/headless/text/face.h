// Faces: where the shapes of letters come from.
#ifndef VNCORE_PLATFORM_HEADLESS_FACE_H
#define VNCORE_PLATFORM_HEADLESS_FACE_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/objects/font.h"

namespace headless {

// A letter's picture, in pixels about the point of the base line at which it stands.
struct Glyph {
  int32_t left = 0, top = 0;  // of the picture's corner; rows count downwards
  int32_t width = 0, height = 0;
  int32_t advance = 0;            // to the point of the next letter
  std::vector<uint8_t> coverage;  // width * height: 0 for none of the pixel, 255 for all of it
};

// A face at one size.
class Face {
 public:
  virtual ~Face() = default;

  // Pixels above and below the base line.
  int32_t ascent = 0, descent = 0;
  std::string name;

  // `smooth` tells whether edges may be covered in part. Null when the letter cannot be drawn; a
  // letter that the face does not have is its sign for that. Throws when memory fails.
  virtual const Glyph* Find(char32_t letter, bool smooth) = 0;
};

// The face that answers a font best, null where there is none. It and its letters live until the
// next call. Throws when memory fails.
Face* FindFace(const FontTraits& font);

}  // namespace headless

#endif
