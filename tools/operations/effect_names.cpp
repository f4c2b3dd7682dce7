#include "tools/operations/effect_names.h"

namespace vn::tool {

const char* const kEffectNames[EFFECT_COUNT] = {"plain",
                                                "rows-down",
                                                "rows-up",
                                                "columns-right",
                                                "columns-left",
                                                "dissolve-2",
                                                "dissolve-4",
                                                "dissolve-8",
                                                "dissolve-16",
                                                "dissolve-rows",
                                                "dissolve-columns",
                                                "columns-out",
                                                "rows-out",
                                                "row-blinds-out",
                                                "column-blinds-out",
                                                "frames-in",
                                                "frames-out",
                                                "frame-blinds-in",
                                                "frame-blinds-out",
                                                "spiral-in",
                                                "spiral-out",
                                                "rows-in",
                                                "columns-in",
                                                "column-blinds-in",
                                                "row-blinds-in",
                                                "column-blinds-right",
                                                "column-blinds-left",
                                                "row-blinds-up",
                                                "row-blinds-down"};

std::optional<uint32_t> ParseEffect(const std::string& text) {
  for (uint32_t effect = 0; effect < EFFECT_COUNT; ++effect) {
    if (text == kEffectNames[effect] || text == std::to_string(effect)) return effect;
  }
  return std::nullopt;
}

}  // namespace vn::tool
