// The part of CommonFunctionality that reads a document's fonts from its file and filters them.
#include "Identification/FontClassification.h"
#include "Identification/FontMerging.h"
#include "Identification/FontNames.h"
#include "Readers/CommonFunctionality.h"
#include "Readers/XMPFontMetadata.h"
#include "Services/DiagnosticLog.h"
#include "platform/Files.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

Array CommonFunctionality::CreateFontArrayFromNonXMPSectionOfAdobeDocument(const char* path) {
  std::vector<std::string> names;
  GetFontNamesFromNonXMPSectionOfAdobeDocument(path, names);
  return CreateFontArrayFromVectorOfPostscriptNames(names);
}

void CommonFunctionality::RemoveFontsThatHaveNoPossibleReplacement(Array fontArray) {
  for (size_t i = fontArray.Count(); i-- > 0;) {
    const Dictionary font(fontArray.At(i));
    const String name = font.GetString(kGS_PostScriptNameKey);
    if (!name || font.GetArray(kGS_PossibleReplacementsKey).Count() > 0) continue;
    // Other fonts always stay, whatever their replacements are.
    if (!IsInternalToHost(name.View())) continue;
    OutputIndentedAndFormattedString(0, "%s() removing '%s' from problemFonts", __func__, name.CString());
    fontArray.RemoveAt(i);
  }
}

void CommonFunctionality::RemoveMatchingFonts(Array fontArray, const std::string& prefix) {
  for (size_t i = fontArray.Count(); i-- > 0;) {
    const String name = Dictionary(fontArray.At(i)).GetString(kGS_PostScriptNameKey);
    if (!name || !name.View().starts_with(prefix)) continue;
    OutputIndentedAndFormattedString(0, "%s() removing '%s' because it starts with '%s'", __func__, name.CString(),
                                     prefix.c_str());
    fontArray.RemoveAt(i);
  }
}

TModuleErrorCode CommonFunctionality::GetAllGlyphsureDataFromDocument(const std::string& filePath,
                                                                      const Array& slugArray) {
  return ReadXMPGlyphsureSlugFromFile(filePath, slugArray);
}

TModuleErrorCode CommonFunctionality::GetAllFontDataFromDocFile(const std::string& filePath, const Array& fontArray,
                                                                bool scanRawBytes) {
  bool hasSlug = false;
  const TModuleErrorCode code = ReadAllXMPFontDataFromFile(filePath, fontArray, hasSlug);
  if (!scanRawBytes || (hasSlug && FileExtensionIs(filePath, "pdf")) || !platform::FileExists(filePath)) return code;
  const Array scanned = CreateFontArrayFromNonXMPSectionOfAdobeDocument(filePath.c_str());
  MergeFontsIntoFontsArray(scanned, fontArray);
  return scanned.Count() > 0 ? CoreErrorCodes::kSuccess : code;
}

TModuleErrorCode CommonFunctionality::CreateGlyphsureDataForClosedDocument(const std::string& path, Array fonts,
                                                                           long workgroupID, bool& allFontsFound) {
  if (!fonts) return CoreErrorCodes::kOutOfMemory;
  const Array adobe = Array::Create();
  const TModuleErrorCode code = ReadAdobeXMPFontDataFromFile(path, adobe);
  MergeFontsIntoFontsArray(adobe, fonts);
  MergeFontsIntoFontsArray(CreateFontArrayFromNonXMPSectionOfAdobeDocument(path.c_str()), fonts);
  allFontsFound = true;
  if (fonts.Count() > 0) {
    const size_t before = fonts.Count();
    AppendGlyphsureDataToFonts(fonts, static_cast<int>(workgroupID), true, false, true);
    allFontsFound = fonts.Count() == before;
  }
  return code;
}
