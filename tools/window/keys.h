// What keys and mouse do, stated once: the viewer obeys this table and --help shows it.
#ifndef VNCORE_TOOLS_KEYS_H
#define VNCORE_TOOLS_KEYS_H

#include <SDL.h>
#include <optional>
#include <string>
#include <vector>

#include <vncore/vncore.h>

namespace vn::tool {

enum class Action {
  kScreen,        // argument: bits of the screen
  kDither,        // argument: MODE_ bits that tell the kinds apart
  kToggleMode,    // argument: a MODE_ bit
  kTurn,          // argument: pictures forwards
  kAgain,         // the effect once more
  kChooseEffect,  // argument: effects forwards in their order
  kRandomEffect,
  kHold,  // an effect, and on again
  kEscape,
  kZoom,  // argument: steps
  kPixels,
  kFit,
  kPanColumns,  // argument: screens of 8
  kPanRows,
  kShape,
  kCopy,
  kPaste,
  kPrint,
  kQuit
};

struct Key {
  std::vector<SDL_Keycode> codes;
  Action action;
  int32_t argument;
  const char* help;
  bool control = false;  // held with Ctrl
};

// The key's row, or null for a key without one.
const Key* FindKey(const SDL_Keysym& pressed);
// All keys and the mouse, a line for each.
std::string KeyHelp();

}  // namespace vn::tool

#endif
