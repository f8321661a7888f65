#include "Panel/PanelChecks.h"

#include "platform/TextEncoding.h"

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
  while (!platform::IsValidUTF8(bounded)) bounded.pop_back();
  return bounded;
}
