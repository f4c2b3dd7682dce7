// Pictures with damaged bytes.
#ifndef VNCORE_TESTS_TOOL_DAMAGE_H
#define VNCORE_TESTS_TOOL_DAMAGE_H

#include <gtest/gtest.h>

#include <string>

#include "tests/support/random.h"
#include "tests/tool/shown_pixels.h"
#include "tests/tool/temporary_folder.h"
#include "tools/failure.h"

namespace vn::test {

// Loads `sound` sixty times with some bytes from `first` on overwritten: none
// crashes, and a failure is one line.
inline void LoadDamaged(const std::string& path, const std::string& sound, int32_t first,
                        Random& random) {
  for (int i = 0; i < 60; ++i) {
    std::string damaged = sound;
    for (int32_t bytes = random.Between(1, 4); bytes > 0; --bytes) {
      const auto at =
          static_cast<size_t>(random.Between(first, static_cast<int32_t>(sound.size()) - 1));
      damaged[at] = static_cast<char>(random.Next());
    }
    WriteFile(path, damaged);
    tool::Bitmap bitmap;
    try {
      Load(path, {}, bitmap);
    } catch (const tool::Failure& failure) {
      EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos);
    }
  }
}

}  // namespace vn::test

#endif
