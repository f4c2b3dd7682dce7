// Tests that steer the headless platform. On Windows there is nothing to steer: such a test is
// compiled, so that it cannot rot, and reported as skipped.
#ifndef VNCORE_TESTS_SUPPORT_HEADLESS_CONTROL_H
#define VNCORE_TESTS_SUPPORT_HEADLESS_CONTROL_H

#include <gtest/gtest.h>

#include <vncore/platform/headless/headless.h>

#ifdef _WIN32
#define HEADLESS_TEST(suite, name)                                     \
  TEST(suite, name) { GTEST_SKIP() << "needs the headless platform"; } \
  template <class Never>                                               \
  [[maybe_unused]] void suite##_##name##_Body()
#else
#define HEADLESS_TEST(suite, name) TEST(suite, name)
#endif

namespace vn::test {

// The usual test screens.
inline Headless_Display DisplayOf(int32_t bits) {
  return {256, 192, bits, bits == 8, 20, DT_RASDISPLAY, 96};
}

// Another screen for the length of a test.
class DisplayScope {
 public:
  explicit DisplayScope(int32_t bits) : DisplayScope(DisplayOf(bits)) {}
  explicit DisplayScope(const Headless_Display& display) {
    Headless_GetDisplay(&before_);
    EXPECT_EQ(Headless_SetDisplay(&display), 1);
  }
  DisplayScope(const DisplayScope&) = delete;
  DisplayScope& operator=(const DisplayScope&) = delete;
  ~DisplayScope() { Headless_SetDisplay(&before_); }

 private:
  Headless_Display before_;
};

// The library attached as on Win32s for the length of a test.
class Win32sScope {
 public:
  Win32sScope() {
    Headless_SetVersion(HEADLESS_VERSION_WIN32S);
    EXPECT_EQ(Headless_Restart(), 1);
  }
  Win32sScope(const Win32sScope&) = delete;
  Win32sScope& operator=(const Win32sScope&) = delete;
  ~Win32sScope() {
    Headless_SetVersion(HEADLESS_VERSION_WIN32);
    Headless_Restart();
  }
};

}  // namespace vn::test

#endif
