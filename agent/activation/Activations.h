// Records which font is requested by whom, and maintains the links that follow from it.
//
// A face can be requested by clients, each with one state, and by stored activations (by the user, or by a client that
// ended and left its fonts active). A file is linked exactly as long as one of its faces is requested. All faces of a
// linked file are active, because fontconfig reads whole files. We never activate two files with a face of the same
// PostScript name together, nor a file beside a font of that name that the operating system has active.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "agent/activation/ActiveFolder.h"
#include "agent/fonts/FontTable.h"
#include "agent/include/AgentProtocol.h"
#include "agent/store/UserStore.h"

namespace agent {

using ClientID = uint32_t;
using agent_protocol::AgentActivationState;

struct ActivationEvents {
  std::function<void(uint32_t fontID)> activated;
  std::function<void(uint32_t fontID)> deactivated;
  std::function<void(const std::string& line)> report;  // a line for people
};

struct ActivationOutcome {
  std::vector<uint32_t> activated;  // active now, by this call or before
  std::vector<uint32_t> failed;
  std::vector<uint32_t> refused;
};

class Activations {
 public:
  struct Parts {
    const FontTable& table;
    ActiveFolder& folder;
    UserStore& user;
  };
  Activations(const Parts& parts, std::set<std::string> refusedNames, ActivationEvents events);

  // Removes every link without a stored activation, which a killed agent left.
  void RemoveUnaskedLinks();
  // Call after a scan: links requested files that are not linked and removes links of files that are gone or were
  // moved.
  void Reconcile();

  // The ID of the font that is now at the place of this one. A client may still know a font by a former version's ID.
  uint32_t CurrentID(uint32_t fontID) const;
  // Each ID is in exactly one list of the outcome. kActivated is stored. If that fails, throws StoreError, and exactly
  // the fonts that were active before are active.
  ActivationOutcome Activate(ClientID client, const std::vector<uint32_t>& fontIDs, AgentActivationState state);
  // Ends the activations by this client, and those that an earlier client left; with alsoUser also those by the user.
  // Returns the fonts that only the operating system can deactivate. Throws StoreError with nothing deactivated.
  std::vector<uint32_t> Deactivate(ClientID client, const std::vector<uint32_t>& fontIDs, bool alsoUser);
  void ReleaseClient(ClientID client);
  // Stores what the client holds, which then stays active after the client and the agent have ended. Deactivates
  // previews and fonts that were only requested again after a restart of the agent: a client that saw the agent die may
  // have stopped its font work, and did not decide that they stay. Throws StoreError with nothing stored or
  // deactivated.
  void KeepClient(ClientID client);
  void ReleaseAllClients();

  AgentActivationState StateOf(const Font& font) const;
  bool IsActive(const Font& font) const { return agent_protocol::IsActiveState(StateOf(font)); }
  // True if a client holds the font for a document.
  bool IsHeldForDocument(uint32_t fontID) const;
  bool IsHeldBy(ClientID client, uint32_t fontID) const;
  // Returns another active font with a PostScript name of this font's file, or 0.
  uint32_t ConflictOf(const Font& font) const;

  // Call these in the reverse order, after the table has changed: requests for an old version become requests for the
  // new one, fonts that are gone are announced, and the link is made to the new file.
  void OnFileReplaced(const std::string& path);
  void OnFontRenewed(uint32_t former, uint32_t id);
  void OnFontsGone(const std::string& path, const std::vector<Font>& fonts);

 private:
  struct Demand {
    std::map<ClientID, AgentActivationState> clients;
    AgentActivationState stored = agent_protocol::kInactive;
    bool IsEmpty() const { return clients.empty() && stored == agent_protocol::kInactive; }
    AgentActivationState Strongest() const;
  };

  AgentActivationState StateOfLinked(const Font& font) const;

  using Demands = std::map<uint32_t, Demand>;  // by font ID; never empty entries

  std::vector<uint32_t> HeldBy(ClientID client) const;
  bool IsAskedFor(const std::string& path) const;
  bool LinkFile(const std::string& path, uint32_t linkID);
  void Announce(const std::string& path);
  bool Unlink(uint32_t linkID);
  void UnlinkFile(const std::string& path);
  void UnlinkIfUnasked(const std::string& path);
  void DropClient(ClientID client, uint32_t fontID);
  void Store(const std::vector<uint32_t>& fontIDs, AgentActivationState state);
  Demands DemandsOf(const std::vector<uint32_t>& fontIDs) const;
  ActivationOutcome Link(ClientID client, const std::vector<uint32_t>& fontIDs, AgentActivationState state,
                         std::set<std::string>& linkedNow);
  void Undo(const std::vector<uint32_t>& fontIDs, const Demands& before, const std::set<std::string>& linkedNow);
  void TakeBackUnseen(ClientID client, const std::set<std::string>& linkedNow, ActivationOutcome& outcome);

  Parts parts_;
  std::set<std::string> refusedNames_;
  ActivationEvents events_;
  Demands demands_;
  std::map<std::string, uint32_t> linkedFiles_;  // path to the ID that names its link
  std::set<std::string> announced_;              // linked files that clients were notified of
  std::map<uint32_t, uint32_t> renewed_;         // former ID to that of the next version
};

}  // namespace agent
