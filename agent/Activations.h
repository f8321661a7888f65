// Who asks for which font, and the links that follow from it.
//
// A face is asked for by clients, each in one state, and by what is stored (the user, or a client that has gone and
// left its fonts active). A file is linked exactly as long as one of its faces is asked for; all faces of a linked file are
// active, because fontconfig reads whole files. Two files with a face of the same PostScript name are never active
// together by us, nor one of ours beside one of the operating system.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "agent/ActiveFolder.h"
#include "agent/FontTable.h"
#include "agent/UserStore.h"
#include "agent/include/AgentProtocol.h"

namespace agent {

using ClientID = uint32_t;
using agent_protocol::AgentActivationState;

struct ActivationEvents {
  std::function<void(uint32_t fontID)> activated;
  std::function<void(uint32_t fontID)> deactivated;
  std::function<void(const std::string& line)> report;  // what a person should know
};

struct ActivationOutcome {
  std::vector<uint32_t> activated;  // active now, by this or before
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

  // Removes every link that nothing stored asks for: what an agent left behind that was killed.
  void RemoveUnaskedLinks();
  // After a scan: links what is asked for and not linked, drops links of files that are gone or were moved.
  void Reconcile();

  // Each ID ends in exactly one list of the outcome. kActivated is stored; if that fails, it throws StoreError and what was
  // active before is active, no more.
  ActivationOutcome Activate(ClientID client, const std::vector<uint32_t>& fontIDs, AgentActivationState state);
  // Ends what this client, and a client that has gone, asked for; with alsoUser what the user asked for, too. Gives the
  // fonts that only the operating system could deactivate. Throws StoreError with nothing deactivated.
  std::vector<uint32_t> Deactivate(ClientID client, const std::vector<uint32_t>& fontIDs, bool alsoUser);
  void ReleaseClient(ClientID client);
  // What the client holds becomes stored and stays active when it goes, and after the agent's end. Given back is what it
  // holds for a preview, and what it only asked for again after a restart: a client that saw the agent die may have
  // stopped its font work, and then it chose nothing of this to stay. Throws StoreError with nothing stored or given back.
  void KeepClient(ClientID client);
  void ReleaseAllClients();

  AgentActivationState StateOf(const Font& font) const;
  bool IsActive(const Font& font) const { return StateOf(font) != agent_protocol::kInactive; }
  bool IsHeldBy(ClientID client, uint32_t fontID) const;
  // Another active font with a PostScript name of this font's file; 0 without one.
  uint32_t ConflictOf(const Font& font) const;

  void OnFileReplaced(const std::string& path);
  void OnFontsGone(const std::string& path, const std::vector<Font>& fonts);

 private:
  struct Demand {
    std::map<ClientID, AgentActivationState> clients;
    AgentActivationState stored = agent_protocol::kInactive;
    bool IsEmpty() const { return clients.empty() && stored == agent_protocol::kInactive; }
    AgentActivationState Strongest() const;
  };

  using Demands = std::map<uint32_t, Demand>;  // by font ID; none is empty

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
  std::map<std::string, uint32_t> linkedFiles_;  // path to the ID that its link is named by
  std::set<std::string> announced_;              // linked files whose fonts clients know to be active
};

}  // namespace agent
