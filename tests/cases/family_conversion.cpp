// Conversion of rows between all formats, with good and bad arguments; match tables.
#include <algorithm>

#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

uint32_t RandomDepth(Case& test) { return test.OneOf({BPP_GRAY + 0u, 1u, 4u, 8u, 16u, 24u, 32u}); }

void ConvertCase(Case& test) {
  uint32_t srcBits = RandomDepth(test), dstBits = RandomDepth(test);
  auto srcOrder = static_cast<uint32_t>(test.Pick(0, 1));
  auto dstOrder = static_cast<uint32_t>(test.Pick(0, 1));
  auto width = static_cast<uint32_t>(test.Pick(1, 80));
  // Enough for every pair; what lies behind the row must stay as it is.
  std::vector<uint8_t> buffer(width * 4 + 8);
  test.random.Fill(buffer.data(), buffer.size());
  switch (test.Pick(0, 40)) {
    case 0:
      width = test.OneOf({0u, 0xFFFFFFFFu});
      break;
    case 1:
      srcBits = test.OneOf({2u, 15u, 33u, 0xFFFFFFFFu});
      break;
    case 2:
      dstBits = test.OneOf({2u, 15u, 33u, 0xFFFFFFFFu});
      break;
    case 3:
      srcOrder = 2;
      break;
    case 4:
      dstOrder = 2;
      break;
  }
  std::vector<RGBQUAD> srcColors = RandomColors(test, 256), dstColors = RandomColors(test, 256);
  if (test.random.Chance(5)) dstColors = srcColors;
  const bool srcTable = !test.random.Chance(3), dstTable = !test.random.Chance(3);
  test.Note("%u pixels, %u order %u%s to %u order %u%s", width, srcBits, srcOrder,
            srcTable ? " table" : "", dstBits, dstOrder, dstTable ? " table" : "");
  test.Fold("Vn_CalcConvertSize", Vn_CalcConvertSize(width, srcBits, width, dstBits));
  test.Fold("Vn_ConvertBuffer", Vn_ConvertBuffer(buffer.data(), width, srcBits, dstBits, srcOrder,
                                                 dstOrder, srcTable ? srcColors.data() : nullptr,
                                                 dstTable ? dstColors.data() : nullptr));
  test.FoldBytes("buffer", buffer.data(), buffer.size());
}

void MatchTableCase(Case& test) {
  const auto count = static_cast<uint32_t>(test.Pick(1, 6));
  const std::vector<RGBQUAD> colors = RandomColors(test, std::max(count, 2u));
  uint32_t* table = Vn_CreateUserMatchTable(colors.data(), count);
  test.FoldHandle("Vn_CreateUserMatchTable", table);
  uint32_t* before = Vn_SetUserMatchTable(table);
  test.Fold("set again", Vn_SetUserMatchTable(before) == table);
  if (table) test.FoldBytes("table", table, 32768 * sizeof table[0]);
  test.Fold("Vn_FreeUserMatchTable", Vn_FreeUserMatchTable(table));
}

void Run(Case& test) {
  if (test.random.Chance(200)) {
    MatchTableCase(test);
  } else {
    ConvertCase(test);
  }
}

const Registration registration({"conversion", 6000, 0xD677E253E901FF31u, Run});

}  // namespace

}  // namespace vn::cases
