// The effects by name.
#ifndef VNCORE_TOOLS_EFFECT_NAMES_H
#define VNCORE_TOOLS_EFFECT_NAMES_H

#include <optional>
#include <string>

#include <vncore/vn_effect.h>

namespace vn::tool {

// By EFFECT_ value.
extern const char* const kEffectNames[EFFECT_COUNT];

// "spiral-in", or an effect's number: an EFFECT_ value
std::optional<uint32_t> ParseEffect(const std::string& text);

}  // namespace vn::tool

#endif
