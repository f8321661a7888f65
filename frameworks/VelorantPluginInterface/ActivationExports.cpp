// Making fonts active and giving them back.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;

namespace {

constexpr uint32_t kOrdinaryActivation = 1;
constexpr uint32_t kDesignActivation = 3;

// What a call activated is remembered even if it failed as a whole.
void Remember(const CallResult& reply, HoldKind kind) {
  if (reply.result.contains("activated")) ProcessFonts().Add(NumbersOfJson(reply.result["activated"]), kind);
}

}  // namespace

TModuleErrorCode ActivateFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t, uint32_t kind,
                               uint32_t, uint32_t, uint32_t failedCapacity, uint32_t refusedCapacity,
                               uint32_t* failedIDs, uint32_t* refusedIDs, uint32_t* failedCount,
                               uint32_t* refusedCount) {
  if ((count > 0 && !fontIDs) || !failedCount || !refusedCount) return kNullPointer;
  *failedCount = *refusedCount = 0;
  return Guarded([&] {
    const CallResult reply = CallAgent(h, "ActivateFonts", {{"fontIDs", Numbers(count, fontIDs)}, {"kind", kind}});
    if (reply.code != kSuccess) return reply.code;
    if (kind == kOrdinaryActivation) Remember(reply, HoldKind::kDocument);
    if (kind == kDesignActivation) Remember(reply, HoldKind::kPreview);
    *failedCount = WriteNumbers(reply.result.at("failed"), failedIDs, failedCapacity);
    *refusedCount = WriteNumbers(reply.result.at("refused"), refusedIDs, refusedCapacity);
    return kSuccess;
  });
}

TModuleErrorCode PreviewActivateFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t) {
  if (count > 0 && !fontIDs) return kNullPointer;
  return Guarded([&] {
    const CallResult reply = CallAgent(h, "PreviewActivateFonts", {{"fontIDs", Numbers(count, fontIDs)}});
    Remember(reply, HoldKind::kPreview);
    // Some fonts can fail while the others are active. The caller has no list to learn which, so it asks for their states.
    const bool areSomeActive = reply.result.contains("activated") && !reply.result["activated"].empty();
    return areSomeActive ? kSuccess : reply.code;
  });
}

TModuleErrorCode DeactivateFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t) {
  if (count > 0 && !fontIDs) return kNullPointer;
  return Guarded([&] {
    const CallResult reply =
        CallAgent(h, "DeactivateFonts", {{"fontIDs", Numbers(count, fontIDs)}, {"alsoUser", false}});
    // With fonts of the system's among them the call fails, and the others are given back all the same.
    if (!IsAgentGone(reply.code)) ProcessFonts().Remove({fontIDs, fontIDs + count});
    return reply.code;
  });
}

TModuleErrorCode GetFontIsActivated(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t* outFlags) {
  if (count > 0 && (!fontIDs || !outFlags)) return kNullPointer;
  return Guarded([&] {
    const CallResult reply = CallAgent(h, "GetFontIsActivated", {{"fontIDs", Numbers(count, fontIDs)}});
    return WriteAnswers(reply, "flags", count, outFlags);
  });
}

TModuleErrorCode GetClientFontActivationStates(uint32_t count, const uint32_t* fontIDs, uint32_t* outFlags) {
  if (count > 0 && (!fontIDs || !outFlags)) return kNullPointer;
  return Guarded([&] {
    const CallResult reply =
        CurrentFacade()->Call("GetClientFontActivationStates", {{"fontIDs", Numbers(count, fontIDs)}});
    return WriteAnswers(reply, "flags", count, outFlags);
  });
}

TModuleErrorCode GetFontConflicts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs,
                                  uint32_t* outConflictingIDs) {
  if (count > 0 && (!fontIDs || !outConflictingIDs)) return kNullPointer;
  return Guarded([&] {
    const CallResult reply = CallAgent(h, "GetFontConflicts", {{"fontIDs", Numbers(count, fontIDs)}});
    return WriteAnswers(reply, "conflicts", count, outConflictingIDs);
  });
}
