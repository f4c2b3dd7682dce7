// vncore palettes: the palettes that --palette knows by name.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tools/commands/commands.h"
#include "tools/operations/named_palettes.h"

namespace vn::tool {
namespace {

enum class Terminal { kPlain, kCube, kTrueColor };

// By the variables that terminals and users agree on.
Terminal KindOfTerminal() {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string(value ? value : "");
  };
  if (isatty(STDOUT_FILENO) != 1 || !variable("NO_COLOR").empty() || variable("TERM") == "dumb")
    return Terminal::kPlain;
  const std::string colors = variable("COLORTERM");
  return colors == "truecolor" || colors == "24bit" ? Terminal::kTrueColor : Terminal::kCube;
}

// A patch of the colour, as exactly as the terminal can show it.
void PrintSwatch(uint32_t color, Terminal terminal) {
  const uint32_t red = color >> 16, green = color >> 8 & 255, blue = color & 255;
  if (terminal == Terminal::kTrueColor) {
    std::printf("\x1b[48;2;%u;%u;%um  ", red, green, blue);
  } else {
    const auto sixth = [](uint32_t level) { return (level * 5 + 127) / 255; };
    std::printf("\x1b[48;5;%um  ", 16 + 36 * sixth(red) + 6 * sixth(green) + sixth(blue));
  }
}

void ListPalettes() {
  const Terminal terminal = KindOfTerminal();
  for (const NamedPalette& palette : NamedPalettes()) {
    std::printf("%-24s%3zu  %s\n", palette.name, palette.colors.size(), palette.about);
    if (terminal == Terminal::kPlain) continue;
    std::printf("%29s", "");
    for (const uint32_t color : palette.colors)
      PrintSwatch(color, terminal);
    std::printf("\x1b[0m\n");
  }
}

}  // namespace

void AddPalettesCommand(CLI::App& app) {
  CLI::App* const palettes =
      app.add_subcommand("palettes", "List the palettes that --palette knows by name");
  palettes->callback(&ListPalettes);
}

}  // namespace vn::tool
