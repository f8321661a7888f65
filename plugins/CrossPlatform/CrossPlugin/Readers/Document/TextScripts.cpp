#include "Readers/Document/TextScripts.h"

#include <unicode/uscript.h>
#include <unicode/utf8.h>

namespace {

// Returns kScriptGroups for characters of all scripts.
size_t GroupOf(UChar32 character) {
  UErrorCode error = U_ZERO_ERROR;
  switch (uscript_getScript(character, &error)) {
    case USCRIPT_COMMON:
    case USCRIPT_INHERITED: return kScriptGroups;
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_HANGUL:
    case USCRIPT_BOPOMOFO:
    case USCRIPT_YI: return kAsianScripts;
    case USCRIPT_LATIN:
    case USCRIPT_GREEK:
    case USCRIPT_CYRILLIC:
    case USCRIPT_ARMENIAN:
    case USCRIPT_GEORGIAN:
    case USCRIPT_INVALID_CODE: return kWesternScripts;
    default: return kComplexScripts;
  }
}

}  // namespace

ScriptSet ScriptGroupsOf(std::string_view text) {
  ScriptSet groups;
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t i = 0; i < length;) {
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(text.data(), i, length, character);
    const size_t group = GroupOf(character);
    if (group < kScriptGroups) groups.set(group);
  }
  if (groups.none()) groups.set(kWesternScripts);
  return groups;
}
