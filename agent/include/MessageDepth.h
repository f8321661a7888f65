// The greatest nesting of a message. Deeper nesting would cost the reader many times its bytes, or its stack.
#pragma once

#include <string_view>

namespace agent_protocol {

inline constexpr int kDeepestMessage = 200;

// True if the arrays and objects of a JSON text are nested deeper than that. Undefined for text that is not JSON.
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
