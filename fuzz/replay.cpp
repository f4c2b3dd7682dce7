// Runs a fuzz target on files, with no fuzzer: every input of the corpus stays a test in every
// build.
//
//   fuzz_TARGET FILE_OR_FOLDER...
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;

void Replay(const fs::path& path) {
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);  // the last line names the input that crashed
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (!fs::is_directory(argv[i])) {
      Replay(argv[i]);
      continue;
    }
    for (const auto& entry : fs::directory_iterator(argv[i]))
      Replay(entry.path());
  }
}
