#include "host/console/PanelFonts.h"

#include <charconv>

#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "host/console/AgentLink.h"
#include "host/console/Session.h"
#include "platform/Bundle.h"

namespace console {

namespace {

namespace calls = agent_protocol::calls;
using agent_protocol::AgentActivationState;
using agent_protocol::Numbers;

uint32_t NumberIn(const agent_protocol::Record& record, const char* key) {
  const auto found = record.find(key);
  uint32_t number = 0;
  if (found != record.end()) {
    std::from_chars(found->second.data(), found->second.data() + found->second.size(), number);
  }
  return number;
}

// What keeps a font active. The words are known to the page.
const char* KeeperOf(AgentActivationState state) {
  switch (state) {
    case agent_protocol::kAutoActivated:
    case agent_protocol::kAutoActivatedAgain: return "document";
    case agent_protocol::kSystemActive:
    case agent_protocol::kActiveInPlace: return "system";
    case agent_protocol::kActiveWithFile:
    case agent_protocol::kPreviewedWithFile: return "file";
    default: return "program";
  }
}

// The types of the library's functions.
struct Functions {
#define FUNCTION_TYPE(name, result, parameters) using name = result(*) parameters;
  PLUGIN_INTERFACE_FUNCTIONS(FUNCTION_TYPE)
#undef FUNCTION_TYPE
};

}  // namespace

struct PanelFonts::State {
  uint32_t fontID = 0;
  AgentActivationState state = agent_protocol::kInactive;
};

std::optional<std::vector<PanelFonts::Part>> PanelFonts::Parts() {
  AgentLink& agent = session_.Agent();
  auto groups = agent.Ask<calls::GetWorkgroups>({});
  auto sets = agent.Ask<calls::GetSets>({});
  auto smartSets = agent.Ask<calls::GetSmartSets>({});
  if (!groups || !sets || !smartSets) return std::nullopt;
  std::vector<Part> parts;
  for (auto& group : groups->workgroups) parts.push_back({"workgroup", group.workgroupID, std::move(group.name)});
  for (auto& set : sets->sets) parts.push_back({"set", set.setID, std::move(set.name)});
  for (auto& set : smartSets->smartSets) parts.push_back({"smartset", set.smartSetID, std::move(set.name)});
  return parts;
}

std::optional<std::vector<PanelFonts::Kind>> PanelFonts::Kinds() {
  auto found = session_.Agent().Ask<calls::GetFontKinds>({});
  if (!found) return std::nullopt;
  std::vector<Kind> kinds;
  for (auto& kind : found->kinds) kinds.push_back({std::move(kind.kind), std::move(kind.fontIDs)});
  return kinds;
}

std::optional<PanelFonts::Deactivation> PanelFonts::DeactivateFamily(uint32_t fontID) {
  AgentLink& agent = session_.Agent();
  const auto asked = agent.Ask<calls::GetFontInfoByID>({fontID});
  if (!asked) return std::nullopt;
  const auto family =
      agent.Ask<calls::FindFontsInSameFamilyForActivation>({fontID, NumberIn(asked->record, "AssignedFamilyID"), {}});
  if (!family) return std::nullopt;
  Deactivation done;
  Numbers fontIDs;
  for (agent_protocol::Record record : family->records) {
    const uint32_t id = NumberIn(record, "DatabaseID");
    if (!IsActiveState(static_cast<AgentActivationState>(NumberIn(record, "ActivationStatus")))) continue;
    // A font that was active before the document was opened is active, but not for the document.
    std::string document = session_.DocumentUsing(record["PostScriptName"]);
    if (document.empty()) {
      fontIDs.push_back(id);
    } else {
      done.kept.push_back({id, "document", std::move(document)});
    }
  }
  if (!EndActivations(fontIDs)) return std::nullopt;
  const auto states = StatesOf(fontIDs);
  if (!states) return std::nullopt;
  for (const auto& [id, state] : *states) {
    if (IsActiveState(state)) {
      done.kept.push_back({id, KeeperOf(state), ""});
    } else {
      done.inactive.push_back(id);
    }
  }
  return done;
}

std::optional<std::vector<PanelFonts::State>> PanelFonts::StatesOf(const std::vector<uint32_t>& fontIDs) {
  const auto described = session_.Agent().Ask<calls::DescribeFonts>({fontIDs});
  if (!described) return std::nullopt;
  std::vector<State> states;
  for (const auto& font : described->fonts) {
    states.push_back({font.fontID, static_cast<AgentActivationState>(font.state)});
  }
  return states;
}

// Ends what the user activated with any program, and what the panel activated. Not what documents need: the plug-in
// counts their fonts. Returns false if no agent answers.
bool PanelFonts::EndActivations(const std::vector<uint32_t>& fontIDs) {
  if (!session_.Agent().Call<calls::DeactivateFonts>({fontIDs, /*alsoUser=*/true})) return false;
  const auto states = StatesOf(fontIDs);
  if (!states) return false;
  Numbers previewed;
  for (const auto& [id, state] : *states) {
    if (state == agent_protocol::kPreviewActivated || state == agent_protocol::kTemporary) previewed.push_back(id);
  }
  EndPluginsActivations(previewed);
  return true;
}

// The agent lets only the client that activated a font end that. The plug-in's client is the library in this process.
void PanelFonts::EndPluginsActivations(const std::vector<uint32_t>& fontIDs) const {
  const platform::BundleRef library = platform::Bundle::Create(interfaceFramework_);
  if (fontIDs.empty() || !library) return;
  const auto handle =
      reinterpret_cast<Functions::GetPluginFacadeInstance>(library->FunctionForName("GetPluginFacadeInstance"));
  const auto deactivate = reinterpret_cast<Functions::DeactivateFonts>(library->FunctionForName("DeactivateFonts"));
  // A font that stays active is reported by its state.
  if (handle && deactivate) deactivate(handle(), static_cast<uint32_t>(fontIDs.size()), fontIDs.data(), 0);
}

}  // namespace console
