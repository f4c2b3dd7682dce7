// JSON for programs that read the tool's output. RFC 8259.
#ifndef VNCORE_TOOLS_JSON_H
#define VNCORE_TOOLS_JSON_H

#include <cstdint>
#include <string>

namespace vn::tool {

// A text of UTF-8 with its quotes.
std::string JsonText(const std::string& utf8);

// An object, member by member.
class JsonObject {
 public:
  JsonObject& Add(const std::string& name, const std::string& utf8) {
    return AddValue(name, JsonText(utf8));
  }
  JsonObject& Add(const std::string& name, int64_t number) {
    return AddValue(name, std::to_string(number));
  }
  JsonObject& AddFlag(const std::string& name, bool flag) {
    return AddValue(name, flag ? "true" : "false");
  }
  // `value` is JSON.
  JsonObject& AddValue(const std::string& name, const std::string& value);

  std::string Text() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

}  // namespace vn::tool

#endif
