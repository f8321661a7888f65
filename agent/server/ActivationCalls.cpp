// Calls that activate and deactivate fonts.
#include <map>
#include <set>

#include "agent/server/Calls.h"

namespace agent {

namespace {

calls::Activated Activate(FontLibrary& library, ClientID client, const Numbers& fontIDs, AgentActivationState state) {
  library.FreshenSystemFonts(true);
  // After a restart of the agent a client requests what it holds, and may not know that a font has a new version.
  std::map<uint32_t, std::set<uint32_t>> given;
  Numbers current;
  for (const uint32_t id : fontIDs) given[current.emplace_back(library.Active().CurrentID(id))].insert(id);
  const ActivationOutcome outcome = library.Active().Activate(client, current, state);
  const auto asGiven = [&given](const Numbers& ids) {
    Numbers all;
    for (const uint32_t id : ids) all.insert(all.end(), given.at(id).begin(), given.at(id).end());
    return all;
  };
  return {asGiven(outcome.activated), asGiven(outcome.failed), asGiven(outcome.refused)};
}

}  // namespace

Answer<calls::ActivateFonts> Serve(FontLibrary& library, ClientID client,
                                   const calls::ActivateFonts::Arguments& arguments) {
  const auto state = static_cast<AgentActivationState>(arguments.kind);
  if (state != kAutoActivated && state != kPreviewActivated && state != kActivated) return kInvalidParam;
  calls::Activated result = Activate(library, client, arguments.fontIDs, state);
  if (state == kPreviewActivated) {
    for (const uint32_t id : result.refused) library.NoteDesignRefused(client, id);
  }
  return result;
}

// The library's callers get no lists, so the call fails if any font failed.
Answer<calls::PreviewActivateFonts> Serve(FontLibrary& library, ClientID client,
                                          const calls::PreviewActivateFonts::Arguments& arguments) {
  calls::Activated result = Activate(library, client, arguments.fontIDs, kTemporary);
  const bool areAllActive = result.failed.empty() && result.refused.empty();
  return {areAllActive ? kSuccess : kNotSupported, std::move(result)};
}

Answer<calls::RestoreActivations> Serve(FontLibrary& library, ClientID client,
                                        const calls::RestoreActivations::Arguments& arguments) {
  return Activate(library, client, arguments.fontIDs, kAutoActivatedAgain);
}

Answer<calls::DeactivateFonts> Serve(FontLibrary& library, ClientID client,
                                     const calls::DeactivateFonts::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  Numbers notOurs = library.Active().Deactivate(client, arguments.fontIDs, arguments.alsoUser);
  return {notOurs.empty() ? kSuccess : kCantDeactivateSystemFonts, {std::move(notOurs)}};
}

Answer<calls::GetClientFontActivationStates> Serve(FontLibrary& library, ClientID client,
                                                   const calls::GetClientFontActivationStates::Arguments& arguments) {
  calls::Flags result;
  for (const uint32_t id : arguments.fontIDs) result.flags.push_back(library.Active().IsHeldBy(client, id) ? 1 : 0);
  return result;
}

Answer<calls::GetFontConflicts> Serve(FontLibrary& library, ClientID,
                                      const calls::GetFontConflicts::Arguments& arguments) {
  library.FreshenSystemFonts(true);
  calls::GetFontConflicts::Result result;
  for (const uint32_t id : arguments.fontIDs) {
    const Font* font = library.Table().Find(id);
    result.conflicts.push_back(font ? library.Active().ConflictOf(*font) : 0);
  }
  return result;
}

Answer<calls::KeepActivations> Serve(FontLibrary& library, ClientID client, const calls::KeepActivations::Arguments&) {
  library.Active().KeepClient(client);
  return calls::Nothing();
}

}  // namespace agent
