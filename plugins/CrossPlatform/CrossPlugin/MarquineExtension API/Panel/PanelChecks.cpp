#include "Panel/PanelChecks.h"

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
