#include "tools/window/keys.h"

#include <algorithm>

namespace vn::tool {
namespace {

const std::vector<Key>& Keys() {
  static const std::vector<Key> keys = {
      {{SDLK_1, SDLK_KP_1}, Action::kScreen, 1, "a screen of 1 bit"},
      {{SDLK_4, SDLK_KP_4}, Action::kScreen, 4, "a screen of 4 bits"},
      {{SDLK_8, SDLK_KP_8}, Action::kScreen, 8, "a palette screen of 8 bits"},
      {{SDLK_2, SDLK_KP_2}, Action::kScreen, 24, "a screen of 24 bits"},
      {{SDLK_d}, Action::kDither, 0, "dithering by error diffusion"},
      {{SDLK_o}, Action::kDither, MODE_ORDERED_DITHER, "ordered dithering"},
      {{SDLK_c},
       Action::kDither,
       MODE_ORDERED_DITHER | MODE_CLUSTERED_MATRIX,
       "ordered dithering, with clustered dots at 1 bit"},
      {{SDLK_g}, Action::kToggleMode, MODE_BITONAL_GRAY, "1-bit pictures in gray, or not"},
      {{SDLK_v}, Action::kToggleMode, MODE_BITONAL_VOTE, "1-bit pictures keep thin lines, or not"},
      {{SDLK_x}, Action::kToggleMode, MODE_FIXED_PALETTE, "paletted pictures dithered, or not"},
      {{SDLK_n, SDLK_PAGEDOWN}, Action::kTurn, 1, "the next picture, with the effect"},
      {{SDLK_p, SDLK_PAGEUP}, Action::kTurn, -1, "the picture before, with the effect"},
      {{SDLK_RETURN, SDLK_KP_ENTER},
       Action::kAgain,
       0,
       "this picture again with the effect, or the region of it alone"},
      {{SDLK_e}, Action::kChooseEffect, 1, "choose the next effect, and show it"},
      {{SDLK_w}, Action::kChooseEffect, -1, "choose the effect before, and show it"},
      {{SDLK_r}, Action::kRandomEffect, 0, "a random effect each time"},
      {{SDLK_SPACE}, Action::kHold, 0, "hold a running effect, or let it go on"},
      {{SDLK_ESCAPE}, Action::kEscape, 0, "end a running effect; drop the region"},
      {{SDLK_PLUS, SDLK_EQUALS, SDLK_KP_PLUS}, Action::kZoom, 1, "larger"},
      {{SDLK_MINUS, SDLK_KP_MINUS}, Action::kZoom, -1, "smaller"},
      {{SDLK_0, SDLK_KP_0}, Action::kPixels, 0, "pixel for pixel"},
      {{SDLK_f}, Action::kFit, 0, "as large as the window"},
      {{SDLK_LEFT}, Action::kPanColumns, -1, "look further left"},
      {{SDLK_RIGHT}, Action::kPanColumns, 1, "look further right"},
      {{SDLK_UP}, Action::kPanRows, -1, "look further up"},
      {{SDLK_DOWN}, Action::kPanRows, 1, "look further down"},
      {{SDLK_s}, Action::kShape, 0, "drag rectangles, or ellipses"},
      {{SDLK_c}, Action::kCopy, 0, "copy the picture, or what the region spans", true},
      {{SDLK_v}, Action::kPaste, 0, "show the picture on the clipboard", true},
      {{SDLK_p}, Action::kPrint, 0, "print on the default printer", true},
      {{SDLK_q}, Action::kQuit, 0, "quit"}};
  return keys;
}

constexpr const char* kMouse[][2] = {
    {"left button", "drag a region; Shift adds to it, Ctrl takes from it"},
    {"right button", "drag the picture"},
    {"wheel", "larger and smaller, around the pointer"},
    {"dropped files", "come behind this picture, and show"}};

std::string HelpLine(std::string keys, const std::string& help) {
  constexpr size_t kColumn = 20;
  keys.resize(std::max(kColumn, keys.size() + 1), ' ');
  return "  " + keys + help + "\n";
}

}  // namespace

const Key* FindKey(const SDL_Keysym& pressed) {
  const bool control = pressed.mod & KMOD_CTRL;
  for (const Key& key : Keys()) {
    const bool named =
        std::find(key.codes.begin(), key.codes.end(), pressed.sym) != key.codes.end();
    if (named && key.control == control) return &key;
  }
  return nullptr;
}

std::string KeyHelp() {
  std::string help = "Keys:\n";
  for (const Key& key : Keys()) {
    std::string names;
    for (const SDL_Keycode code : key.codes) {
      // A key pad's twin goes without saying.
      const std::string name = SDL_GetKeyName(code);
      if (name.starts_with("Keypad")) continue;
      names += (names.empty() ? "" : ", ") + std::string(key.control ? "Ctrl+" : "") + name;
    }
    help += HelpLine(names, key.help);
  }
  help += "Mouse:\n";
  for (const auto& [button, does] : kMouse)
    help += HelpLine(button, does);
  return help;
}

}  // namespace vn::tool
