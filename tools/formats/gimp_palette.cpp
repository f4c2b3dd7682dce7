#include "tools/formats/gimp_palette.h"

#include <fstream>
#include <sstream>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// "red green blue name"
bool ParseEntry(const std::string& line, RGBQUAD* color) {
  std::istringstream words(line);
  int channels[3];
  for (int& channel : channels) {
    if (!(words >> channel) || channel < 0 || channel > 255) return false;
  }
  *color = {static_cast<BYTE>(channels[2]), static_cast<BYTE>(channels[1]),
            static_cast<BYTE>(channels[0]), 0};
  return true;
}

bool IsComment(const std::string& line) {
  return line.find_first_not_of(" \t\r") == line.npos || line.starts_with('#') ||
         line.starts_with("Name:") || line.starts_with("Columns:");
}

// The whole file, or its beginning: 256 named colours take a small part of that.
std::string ReadBeginning(const std::string& path) {
  constexpr std::streamsize kMost = 1 << 20;
  std::ifstream file(path);
  if (!file) throw Failure(path + ": no palette file of this name can be read");
  std::string text(kMost, '\0');
  file.read(text.data(), kMost);
  text.resize(static_cast<size_t>(file.gcount()));
  return text;
}

}  // namespace

std::vector<RGBQUAD> ReadGimpPalette(const std::string& path) {
  std::istringstream file(ReadBeginning(path));
  std::string line;
  if (!std::getline(file, line) || !line.starts_with("GIMP Palette")) {
    throw Failure(path + ": not a GIMP palette");
  }
  std::vector<RGBQUAD> colors;
  for (int number = 2; std::getline(file, line); ++number) {
    if (IsComment(line)) continue;
    RGBQUAD color;
    if (!ParseEntry(line, &color)) {
      throw Failure(path + ": line " + std::to_string(number) + " is no colour");
    }
    if (colors.size() == 256) throw Failure(path + ": more than 256 colours");
    colors.push_back(color);
  }
  if (colors.empty()) throw Failure(path + ": no colours");
  return colors;
}

}  // namespace vn::tool
