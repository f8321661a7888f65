#include "with-fonts/ActiveFonts.h"

#include <algorithm>
#include <filesystem>

#include "Identification/FontNames.h"

namespace with_fonts {

using platform::ActiveFont;
using platform::FontSnapshot;

const ActiveFont* FindActive(const docfonts::Font& font, const std::string& name, const FontSnapshot& system) {
  if (font.style) {
    const FontStyle& style = *font.style;
    const ActiveFont* face = FindFace(system, style.family, style.weight, style.isItalic, style.stretch);
    if (face) return face;
  }
  if (name.empty()) return nullptr;
  const auto found = std::find_if(system.fonts.begin(), system.fonts.end(),
                                  [&name](const ActiveFont& face) { return face.postScriptName == name; });
  return found == system.fonts.end() ? nullptr : &*found;
}

bool IsActive(const docfonts::Font& font, const std::string& name, const FontSnapshot& system) {
  return FindActive(font, name, system) || (!name.empty() && system.postScriptNames.contains(name));
}

std::string FileOf(const docfonts::Font& font, const std::string& name, const FontSnapshot& system) {
  const ActiveFont* face = FindActive(font, name, system);
  if (!face) return "";
  std::error_code error;
  const std::string file = std::filesystem::canonical(face->file, error).string();
  return error ? face->file : file;
}

bool IsNeeded(const docfonts::Font& font, const FontSnapshot& system) {
  if (font.embedded.value_or(false)) return false;
  return !GlyphsureSupport::IsInternalToHost(font.name) || IsActive(font, font.style ? "" : font.name, system);
}

}  // namespace with_fonts
