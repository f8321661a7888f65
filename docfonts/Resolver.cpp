#include "docfonts/Resolver.h"

#include "Bridge/FontManagerInterface.h"
#include "Identification/FontClassification.h"
#include "Identification/FontKeys.h"
#include "Services/MarquineGlobals.h"

namespace docfonts {

using platform::Array;
using platform::Dictionary;
using namespace GlyphsureSupport;

std::string Resolver::Connect() {
  // The name under which the agent's library knows this program.
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.docfonts");
  MarquineGlobals::IdentifyPluginHostApp(platform::String::FromUTF8("docfonts"));
  bool isRunning = false;
  FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning);
  if (isRunning && FontManagerInterface::ConnectedManager()) return "";
  return "no font manager runs, and none can be started; --state names the folder of one";
}

Resolver::~Resolver() {
  if (FontManagerInterface::sm_pFontManager) FontManagerInterface::sm_pFontManager->DisconnectFromFontManager();
}

void Resolver::Resolve(Report& report) {
  for (Font& font : report.fonts) {
    Array fonts = Array::Create(), matched = Array::Create(), unresolved = Array::Create();
    Dictionary record = Dictionary::Create();
    record.Set(kGS_PostScriptNameKey, font.name);
    for (const auto& [key, value] : font.slug) record.Set(key, value);
    fonts.Append(record);
    const int status = ProcessDocumentFontsForAutoActivation(fonts, matched, unresolved, true, true,
                                                             FontManagerInterface::kAllWorkgroupsID, nullptr);
    if (status != 0) {
      report.problems.push_back("the font manager does not answer for " + font.name);
      return;
    }
    const Dictionary match = Dictionary(matched.At(0)).GetDictionary(kGS_MatchedFontKey);
    font.file = match.GetString(kGS_PathKey).Text();
  }
}

}  // namespace docfonts
