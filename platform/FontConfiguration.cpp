#include "platform/FontConfiguration.h"

#include <fontconfig/fontconfig.h>
#include <libxml/entities.h>

#include <memory>
#include <new>

namespace platform {

namespace {

std::string EscapeXML(const std::string& text) {
  const std::unique_ptr<xmlChar, void (*)(void*)> escaped(
      xmlEncodeSpecialChars(nullptr, reinterpret_cast<const xmlChar*>(text.c_str())), xmlFree);
  if (!escaped) throw std::bad_alloc();
  return reinterpret_cast<const char*>(escaped.get());
}

}  // namespace

std::string FontConfigurationText(const FontConfiguration& configuration) {
  std::string text =
      "<?xml version=\"1.0\"?>\n"
      "<!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\">\n"
      "<fontconfig>\n";
  for (const std::string& file : configuration.includes) {
    text += "  <include ignore_missing=\"yes\">" + EscapeXML(file) + "</include>\n";
  }
  for (const std::string& folder : configuration.folders) text += "  <dir>" + EscapeXML(folder) + "</dir>\n";
  if (!configuration.cacheFolder.empty()) {
    text += "  <cachedir>" + EscapeXML(configuration.cacheFolder) + "</cachedir>\n";
  }
  for (const std::string& pattern : configuration.rejected) {
    text += "  <selectfont><rejectfont><glob>" + EscapeXML(pattern) + "</glob></rejectfont></selectfont>\n";
  }
  return text + "</fontconfig>\n";
}

std::string UserFontConfigurationFile() {
  const std::unique_ptr<FcChar8, void (*)(FcChar8*)> file(FcConfigFilename(nullptr), FcStrFree);
  return file ? reinterpret_cast<const char*>(file.get()) : "";
}

}  // namespace platform
