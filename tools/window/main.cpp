// vnview: pictures in a window, painted by the library on the headless platform's screen.
#include <CLI/CLI.hpp>

#include "tools/operations/effect_names.h"
#include "tools/terminal/option_values.h"
#include "tools/terminal/program.h"
#include "tools/window/keys.h"
#include "tools/window/viewer.h"

namespace vn::tool {
namespace {

struct EffectChoice {
  std::optional<uint32_t> effect;  // none: random
};

std::optional<EffectChoice> ParseChoice(const std::string& text) {
  if (text == "random") return EffectChoice{};
  const auto effect = ParseEffect(text);
  if (!effect) return std::nullopt;
  return EffectChoice{effect};
}

std::optional<Size> ParseWindowSize(const std::string& text) {
  const auto size = ParseSize(text);
  constexpr int32_t kMost = 16384;
  const bool possible = size && size->width >= 1 && size->height >= 1 && size->width <= kMost &&
                        size->height <= kMost;
  return possible ? size : std::nullopt;
}

void Run(int argc, char** argv) {
  CLI::App app("Show pictures in a window, painted on a screen of any depth", "vnview");
  app.set_version_flag("--version", [] { return VersionLine("vnview"); });
  app.footer(KeyHelp());
  ViewerOptions options;
  EffectChoice choice;
  bool ordered = false, clustered = false;
  app.add_option("PICTURE", options.pictures, "PNG, BMP, JPEG and TIFF files")->required();
  AddParsed(&app, "--size", &options.size, &ParseWindowSize, "WxH",
            "Size of the window, as the first picture needs it if not given");
  app.add_option("--screen", options.screen.bits, "Depth of the screen, 24 if not given")
      ->check(CLI::IsMember({1, 4, 8, 16, 24}));
  app.add_flag("--ordered", ordered, "Ordered dithering, not error diffusion");
  app.add_flag("--clustered", clustered, "Ordered dithering; at 1 bit with the clustered matrix");
  AddParsed(&app, "--effect", &choice, &ParseChoice, "NAME|NUMBER|random",
            "How pictures come, random if not given; vncore effect --list names all");
  app.add_option("--seconds", options.seconds, "Time of an effect (1.5)")
      ->check(CLI::Range(0.0, 600.0));
  if (!ParseCommandLine(app, argc, argv)) return;
  options.effect = choice.effect;
  if (ordered || clustered) options.screen.mode |= MODE_ORDERED_DITHER;
  if (clustered) options.screen.mode |= MODE_CLUSTERED_MATRIX;
  Viewer(options).Run();
}

}  // namespace
}  // namespace vn::tool

int main(int argc, char** argv) {
  return vn::tool::RunProgram("vnview", [=] { vn::tool::Run(argc, argv); });
}
