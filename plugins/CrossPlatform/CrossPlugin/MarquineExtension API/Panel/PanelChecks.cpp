#include "Panel/PanelChecks.h"

#include <charconv>

#include "platform/PlainText.h"

namespace {
constexpr size_t kLongestText = 1023;  // bytes
}

int32_t AskAgentFor(AgentState state) {
  int32_t value = 0;
  if (state) state(GetFacade(), &value);
  return value;
}

std::string BoundedText(const platform::String& text) {
  std::string bounded = text.CString();
  if (bounded.size() > kLongestText) bounded.resize(kLongestText);
  return std::string(platform::ValidStart(bounded));
}

int32_t FontIDOf(std::string_view key) {
  int64_t fontID = 0;
  std::from_chars(key.data(), key.data() + key.size(), fontID);
  return static_cast<int32_t>(fontID);
}
