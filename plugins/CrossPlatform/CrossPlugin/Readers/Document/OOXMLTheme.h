// The theme of an Office Open XML file, to which its text refers for the usual fonts.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "Readers/Document/FontStyle.h"
#include "Readers/Document/MarkupReader.h"
#include "Readers/Document/TextScripts.h"
#include "Readers/Document/ZipDocument.h"

struct OOXMLTheme {
  using Families = std::array<std::string, kScriptGroups>;
  Families major, minor;  // of headings, of other text

  // Returns the family for a reference like "minorHAnsi" or "+mj-lt"; empty if it is none.
  std::string FamilyOf(std::string_view reference) const;
};

// Returns an empty theme if the file is missing or damaged. Describes its families in `fonts`.
OOXMLTheme ReadOOXMLTheme(const ZipDocument& archive, const std::string& name, StyledFonts& fonts);

// What an element like <a:latin typeface="Arial" panose="020B0604020202020204" pitchFamily="34"/> says.
FontLook LookOfTypeface(const MarkupReader& markup);

// The value of an attribute; 0 if it is missing or no number.
size_t NumberOf(const MarkupReader& markup, const char* attribute);

// The value of a switch like <w:b w:val="0"/>: true unless it is turned off.
bool IsSwitchedOn(std::string_view value);
