// Runs the numbered cases and compares each family's sum with its constant.
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "tests/cases/case.h"

namespace {

using namespace vn::cases;

const char usage[] =
    "usage: vncore_cases [options]\n"
    "  --family NAME   this family only (all)\n"
    "  --case N        this case of the family only; nothing is compared\n"
    "  --verbose       show what the cases fold\n"
    "  --each          a line with the checksum of every case, to be compared between worlds\n"
    "  --win32s        the run is one on Win32s\n"
    "  --screen BITS   the screen must have this depth: 8 (a palette device) or 32\n"
    "  --list          list the families\n";

struct Options {
  std::string family;
  long number = -1, screen = 0;
  bool verbose = false, each = false, win32s = false, list = false;

  bool Parse(int argc, char** argv) {
    const std::map<std::string_view, bool*> switches = {
        {"--verbose", &verbose}, {"--each", &each}, {"--win32s", &win32s}, {"--list", &list}};
    for (int i = 1; i < argc; ++i) {
      const std::string_view name = argv[i];
      const auto found = switches.find(name);
      if (found != switches.end()) {
        *found->second = true;
      } else if (++i == argc) {
        return false;
      } else if (name == "--family") {
        family = argv[i];
      } else if (name == "--case") {
        number = std::atol(argv[i]);
      } else if (name == "--screen") {
        screen = std::atol(argv[i]);
      } else {
        return false;
      }
    }
    return true;
  }
};

// One case: its checksum into `sum`. False when it leaves something alive.
bool RunCase(const Family& family, uint32_t number, const Options& options, uint64_t* sum) {
  if (options.verbose) std::printf("%s %u\n", family.name, number);
  Case test(family.name, number, options.verbose);
  family.run(test);
  *sum += test.sum();
  if (options.each || options.verbose) {
    std::printf("%s %u %016llx\n", family.name, number,
                static_cast<unsigned long long>(test.sum()));
  }
  const bool balanced = Balanced();
  if (!balanced) std::printf("%s %u: leaves objects or memory alive\n", family.name, number);
  return balanced;
}

bool RunFamily(const Family& family, const Options& options) {
  uint64_t sum = 0;
  if (options.number >= 0) {
    return RunCase(family, options.number, options, &sum);
  }
  bool clean = true;
  for (uint32_t i = 0; i < family.cases; ++i)
    clean &= RunCase(family, i, options, &sum);
  const bool equal = sum == family.sum;
  std::printf("%-16s %6u cases  sum %016llx  %s\n", family.name, family.cases,
              static_cast<unsigned long long>(sum), equal ? "as everywhere" : "DIFFERS");
  std::fflush(stdout);
  return equal && clean;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!options.Parse(argc, argv)) {
    std::fputs(usage, stderr);
    return 2;
  }
  if (!EnterWorld(options.win32s)) return 2;
  if (options.screen && !Provide(options.screen == 8 ? Screen::kPalette : Screen::kTrueColor)) {
    std::fprintf(stderr, "the screen is not of %ld bits\n", options.screen);
    return 2;
  }
  int result = 0, ran = 0;
  for (const Family& family : Families()) {
    if (options.list) std::printf("%s %u\n", family.name, family.cases);
    if (options.list || (!options.family.empty() && options.family != family.name)) continue;
    if (!Provide(family.screen)) {
      std::printf("%-16s needs another screen\n", family.name);
      continue;
    }
    Balanced();
    ++ran;
    if (!RunFamily(family, options)) result = 1;
  }
  if (!ran && !options.list) {
    std::fprintf(stderr, "no such family here\n");
    return 2;
  }
  return result;
}
