#include "agent/activation/Activations.h"

#include <algorithm>

#include "platform/Files.h"
#include "platform/Fonts.h"

namespace agent {

using agent_protocol::kActivated;
using agent_protocol::kActiveInPlace;
using agent_protocol::kActiveWithFile;
using agent_protocol::kAutoActivated;
using agent_protocol::kAutoActivatedAgain;
using agent_protocol::kCannotBeActive;
using agent_protocol::kForbidden;
using agent_protocol::kInactive;
using agent_protocol::kPreviewActivated;
using agent_protocol::kPreviewedWithFile;
using agent_protocol::kSystemActive;
using agent_protocol::kTemporary;

namespace {

int Rank(AgentActivationState state) {
  switch (state) {
    case kActivated: return 4;
    case kAutoActivated: return 3;
    case kAutoActivatedAgain: return 2;
    case kPreviewActivated:
    case kTemporary: return 1;
    default: return 0;
  }
}

AgentActivationState Stronger(AgentActivationState a, AgentActivationState b) { return Rank(a) >= Rank(b) ? a : b; }

}  // namespace

AgentActivationState Activations::Demand::Strongest() const {
  AgentActivationState strongest = stored;
  for (const auto& [client, state] : clients) strongest = Stronger(strongest, state);
  return strongest;
}

Activations::Activations(const Parts& parts, std::set<std::string> refusedNames, ActivationEvents events)
    : parts_(parts),
      refusedNames_(std::move(refusedNames)),
      events_(std::move(events)),
      renewed_(parts.user.NewVersions()) {
  for (const auto& [id, state] : parts_.user.Activations()) {
    demands_[id].stored = static_cast<AgentActivationState>(state);
  }
}

void Activations::RemoveUnaskedLinks() {
  for (const uint32_t id : parts_.folder.LinkedIDs()) {
    if (!demands_.contains(id)) Unlink(id);
  }
}

bool Activations::Unlink(uint32_t linkID) {
  const std::error_code error = parts_.folder.Unlink(linkID);
  if (error) {
    events_.report("font " + std::to_string(linkID) + ": can't deactivate: " + platform::DescribeError(error));
  }
  return !error;
}

void Activations::Reconcile() {
  const ActiveFolder::Batch batch(parts_.folder);
  const std::map<std::string, uint32_t> linked = linkedFiles_;
  for (const auto& [path, id] : linked) UnlinkIfUnasked(path);
  std::set<uint32_t> owned;
  for (const auto& [path, id] : linkedFiles_) owned.insert(id);
  for (const uint32_t id : parts_.folder.LinkedIDs()) {
    if (!owned.contains(id)) Unlink(id);  // left by an earlier run; requested fonts are linked again below
  }
  for (const auto& [id, demand] : demands_) {
    const Font* font = parts_.table.Find(id);
    if (!font || linkedFiles_.contains(font->path) || parts_.table.IsSystemActive(*font)) continue;
    if (ConflictOf(*font) == 0 && LinkFile(font->path, id)) Announce(font->path);
  }
}

bool Activations::IsAskedFor(const std::string& path) const {
  const std::vector<const Font*> fonts = parts_.table.OfFile(path);
  return std::any_of(fonts.begin(), fonts.end(), [&](const Font* font) { return demands_.contains(font->id); });
}

bool Activations::LinkFile(const std::string& path, uint32_t linkID) {
  const ActiveFolder::LinkResult result = parts_.folder.Link(linkID, path);
  if (result.error) {
    events_.report(path + ": can't activate: " + platform::DescribeError(result.error));
    return false;
  }
  if (result.symbolic && parts_.folder.PrefersHardLinks()) {
    events_.report(path + ": only a symbolic link was possible; sandboxed programs may not see this font");
  }
  linkedFiles_[path] = linkID;
  return true;
}

void Activations::Announce(const std::string& path) {
  if (!linkedFiles_.contains(path) || !announced_.insert(path).second) return;
  for (const Font* font : parts_.table.OfFile(path)) events_.activated(font->id);
}

void Activations::UnlinkFile(const std::string& path) {
  const auto found = linkedFiles_.find(path);
  if (found == linkedFiles_.end()) return;
  if (!Unlink(found->second)) return;
  linkedFiles_.erase(found);
  if (announced_.erase(path) == 0) return;
  for (const Font* font : parts_.table.OfFile(path)) events_.deactivated(font->id);
}

void Activations::UnlinkIfUnasked(const std::string& path) {
  if (!IsAskedFor(path)) UnlinkFile(path);
}

uint32_t Activations::ConflictOf(const Font& font) const {
  for (const Font* face : parts_.table.OfFile(font.path)) {
    for (const Font* other : parts_.table.WithPostScriptName(face->face.postScriptName)) {
      if (other->path != font.path && IsActive(*other)) return other->id;
    }
  }
  return 0;
}

ActivationOutcome Activations::Activate(ClientID client, const std::vector<uint32_t>& fontIDs,
                                        AgentActivationState state) {
  const Demands before = DemandsOf(fontIDs);
  std::set<std::string> linkedNow;
  ActivationOutcome outcome = Link(client, fontIDs, state, linkedNow);
  TakeBackUnseen(client, linkedNow, outcome);
  if (state == kActivated) {
    std::vector<uint32_t> ours;
    for (const uint32_t id : outcome.activated) {
      if (demands_.contains(id)) ours.push_back(id);
    }
    try {
      Store(ours, kActivated);
    } catch (const StoreError&) {
      Undo(fontIDs, before, linkedNow);
      throw;
    }
  }
  for (const std::string& path : linkedNow) Announce(path);
  return outcome;
}

Activations::Demands Activations::DemandsOf(const std::vector<uint32_t>& fontIDs) const {
  Demands demands;
  for (const uint32_t id : fontIDs) {
    const auto found = demands_.find(id);
    if (found != demands_.end()) demands.insert(*found);
  }
  return demands;
}

// Call before anybody was notified of the links.
void Activations::Undo(const std::vector<uint32_t>& fontIDs, const Demands& before,
                       const std::set<std::string>& linkedNow) {
  for (const uint32_t id : fontIDs) demands_.erase(id);
  demands_.insert(before.begin(), before.end());
  for (const std::string& path : linkedNow) UnlinkIfUnasked(path);
}

// Links the files that are not linked and records the client's request. linkedNow receives the files of the new links.
ActivationOutcome Activations::Link(ClientID client, const std::vector<uint32_t>& fontIDs, AgentActivationState state,
                                    std::set<std::string>& linkedNow) {
  const ActiveFolder::Batch batch(parts_.folder);
  ActivationOutcome outcome;
  std::set<uint32_t> taken;
  for (const uint32_t id : fontIDs) {
    if (!taken.insert(id).second) continue;
    const Font* font = parts_.table.Find(id);
    if (!font) {
      outcome.failed.push_back(id);
    } else if (refusedNames_.contains(font->face.postScriptName)) {
      outcome.refused.push_back(id);
    } else if (parts_.table.IsSystemActive(*font)) {
      outcome.activated.push_back(id);
    } else {
      bool isLinked = linkedFiles_.contains(font->path);
      if (!isLinked && ConflictOf(*font) == 0 && LinkFile(font->path, id)) {
        isLinked = true;
        linkedNow.insert(font->path);
      }
      (isLinked ? outcome.activated : outcome.failed).push_back(id);
      if (!isLinked) continue;
      AgentActivationState& held = demands_[id].clients[client];
      held = Stronger(held, state);
    }
  }
  return outcome;
}

// Removes fonts that the font service does not list, for example because its configuration rejects them: they must not
// be reported as active.
void Activations::TakeBackUnseen(ClientID client, const std::set<std::string>& linkedNow, ActivationOutcome& outcome) {
  if (linkedNow.empty()) return;
  // Compare file and index, not names: the font service does not clean names as we do.
  std::set<std::pair<uint32_t, int32_t>> seen;
  const auto listed = platform::GetFontSnapshot();
  for (const platform::ActiveFont& font : listed->fonts) {
    if (const auto linkID = parts_.folder.IDOfLink(font.file)) seen.emplace(*linkID, font.faceIndex);
  }
  std::vector<uint32_t> stay;
  for (const uint32_t id : outcome.activated) {
    const Font* font = parts_.table.Find(id);
    if (!linkedNow.contains(font->path) || seen.contains({linkedFiles_.at(font->path), font->face.faceIndex})) {
      stay.push_back(id);
      continue;
    }
    events_.report(font->path + ": was linked, but the font service does not list " + font->face.postScriptName);
    DropClient(client, id);
    UnlinkIfUnasked(font->path);
    outcome.failed.push_back(id);
  }
  outcome.activated = std::move(stay);
}

// If the agent is killed between linking and storing, the next start removes the link.
void Activations::Store(const std::vector<uint32_t>& fontIDs, AgentActivationState state) {
  if (fontIDs.empty()) return;
  if (state == kInactive) {
    parts_.user.RemoveActivations(fontIDs);
  } else {
    parts_.user.SetActivations(fontIDs, state);
  }
  for (const uint32_t id : fontIDs) {
    demands_[id].stored = state;
    if (demands_[id].IsEmpty()) demands_.erase(id);
  }
}

void Activations::DropClient(ClientID client, uint32_t fontID) {
  const auto found = demands_.find(fontID);
  if (found == demands_.end()) return;
  found->second.clients.erase(client);
  if (found->second.IsEmpty()) demands_.erase(found);
}

uint32_t Activations::CurrentID(uint32_t fontID) const {
  for (auto newer = renewed_.find(fontID); newer != renewed_.end(); newer = renewed_.find(fontID))
    fontID = newer->second;
  return fontID;
}

std::vector<uint32_t> Activations::Deactivate(ClientID client, const std::vector<uint32_t>& givenIDs, bool alsoUser) {
  std::vector<uint32_t> fontIDs;
  fontIDs.reserve(givenIDs.size());
  for (const uint32_t id : givenIDs) fontIDs.push_back(CurrentID(id));
  std::set<uint32_t> ending;  // stored activations that end
  for (const auto& [id, demand] : DemandsOf(fontIDs)) {
    if (demand.stored != kInactive && (alsoUser || demand.stored != kActivated)) ending.insert(id);
  }
  Store({ending.begin(), ending.end()}, kInactive);
  const ActiveFolder::Batch batch(parts_.folder);
  std::vector<uint32_t> notOurs;
  for (const uint32_t id : fontIDs) {
    const Font* font = parts_.table.Find(id);
    if (font && parts_.table.IsSystemActive(*font)) notOurs.push_back(id);
    DropClient(client, id);
    if (font) UnlinkIfUnasked(font->path);
  }
  return notOurs;
}

std::vector<uint32_t> Activations::HeldBy(ClientID client) const {
  std::vector<uint32_t> held;
  for (const auto& [id, demand] : demands_) {
    if (demand.clients.contains(client)) held.push_back(id);
  }
  return held;
}

void Activations::ReleaseClient(ClientID client) {
  const ActiveFolder::Batch batch(parts_.folder);
  for (const uint32_t id : HeldBy(client)) {
    DropClient(client, id);
    if (const Font* font = parts_.table.Find(id)) UnlinkIfUnasked(font->path);
  }
}

void Activations::ReleaseAllClients() {
  std::set<ClientID> clients;
  for (const auto& [id, demand] : demands_) {
    for (const auto& [client, state] : demand.clients) clients.insert(client);
  }
  for (const ClientID client : clients) ReleaseClient(client);
}

void Activations::KeepClient(ClientID client) {
  std::vector<uint32_t> staying;
  for (const uint32_t id : HeldBy(client)) {
    const Demand& demand = demands_[id];
    if (demand.clients.at(client) == kAutoActivated && demand.stored == kInactive) staying.push_back(id);
  }
  Store(staying, kAutoActivated);
  ReleaseClient(client);
}

AgentActivationState Activations::StateOf(const Font& font) const {
  if (parts_.table.IsSystemActive(font)) return font.workgroupID == kSystemFontsID ? kSystemActive : kActiveInPlace;
  if (linkedFiles_.contains(font.path)) return StateOfLinked(font);
  if (demands_.contains(font.id)) return kCannotBeActive;
  return refusedNames_.contains(font.face.postScriptName) ? kForbidden : kInactive;
}

AgentActivationState Activations::StateOfLinked(const Font& font) const {
  const auto own = demands_.find(font.id);
  if (own != demands_.end()) return own->second.Strongest();
  // This face was not requested, but its file is active for another one.
  AgentActivationState state = kInactive;
  for (const Font* face : parts_.table.OfFile(font.path)) {
    const auto found = demands_.find(face->id);
    if (found != demands_.end()) state = Stronger(state, found->second.Strongest());
  }
  switch (state) {
    case kActivated: return kActiveWithFile;
    case kPreviewActivated:
    case kTemporary: return kPreviewedWithFile;
    default: return state;  // for a document, which needs the whole file
  }
}

bool Activations::IsHeldForDocument(uint32_t fontID) const {
  const auto found = demands_.find(fontID);
  return found != demands_.end() && std::ranges::any_of(found->second.clients, [](const auto& client) {
           return client.second == kAutoActivated || client.second == agent_protocol::kAutoActivatedAgain;
         });
}

bool Activations::IsHeldBy(ClientID client, uint32_t fontID) const {
  const auto found = demands_.find(CurrentID(fontID));
  return found != demands_.end() && found->second.clients.contains(client);
}

void Activations::OnFileReplaced(const std::string& path) {
  const auto found = linkedFiles_.find(path);
  if (found == linkedFiles_.end()) return;
  const uint32_t linkID = found->second;
  const std::vector<const Font*> fonts = parts_.table.OfFile(path);
  const auto named = std::find_if(fonts.begin(), fonts.end(), [&](const Font* font) { return font->id == linkID; });
  const bool isRenewed = named == fonts.end() && !fonts.empty();
  // A hard link still refers to the old file.
  if (!LinkFile(path, isRenewed ? fonts.front()->id : linkID)) return UnlinkFile(path);
  if (!isRenewed) return;
  Unlink(linkID);
  if (announced_.erase(path) > 0) Announce(path);
}

void Activations::OnFontRenewed(uint32_t former, uint32_t id) {
  renewed_.erase(id);  // an older version may have come back
  renewed_[former] = id;
  const auto old = demands_.find(former);
  if (old == demands_.end()) return;
  const Demand moved = std::move(old->second);
  demands_.erase(old);
  Demand& demand = demands_[id];
  demand.stored = Stronger(demand.stored, moved.stored);
  for (const auto& [client, state] : moved.clients) {
    AgentActivationState& held = demand.clients[client];
    held = Stronger(held, state);
  }
}

void Activations::OnFontsGone(const std::string& path, const std::vector<Font>& fonts) {
  // The requests stay: if the file comes back, the next Reconcile links it again.
  for (const Font& font : fonts) {
    if (announced_.contains(path)) events_.deactivated(font.id);
  }
  UnlinkIfUnasked(path);
}

}  // namespace agent
