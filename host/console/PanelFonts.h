// What the font panel asks of the host about fonts: answers through the console's connection to the agent, and ends
// activations that the plug-in made for the panel. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/panel/HostRequests.h"

namespace console {

class Session;

class PanelFonts : public panel::FontSource {
 public:
  // The session must outlive the object. `interfaceFramework` is the library through which the plug-in calls the agent.
  PanelFonts(Session& session, std::string interfaceFramework)
      : session_(session), interfaceFramework_(std::move(interfaceFramework)) {}

  std::optional<std::vector<Part>> Parts() override;
  std::optional<std::vector<Kind>> Kinds() override;
  std::optional<Deactivation> DeactivateFamily(uint32_t fontID) override;

 private:
  struct State;
  std::optional<std::vector<State>> StatesOf(const std::vector<uint32_t>& fontIDs);
  bool EndActivations(const std::vector<uint32_t>& fontIDs);
  void EndPluginsActivations(const std::vector<uint32_t>& fontIDs) const;

  Session& session_;
  const std::string interfaceFramework_;
};

}  // namespace console
