// The font of a run of text in an Office Open XML file, as far as one place of the file says it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "Readers/Document/FontStyle.h"
#include "Readers/Document/TextScripts.h"

struct RunProperties {
  std::array<std::optional<std::string>, kScriptGroups> families;
  std::optional<bool> isBold, isItalic;

  // Fills in what is missing here.
  void Inherit(const RunProperties& other);
  // Adds the fonts of the text, one for each group of scripts that has a family.
  void AddFontsOf(std::string_view text, StyledFonts& fonts) const;
};
