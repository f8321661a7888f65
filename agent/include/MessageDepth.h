// The limit for the nesting of messages. The other side chooses the nesting, and a JSON library needs memory and stack
// for each level, so both sides check a message before they parse it.
#pragma once

#include <cstddef>
#include <string_view>

namespace agent_protocol {

inline constexpr int kDeepestMessage = 200;

// True if the arrays and objects of a JSON text are nested deeper than kDeepestMessage. Reads no more than the brackets
// outside of strings. Text that is not JSON may get either answer; the parser refuses it anyway, at the first error.
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
