#include "agent/Calls.h"

namespace agent {

using agent_protocol::AgentActivationState;
using agent_protocol::kActivated;
using agent_protocol::kAutoActivated;
using agent_protocol::kAutoActivatedAgain;
using agent_protocol::kPreviewActivated;

namespace {

Reply Activate(FontLibrary& library, ClientID client, const Arguments& arguments, AgentActivationState state) {
  library.FreshenSystemFonts(true);
  const ActivationOutcome outcome = library.Active().Activate(client, arguments.Numbers("fontIDs"), state);
  return {kSuccess, {{"activated", outcome.activated}, {"failed", outcome.failed}, {"refused", outcome.refused}}};
}

Reply ActivateFonts(FontLibrary& library, ClientID client, const Arguments& arguments) {
  const auto state = static_cast<AgentActivationState>(arguments.Number("kind"));
  if (state != kAutoActivated && state != kPreviewActivated && state != kActivated) return {kInvalidParam};
  return Activate(library, client, arguments, state);
}

// Preview activation has no lists in its result: whatever could not be activated makes the call fail.
Reply PreviewActivateFonts(FontLibrary& library, ClientID client, const Arguments& arguments) {
  Reply reply = Activate(library, client, arguments, kPreviewActivated);
  if (!reply.result["failed"].empty() || !reply.result["refused"].empty()) reply.code = kNotSupported;
  return reply;
}

Reply RestoreActivations(FontLibrary& library, ClientID client, const Arguments& arguments) {
  return Activate(library, client, arguments, kAutoActivatedAgain);
}

Reply DeactivateFonts(FontLibrary& library, ClientID client, const Arguments& arguments) {
  library.FreshenSystemFonts(false);
  const auto notOurs = library.Active().Deactivate(client, arguments.Numbers("fontIDs"), arguments.Flag("alsoUser"));
  return {notOurs.empty() ? kSuccess : kCantDeactivateSystemFonts, {{"failed", notOurs}}};
}

Reply GetClientStates(FontLibrary& library, ClientID client, const Arguments& arguments) {
  Json flags = Json::array();
  for (const uint32_t id : arguments.Numbers("fontIDs")) {
    flags.push_back(library.Active().IsHeldBy(client, id) ? 1 : 0);
  }
  return {kSuccess, {{"flags", flags}}};
}

Reply GetFontConflicts(FontLibrary& library, ClientID, const Arguments& arguments) {
  library.FreshenSystemFonts(true);
  Json conflicts = Json::array();
  for (const uint32_t id : arguments.Numbers("fontIDs")) {
    const Font* font = library.Table().Find(id);
    conflicts.push_back(font ? library.Active().ConflictOf(*font) : 0);
  }
  return {kSuccess, {{"conflicts", conflicts}}};
}

}  // namespace

void AddActivationCalls(Dispatcher& dispatcher, FontLibrary& library) {
  const auto add = [&](const char* call, auto function) {
    dispatcher.Add(call, Needs::kFonts, [&library, function](ClientID client, const Arguments& arguments) {
      return function(library, client, arguments);
    });
  };
  add("ActivateFonts", ActivateFonts);
  add("PreviewActivateFonts", PreviewActivateFonts);
  add("RestoreActivations", RestoreActivations);
  add("DeactivateFonts", DeactivateFonts);
  add("GetClientFontActivationStates", GetClientStates);
  add("GetFontConflicts", GetFontConflicts);
  dispatcher.Add("KeepActivations", Needs::kFonts, [&](ClientID client, const Arguments&) {
    library.Active().KeepClient(client);
    return Reply();
  });
}

}  // namespace agent
