#include "Readers/Document/OOXMLTheme.h"

#include <cstdlib>

std::string OOXMLTheme::FamilyOf(std::string_view reference) const {
  const bool isMajor = reference.starts_with("major") || reference.starts_with("+mj");
  if (!isMajor && !reference.starts_with("minor") && !reference.starts_with("+mn")) return {};
  const Families& families = isMajor ? major : minor;
  if (reference.ends_with("EastAsia") || reference.ends_with("-ea")) return families[kAsianScripts];
  if (reference.ends_with("Bidi") || reference.ends_with("-cs")) return families[kComplexScripts];
  return families[kWesternScripts];
}

OOXMLTheme ReadOOXMLTheme(const ZipDocument& archive, const std::string& name, StyledFonts& fonts) {
  OOXMLTheme theme;
  const auto stream = archive.Open(name);
  if (!stream) return theme;
  MarkupReader markup(*stream);
  OOXMLTheme::Families* families = nullptr;
  for (auto event = markup.Next(); event != MarkupReader::Event::kDone; event = markup.Next()) {
    const std::string_view element = event == MarkupReader::Event::kText ? "" : markup.Name();
    if (element == "majorFont" || element == "minorFont") {
      families = event == MarkupReader::Event::kEnd ? nullptr : element == "majorFont" ? &theme.major : &theme.minor;
    } else if (families && event == MarkupReader::Event::kStart) {
      fonts.Describe(markup.Attribute("typeface"), LookOfTypeface(markup));
      if (element == "latin") (*families)[kWesternScripts] = markup.Attribute("typeface");
      if (element == "ea") (*families)[kAsianScripts] = markup.Attribute("typeface");
      if (element == "cs") (*families)[kComplexScripts] = markup.Attribute("typeface");
    }
  }
  return theme;
}

// The lower two bits of the number are the pitch, the upper four the generic family.
FontLook LookOfTypeface(const MarkupReader& markup) {
  const size_t both = NumberOf(markup, "pitchFamily");
  constexpr const char* kPitches[] = {"", "fixed", "variable", ""};
  return LookOf(GenericFamilyOf(both >> 4 & 15), kPitches[both & 3], markup.Attribute("panose"));
}

size_t NumberOf(const MarkupReader& markup, const char* attribute) {
  return std::strtoul(markup.Attribute(attribute).c_str(), nullptr, 10);
}

bool IsSwitchedOn(std::string_view value) { return value != "0" && value != "false" && value != "off"; }
