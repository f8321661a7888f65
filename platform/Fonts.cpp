#include "platform/Fonts.h"

#include <fontconfig/fontconfig.h>

#include <functional>
#include <memory>

#include "platform/Folders.h"

namespace platform {

namespace {

struct ConfigFree {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, ConfigFree>;

Config FreshConfig() {
  const std::string& file = GetPlaces().fontConfigFile;
  if (file.empty()) return Config(FcInitLoadConfigAndFonts());
  Config config(FcConfigCreate());
  const auto* name = reinterpret_cast<const FcChar8*>(file.c_str());
  if (!config || !FcConfigParseAndLoad(config.get(), name, FcTrue) || !FcConfigBuildFonts(config.get())) return nullptr;
  return config;
}

std::string Text(const FcPattern* font, const char* object, int index = 0) {
  FcChar8* text = nullptr;
  return FcPatternGetString(font, object, index, &text) == FcResultMatch ? reinterpret_cast<const char*>(text) : "";
}

// Visits until the visitor says true; true if it did.
bool FindFont(const std::function<bool(const FcPattern*)>& visit) {
  const Config config = FreshConfig();
  const FcFontSet* fonts = config ? FcConfigGetFonts(config.get(), FcSetSystem) : nullptr;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    if (visit(fonts->fonts[i])) return true;
  }
  return false;
}

bool HasFamily(const FcPattern* font, const std::string& name) {
  FcChar8* text = nullptr;
  for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &text) == FcResultMatch; ++i) {
    if (name == reinterpret_cast<const char*>(text)) return true;
  }
  return false;
}

}  // namespace

std::set<std::string> ActivePostScriptNames() {
  std::set<std::string> names;
  FindFont([&](const FcPattern* font) {
    names.insert(Text(font, FC_POSTSCRIPT_NAME));
    return false;
  });
  names.erase("");
  return names;
}

bool IsFontNameActive(const std::string& name) {
  if (name.empty()) return false;
  return FindFont(
      [&](const FcPattern* font) { return Text(font, FC_POSTSCRIPT_NAME) == name || HasFamily(font, name); });
}

std::vector<ActiveFont> ActiveFonts() {
  std::vector<ActiveFont> fonts;
  FindFont([&](const FcPattern* font) {
    FcBool scalable = FcFalse;
    FcPatternGetBool(font, FC_SCALABLE, 0, &scalable);
    int index = 0;
    FcPatternGetInteger(font, FC_INDEX, 0, &index);
    // The upper half of the index numbers the named instances of a variable font, which are no faces of their own.
    if (scalable && (index >> 16) == 0) {
      fonts.push_back({Text(font, FC_POSTSCRIPT_NAME), Text(font, FC_FAMILY), Text(font, FC_FILE), index & 0xFFFF});
    }
    return false;
  });
  return fonts;
}

}  // namespace platform
