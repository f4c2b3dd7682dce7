// The walk over the rows of all rooms, and the proof that no export is missing among them.
#include "tests/support/failure_walk.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <regex>
#include <set>

#include "tests/failures/failure_rows.h"

namespace vn::test {

std::vector<FailureRow>& FailureRows() {
  static std::vector<FailureRow> rows;
  return rows;
}

AddRows::AddRows(std::vector<FailureRow> rows) {
  std::move(rows.begin(), rows.end(), std::back_inserter(FailureRows()));
}

void PrintTo(const FailureRow& row, std::ostream* out) { *out << row.name; }

namespace {

struct Family {
  Headless_Operation operations;
  Failures bit;
  std::vector<VnStatus> codes;  // that tell of its failures
};
const Family kFamilies[] = {
    {HEADLESS_MEMORY, kMemory, {ERR_NO_MEMORY}},
    {HEADLESS_FILE, kFiles, {ERR_NO_MEMORY, ERR_FILE_SEEK, ERR_FILE_READ, ERR_FILE_WRITE}},
    {HEADLESS_OBJECT, kObjects, {ERR_NO_MEMORY}},
    {kStopFamily, kStops, {kStopValue}},
};
constexpr const char* kPartNames[kPartCount] = {"the record", "the pixels", "the palettes",
                                                "the region", "the result", "what was made",
                                                "the screen"};

using Prints = std::array<Bytes, kPartCount>;

void ExpectSame(const Prints& seen, const Prints& expected, unsigned parts, const char* when) {
  for (unsigned i = 0; i < kPartCount; ++i) {
    if (!(parts >> i & 1)) continue;
    EXPECT_TRUE(seen[i] == expected[i]) << kPartNames[i] << " differ " << when;
  }
}

class FailureWalk : public testing::TestWithParam<FailureRow> {
 protected:
  const Terms& terms() const { return GetParam().terms; }
  void Prepare(Scene& scene) const {
    if (terms().prepare) terms().prepare(scene);
  }
  // What the call makes of the scene when nothing fails.
  Prints Undisturbed(const StorageKind& kind) const {
    Scene scene(terms().bits, kind);
    Prepare(scene);
    const StatusLog log;
    EXPECT_EQ(GetParam().call(scene), OK) << "without a failure";
    if (terms().units >= 0) {
      EXPECT_EQ(log.percents(), ExpectedPercents(terms().units));
    }
    return scene.Print();
  }
  void Round(FailureRound& round, const Family& family, const StorageKind& kind,
             const Prints& undisturbed) const {
    Scene scene(terms().bits, kind);
    Prepare(scene);
    const Prints before = scene.Print();
    const bool hadResult = scene.result->Flags & FLAG_ALLOCATED;
    const VnStatus status = round.Run([&] { return GetParam().call(scene); });
    EXPECT_EQ((scene.bitmap->Flags | scene.result->Flags) & FLAG_LOCKED, 0u);
    if (status == OK) {
      if (round.Failed() && terms().hides & family.bit) return;
      EXPECT_FALSE(round.Failed() && family.bit == kStops) << "a stop was not heard";
      ExpectSame(scene.Print(), undisturbed, ~terms().open, "though the call reports success");
      return;
    }
    EXPECT_TRUE(round.Failed());
    EXPECT_EQ(std::count(family.codes.begin(), family.codes.end(), status), 1) << status;
    unsigned kept = ~(family.bit == kStops ? terms().stopSpoils : terms().spoils);
    if (!hadResult && kept & kResult) {
      EXPECT_FALSE(scene.result->Flags & FLAG_ALLOCATED) << "a result is left";
      kept &= ~kResult;
    }
    ExpectSame(scene.Print(), before, kept, "after a failure");
  }
};

TEST_P(FailureWalk, TellsOrMakesGoodAndLeavesNothing) {
  uint32_t failures = 0;
  WithEachStorage([&](const StorageKind& kind) {
    const Prints undisturbed = Undisturbed(kind);
    for (const Family& family : kFamilies) {
      failures += WalkFailures(
          family.operations, [&](FailureRound& round) { Round(round, family, kind, undisturbed); });
      if (HasFailure()) return;
    }
  });
  RecordProperty("failures", failures);
}

// The row's name, in the characters that a test's may have.
std::string TestNameOf(const testing::TestParamInfo<FailureRow>& info) {
  std::string name = info.param.name;
  for (char& c : name) {
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Exports, FailureWalk, testing::ValuesIn(FailureRows()), TestNameOf);

std::string TextOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// The first group of every match.
std::set<std::string> Matches(const std::string& text, const char* pattern) {
  const std::regex expression(pattern);
  std::set<std::string> found;
  for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
    found.insert((*at)[1]);
  return found;
}

// The table of exports names also what is not written yet; a public header declares what is.
TEST(FailureWalkRows, CoverEveryExport) {
  const std::filesystem::path kernel = VNCORE_KERNEL_FOLDER;
  std::set<std::string> declared, walked;
  for (const auto& header : std::filesystem::directory_iterator(kernel / "include/vncore"))
    declared.merge(Matches(TextOf(header.path()), "(Vn_\\w+)\\("));
  for (const FailureRow& row : FailureRows())
    walked.merge(Matches(row.name.substr(0, row.name.find(',')), "(\\w+)"));
  size_t count = 0;
  for (const std::string& name : Matches(TextOf(kernel / "vncore32.def"), "(\\w+) +@\\d")) {
    if (!declared.count(name)) continue;
    ++count;
    EXPECT_TRUE(walked.count(name)) << name << " is in no row under tests/failures";
  }
  std::cout << "the failure walk covers " << count << " exports by " << FailureRows().size()
            << " rows\n";
}

}  // namespace
}  // namespace vn::test
