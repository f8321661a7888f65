#include "Readers/Document/OOXMLRun.h"

void RunProperties::Inherit(const RunProperties& other) {
  for (size_t i = 0; i < kScriptGroups; ++i) {
    if (!families[i]) families[i] = other.families[i];
  }
  if (!isBold) isBold = other.isBold;
  if (!isItalic) isItalic = other.isItalic;
}

void RunProperties::AddFontsOf(std::string_view text, StyledFonts& fonts) const {
  const ScriptSet scripts = ScriptGroupsOf(text);
  const int weight = isBold.value_or(false) ? FontStyle::kBoldWeight : FontStyle::kNormalWeight;
  for (size_t i = 0; i < kScriptGroups; ++i) {
    if (scripts[i] && families[i]) fonts.Add({*families[i], weight, isItalic.value_or(false)});
  }
}
