#include "docfonts/FileChoice.h"

#include "Bridge/FontManagerInterface.h"
#include "Identification/FontClassification.h"
#include "Identification/FontKeys.h"
#include "Readers/Document/StyleMatch.h"

namespace docfonts {

using platform::Array;
using platform::Dictionary;
using namespace GlyphsureSupport;

std::optional<std::string> ChooseFile(const Font& font) {
  const std::string name = font.style ? FindPostScriptName(*font.style) : font.name;
  if (name.empty()) return "";
  Array fonts = Array::Create(), matched = Array::Create(), unresolved = Array::Create();
  Dictionary record = Dictionary::Create();
  record.Set(kGS_PostScriptNameKey, name);
  for (const auto& [key, value] : font.slug) record.Set(key, value);
  fonts.Append(record);
  const int status = ProcessDocumentFontsForAutoActivation(fonts, matched, unresolved, true, true,
                                                           FontManagerInterface::kAllWorkgroupsID, nullptr);
  if (status != 0) return std::nullopt;
  return Dictionary(matched.At(0)).GetDictionary(kGS_MatchedFontKey).GetString(kGS_PathKey).Text();
}

}  // namespace docfonts
