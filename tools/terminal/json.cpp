#include "tools/terminal/json.h"

#include <cstdio>

namespace vn::tool {

std::string JsonText(const std::string& utf8) {
  std::string text = "\"";
  for (const char c : utf8) {
    if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      text += escape;
      continue;
    }
    if (c == '"' || c == '\\') text += '\\';
    text += c;
  }
  return text += '"';
}

JsonObject& JsonObject::AddValue(const std::string& name, const std::string& value) {
  if (!members_.empty()) members_ += ", ";
  members_ += JsonText(name) + ": " + value;
  return *this;
}

}  // namespace vn::tool
