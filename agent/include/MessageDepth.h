// How deep a message may be nested. What lies deeper would cost its reader many times its bytes, or its stack.
#pragma once

#include <string_view>

namespace agent_protocol {

inline constexpr int kDeepestMessage = 200;

// Whether the arrays and objects of a JSON text stand deeper in each other than that. Of what is no JSON it says anything.
inline bool IsTooDeep(std::string_view json) {
  int depth = 0;
  bool isInString = false;
  for (size_t i = 0; i < json.size(); ++i) {
    const char c = json[i];
    if (c == '"') isInString = !isInString;
    if (isInString) {
      if (c == '\\') ++i;
      continue;
    }
    if (c == ']' || c == '}') --depth;
    if ((c == '[' || c == '{') && ++depth > kDeepestMessage) return true;
  }
  return false;
}

}  // namespace agent_protocol
