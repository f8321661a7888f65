// The font manager of a program whose fonts are private: it asks the agent like any other, but activates fonts by links
// in a folder of its own, so that nothing changes for other programs. A font that the agent's configuration forbids
// stays forbidden.
#pragma once

#include <string>

#include "Bridge/CoreAgentInterface.h"

namespace with_fonts {

class PrivateFontManager : public CoreAgentInterface {
 public:
  // An existing folder.
  explicit PrivateFontManager(std::string linksFolder) : linksFolder_(std::move(linksFolder)) {}

  ActivationStates GetClientFontActivationStates(const FontIDs& ids) override;
  int ActivateFontsByID(const Array& fonts, const std::string& documentIdentifier, void** handle, Array activated,
                        Array refused, ProgressFunction progress, void* context) override;
  int DeactivateFont(const Dictionary& font, void* handle) override;
  int DeactivateFonts(const Array& fonts, void* handle, Array deactivated, ProgressFunction progress,
                      void* context) override;

 private:
  std::string LinkOf(uint32_t fontID) const;
  bool Link(const Dictionary& font);

  const std::string linksFolder_;
};

}  // namespace with_fonts
