// The groups of scripts for which word processors keep fonts of their own.
#pragma once

#include <bitset>
#include <cstddef>
#include <string_view>

enum ScriptGroup : size_t {
  kWesternScripts,  // also digits and punctuation, if nothing else is in the text
  kAsianScripts,    // Chinese, Japanese, Korean
  kComplexScripts,  // right-to-left and Indic scripts, Thai and others
};
inline constexpr size_t kScriptGroups = 3;
using ScriptSet = std::bitset<kScriptGroups>;

// Returns the groups of the characters of UTF-8 text. Malformed bytes count as Western.
ScriptSet ScriptGroupsOf(std::string_view text);
