// Numbered cases: two worlds, one checksum.
//
// A family draws its cases from nothing but their numbers. A case folds what it sees (results,
// codes, progress, pixels) into a checksum; the checksums of a family's cases sum to one constant,
// which stands beside the family and must come out the same on the headless platform and on a real
// Win32. To join, a family is one file that registers itself; see family_usages.cpp.
#ifndef VNCORE_TESTS_CASES_CASE_H
#define VNCORE_TESTS_CASES_CASE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace vn::cases {

// One run of one case.
class Case {
 public:
  Case(const char* family, uint32_t number, bool verbose);

  // The case's numbers, all that it may depend on.
  test::Random random;

  // A number, or one of a list. Draw in statements: the arguments of one call are evaluated in any
  // order, and each compiler has its own.
  int32_t Pick(int32_t low, int32_t high) { return random.Between(low, high); }
  template <class T, size_t N>
  T OneOf(const T (&values)[N]) {
    return values[static_cast<size_t>(random.Between(0, N - 1))];
  }

  // Fold something into the checksum, and show it in a verbose run. Handles and pointers are
  // folded as present or not.
  void Fold(const char* what, int64_t value);
  void FoldHandle(const char* what, const void* handle) { Fold(what, handle != nullptr); }
  void FoldBytes(const char* what, const void* bytes, size_t count);

  // A remark for the reader of a verbose run, not folded.
  void Note(const char* format, ...) __attribute__((format(printf, 2, 3)));

  uint64_t sum() const { return sum_; }
  bool verbose() const { return verbose_; }

 private:
  void Mix(uint8_t byte) { sum_ = (sum_ ^ byte) * 0x100000001B3u; }  // FNV-1a
  uint64_t sum_ = 0xCBF29CE484222325u;
  bool verbose_;
};

// The screen that a family needs. Natively it is set; on Windows the family runs where it is found.
enum class Screen {
  kAny,        // no case touches the screen
  kPalette,    // 8 bits, RC_PALETTE, 256 entries of which 20 are reserved
  kTrueColor,  // 32 bits
};

// The world that the cases run in, the headless platform or Windows. Enter fails, with a line on
// standard error, when it is not the one that is asked for; natively the platform claims what it is
// told.
bool EnterWorld(bool win32s);
// Whether a family with this need can run here. Natively the screen is set first.
bool Provide(Screen screen);
// Whether nothing more is alive than at the last call; where the platform does not count, true.
bool Balanced();

struct Family {
  const char* name;
  uint32_t cases;  // numbers 0 to cases - 1
  uint64_t sum;    // of the checksums of all cases, modulo 2 to the power 64
  void (*run)(Case& test);
  Screen screen = Screen::kAny;
};

std::vector<Family>& Families();

// A global of this type adds a family to the program.
struct Registration {
  explicit Registration(const Family& family) { Families().push_back(family); }
};

}  // namespace vn::cases

#endif
