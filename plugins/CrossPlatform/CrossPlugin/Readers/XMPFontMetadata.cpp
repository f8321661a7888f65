#include "Readers/XMPFontMetadata.h"

#include <algorithm>
#include <iterator>

#include "GStringUtils.h"
#include "Identification/FontMerging.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "Services/VelorantFileUtils.h"
#include "platform/PropertyList.h"

using namespace GlyphsureSupport;
using namespace platform;

namespace {

constexpr const char* kSlugProperty = "slug";

struct AdobeField {
  const char* name;
  std::string_view key;
};
constexpr AdobeField kAdobeFields[] = {
    {"fontName", kGS_PostScriptNameKey},
    {"fontFamily", kAdobeXMPFontData_FamilyKey},
    {"fontFace", kAdobeXMPFontData_FaceKey},
    {"fontType", kAdobeXMPFontData_TypeKey},
    {"versionString", kAdobeXMPFontData_VersionStringKey},
    {"composite", kAdobeXMPFontData_CompositeKey},
    {"fontFileName", kAdobeXMPFontData_FontFileNameKey},
};

bool OpenForReading(SXMPFiles& files, const std::string& path) {
  return files.OpenFile(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead | kXMPFiles_OpenUseSmartHandler) ||
         files.OpenFile(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead | kXMPFiles_OpenUsePacketScanning);
}

bool OpenForUpdate(SXMPFiles& files, const std::string& path) {
  return files.OpenFile(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate | kXMPFiles_OpenUseSmartHandler) ||
         files.OpenFile(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate | kXMPFiles_OpenUsePacketScanning);
}

std::string ItemPath(const char* array, int index) { return std::string(array) + "[" + std::to_string(index) + "]"; }

Dictionary ReadSlugRecord(const SXMPMeta& xmpMeta, int index) {
  Dictionary record = Dictionary::Create();
  const std::string path = ItemPath(kSlugProperty, index);
  for (const std::string_view key : kAllGlyphsureCFKeys) {
    std::string value;
    if (key.data() == nullptr) break;
    if (xmpMeta.GetStructField(kXMP_VELORANT_GLYPHSURE, path.c_str(), kXMP_VELORANT_GLYPHSURE, std::string(key).c_str(),
                               &value, nullptr)) {
      record.Set(key, value);
    }
  }
  return record;
}

int ReadSlugRecords(const SXMPMeta& xmpMeta, int count, Array& fontArray) {
  int result = -1;
  FontNameIndex index(fontArray);
  for (int i = 1; i <= count; ++i) {
    if (MergeGlyphsureDictionaryIntoArray(fontArray, ReadSlugRecord(xmpMeta, i), &index) >= 0) result = 0;
  }
  return result;
}

int ReadOldSlug(const SXMPMeta& xmpMeta) {
  std::string text;
  if (!xmpMeta.GetProperty(kXMP_VELORANT_GLYPHSURE, kXMP_OLD_PS_GLYPHSURE_SLUG, &text, nullptr)) {
    OutputIndentedAndFormattedString(0, "...No Glyphsure slug found.");
    return -1;
  }
  const PropertyListResult parsed = ParseXMLPropertyList(text);
  if (!parsed.value) {
    OutputIndentedAndFormattedString(0, "Error from CFPropertyListCreateFromXMLData:  %s", parsed.error.c_str());
    return -1;
  }
  const Array fonts(parsed.value);
  if (fonts.Count() == 0) return -1;
  // Recognised and ignored: the caller gets success and no fonts, and the next save writes the current form.
  PostProcessGlyphsureSlug(fonts);
  return 0;
}

}  // namespace

int InitializeGlyphsureXMP() {
  XMP_VersionInfo version;
  SXMPMeta::GetVersionInfo(&version);
  OutputIndentedAndFormattedString(0, "SXMPMeta::GetVersionInfo() message returned: '%s'", version.message);
  int result = 0;
  // With any other version the toolkit is not initialised, and that is no error: hosts of later releases initialise it.
  if (version.major == 5 && version.minor <= 4) {
    if (!SXMPMeta::Initialize()) {
      OutputIndentedAndFormattedString(0, "Could not initialize XMP toolkit!");
      result = -1;
    } else if (!SXMPFiles::Initialize()) {
      OutputIndentedAndFormattedString(0, "Could not initialize SXMPFiles.");
      result = -1;
    }
  }
  std::string prefix;
  if (!SXMPMeta::RegisterNamespace(kXMP_VELORANT_GLYPHSURE, kXMP_GLYPHSURE_SLUG, &prefix)) result = -1;
  if (!SXMPMeta::RegisterNamespace(kXMP_ADOBE_FONTDATA, "xmpTPg", &prefix)) result = -1;
  return result;
}

void TerminateGlyphsureXMP() {
  SXMPFiles::Terminate();
  SXMPMeta::Terminate();
}

TModuleErrorCode ReadAllXMPFontDataFromFile(const std::string& fullPath, const Array& slugArray,
                                            const Array& adobeArray) {
  if (fullPath.empty() || (!slugArray && !adobeArray)) return CoreErrorCodes::kNotFound;
  try {
    SXMPFiles xmpFiles;
    if (!OpenForReading(xmpFiles, fullPath)) return CoreErrorCodes::kNotFound;
    SXMPMeta xmpMeta;
    xmpFiles.GetXMP(&xmpMeta);
    if (slugArray) GetXMPProperties(xmpMeta, slugArray);
    if (adobeArray) GetAdobeXMPFontData(xmpMeta, adobeArray);
    xmpFiles.CloseFile();
  } catch (const XMP_Error&) {
    OutputIndentedAndFormattedString(0, "Caught an XMP exception in %s()", __func__);
    return CoreErrorCodes::kUnknownError;
  }
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode ReadXMPGlyphsureSlugFromFile(const std::string& fullPath, const Array& slugArray) {
  return ReadAllXMPFontDataFromFile(fullPath, slugArray, Array());
}

TModuleErrorCode ReadAdobeXMPFontDataFromFile(const std::string& fullPath, const Array& adobeArray) {
  return ReadAllXMPFontDataFromFile(fullPath, Array(), adobeArray);
}

TModuleErrorCode ReadAllXMPFontDataFromFile(const std::string& fullPath, const Array& fontArray, bool& hasSlug) {
  hasSlug = false;
  if (!fontArray || fullPath.empty()) return CoreErrorCodes::kSuccess;
  const Array slugArray = Array::Create(), adobeArray = Array::Create();
  const TModuleErrorCode code = ReadAllXMPFontDataFromFile(fullPath, slugArray, adobeArray);
  MergeFontsIntoFontsArray(adobeArray, fontArray);
  MergeFontsIntoFontsArray(slugArray, fontArray);
  hasSlug = slugArray.Count() > 0;
  return code;
}

int GetXMPProperties(const SXMPMeta& xmpMeta, Array fontArray) {
  if (!fontArray) return -1;
  const int count = xmpMeta.CountArrayItems(kXMP_VELORANT_GLYPHSURE, kSlugProperty);
  int result = -1;
  if (count > 0) {
    result = ReadSlugRecords(xmpMeta, count, fontArray);
  } else if (count == 0) {
    result = ReadOldSlug(xmpMeta);
  }
  PostProcessGlyphsureSlug(fontArray);
  return result;
}

void AddAdobeFontDataToDictionary(const SXMPMeta& xmpMeta, const std::string& path, std::string_view key,
                                  Dictionary record) {
  std::string value;
  if (!xmpMeta.GetProperty(kXMP_ADOBE_FONTDATA, path.c_str(), &value, nullptr)) return;
  OutputIndentedAndFormattedString(0, "Adobe font data '%s' = '%s'", path.c_str(), value.c_str());
  record.Set(key, value);
}

int GetAdobeXMPFontData(const SXMPMeta& xmpMeta, Array fontArray) {
  if (!fontArray) return -1;
  int result = -1;
  try {
    const int count = xmpMeta.CountArrayItems(kXMP_ADOBE_FONTDATA, "Fonts");
    FontNameIndex index(fontArray);
    for (int i = 1; i <= count; ++i) {
      XMP_OptionBits options = 0;
      if (!xmpMeta.GetArrayItem(kXMP_ADOBE_FONTDATA, "Fonts", i, nullptr, &options)) continue;
      if (!(options & kXMP_PropValueIsStruct)) continue;
      std::string path;
      SXMPUtils::ComposeArrayItemPath(kXMP_ADOBE_FONTDATA, "Fonts", i, &path);
      const Dictionary record = Dictionary::Create();
      for (const AdobeField& field : kAdobeFields) {
        AddAdobeFontDataToDictionary(xmpMeta, path + "/" + kXMP_ADOBE_FONTSTRUCT + ":" + field.name, field.key, record);
      }
      if (MergeGlyphsureDictionaryIntoArray(fontArray, record, &index) >= 0) result = 0;
    }
  } catch (const XMP_Error&) {
    OutputIndentedAndFormattedString(0, "Exception caught.");
  }
  PostProcessGlyphsureSlug(fontArray);
  return result;
}

namespace {

void AppendSlugRecord(SXMPMeta& xmpMeta, const Dictionary& record) {
  xmpMeta.AppendArrayItem(kXMP_VELORANT_GLYPHSURE, kSlugProperty, kXMP_PropValueIsArray, nullptr,
                          kXMP_PropValueIsStruct);
  std::string path;
  SXMPUtils::ComposeArrayItemPath(kXMP_VELORANT_GLYPHSURE, kSlugProperty, kXMP_ArrayLastItem, &path);
  for (size_t i = 0; i < record.Count(); ++i) {
    xmpMeta.SetStructField(kXMP_VELORANT_GLYPHSURE, path.c_str(), kXMP_VELORANT_GLYPHSURE,
                           std::string(record.KeyAt(i)).c_str(), String(record.ValueAt(i)).CString());
  }
}

}  // namespace

TModuleErrorCode SetXMPProperties(const Array& fontArray, SXMPFiles& xmpFiles, SXMPMeta& xmpMeta) {
  xmpMeta.DeleteProperty(kXMP_VELORANT_GLYPHSURE, kXMP_OLD_PS_GLYPHSURE_SLUG);
  xmpMeta.DeleteProperty(kXMP_VELORANT_GLYPHSURE, kSlugProperty);
  // Writes nothing, so the file keeps its slug: a document saved with identification off keeps its data.
  if (!fontArray) return CoreErrorCodes::kSuccess;
  if (fontArray.Count() == 0) {
    if (!xmpFiles.CanPutXMP(xmpMeta)) return CoreErrorCodes::kUnknownError;
    xmpFiles.PutXMP(xmpMeta);
    return CoreErrorCodes::kSuccess;
  }
  TModuleErrorCode code = CoreErrorCodes::kSuccess;
  const int count = static_cast<int>(fontArray.Count());
  for (int i = 0; i < count; ++i) {
    AppendSlugRecord(xmpMeta, Dictionary(fontArray.At(static_cast<size_t>(i))));
    // Checked after every font: if there is little room, the last state that fits is kept, so the slug is shortened
    // instead of lost.
    if (xmpFiles.CanPutXMP(xmpMeta)) {
      xmpFiles.PutXMP(xmpMeta);
      code = CoreErrorCodes::kSuccess;
    } else {
      OutputIndentedAndFormattedString(0, "WARNING: no room to write Glyphsure data for font %d of %d.", i + 1, count);
      code = CoreErrorCodes::kFatalError;
    }
  }
  return code;
}

TModuleErrorCode WriteXMPGlyphsureSlugToFile(const std::string& fullPath, const Array& fontArray) {
  const unsigned long long date = VelorantFileUtils::GetFileModificationDate(fullPath);
  if (date == 0) return CoreErrorCodes::kUnknownError;
  TModuleErrorCode code = CoreErrorCodes::kUnknownError;
  try {
    SXMPFiles xmpFiles;
    if (!OpenForUpdate(xmpFiles, fullPath)) return CoreErrorCodes::kUnknownError;
    SXMPMeta xmpMeta;
    xmpFiles.GetXMP(&xmpMeta);
    const Array fonts = fontArray.Copy();  // shallow: the caller's records lose those keys, too
    RemoveUnsluggableGlyphsureKeys(fonts);
    code = SetXMPProperties(fonts, xmpFiles, xmpMeta);
    xmpFiles.CloseFile();
  } catch (const XMP_Error&) {
    OutputIndentedAndFormattedString(0, "Caught an XMP exception in %s()", __func__);
    code = CoreErrorCodes::kUnknownError;
  }
  VelorantFileUtils::SetFileModificationDate(fullPath, date);
  return code;
}

bool IsXMPAllowedInThisFile(const std::string& path, bool) {
  const size_t dot = path.rfind('.');
  if (dot == std::string::npos) return false;
  const std::string extension = GStringUtils::OSToLowerCase(path.substr(dot));
  if (MarquineGlobals::HostAppIsInCopy()) return extension == ".icml" || extension == ".icmt" || extension == ".incx";
  if (MarquineGlobals::HostAppIsIllustrator()) return extension == ".ai";
  return MarquineGlobals::HostAppIsPhotoshop() && extension == ".psd";
}
