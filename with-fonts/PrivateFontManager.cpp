#include "with-fonts/PrivateFontManager.h"

#include <filesystem>

#include "Bridge/FontOrSetInfoRec.h"
#include "XCore/ECFExtensions/XCFUtils.h"

namespace with_fonts {

using namespace GlyphsureSupport;
using platform::Dictionary;

namespace {

namespace fs = std::filesystem;

uint32_t IDOf(const Dictionary& font) {
  return static_cast<uint32_t>(XCFUtils::GetLongFromDictString(font, kGS_DatabaseIDKey));
}

// CoreAgentInterface::ComputePluginActivationState gives this state to a font that must not be, or cannot be, active.
bool IsForbidden(const Dictionary& font) {
  return font.Contains(kGS_ActivationStateKey) && XCFUtils::GetLongFromDictString(font, kGS_ActivationStateKey) == 0;
}

}  // namespace

std::string PrivateFontManager::LinkOf(uint32_t fontID) const { return linksFolder_ + "/" + std::to_string(fontID); }

bool PrivateFontManager::Link(const Dictionary& font) {
  std::string path = font.GetString(kGS_PathKey).Text();
  FontOrSetInfoRec found;
  if (path.empty() && GetFontInfoByID(font, &found) == 0) path = found.fontInfo.GetString(kGS_PathKey).Text();
  if (path.empty()) return false;
  std::error_code error;
  fs::create_symlink(path, LinkOf(IDOf(font)), error);
  return !error || error == std::errc::file_exists;
}

FontManagerInterface::ActivationStates PrivateFontManager::GetClientFontActivationStates(const FontIDs& ids) {
  ActivationStates states;
  std::error_code error;
  for (const uint32_t id : ids) states.emplace(id, fs::is_symlink(LinkOf(id), error));
  return states;
}

int PrivateFontManager::ActivateFontsByID(const Array& fonts, const std::string&, void**, Array activated,
                                          Array refused, ProgressFunction, void*) {
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const Dictionary font(fonts.At(i));
    if (IsForbidden(font)) {
      if (refused) refused.Append(font);
    } else if (Link(font) && activated) {
      activated.Append(font);
    }
  }
  return 0;
}

int PrivateFontManager::DeactivateFont(const Dictionary& font, void*) {
  std::error_code error;
  fs::remove(LinkOf(IDOf(font)), error);
  return error ? -1 : 0;
}

int PrivateFontManager::DeactivateFonts(const Array& fonts, void*, Array deactivated, ProgressFunction, void*) {
  int result = 0;
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const Dictionary font(fonts.At(i));
    if (DeactivateFont(font, nullptr) != 0) {
      result = -1;
    } else if (deactivated) {
      deactivated.Append(font);
    }
  }
  return result;
}

}  // namespace with_fonts
