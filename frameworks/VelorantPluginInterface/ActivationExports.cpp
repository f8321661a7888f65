// Activating and deactivating fonts.
#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/AgentRestart.h"
#include "frameworks/VelorantPluginInterface/Exports.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;

namespace {

void Remember(const calls::Activated& result, HoldKind kind) { ProcessFonts().Add(result.activated, kind); }

}  // namespace

TModuleErrorCode ActivateFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t, uint32_t kind,
                               uint32_t, uint32_t, uint32_t failedCapacity, uint32_t refusedCapacity,
                               uint32_t* failedIDs, uint32_t* refusedIDs, uint32_t* failedCount,
                               uint32_t* refusedCount) {
  if ((count > 0 && !fontIDs) || !failedCount || !refusedCount) return kNullPointer;
  *failedCount = *refusedCount = 0;
  return Guarded([&] {
    const auto reply = CallAgent<calls::ActivateFonts>(h, {NumbersOf(count, fontIDs), kind});
    if (reply.code != kSuccess) return reply.code;
    if (kind == kAutoActivated) Remember(reply.result, HoldKind::kDocument);
    if (kind == kPreviewActivated) Remember(reply.result, HoldKind::kDesign);
    *failedCount = WriteNumbers(reply.result.failed, failedIDs, failedCapacity);
    *refusedCount = WriteNumbers(reply.result.refused, refusedIDs, refusedCapacity);
    return kSuccess;
  });
}

TModuleErrorCode PreviewActivateFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t) {
  if (count > 0 && !fontIDs) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::PreviewActivateFonts>(h, {NumbersOf(count, fontIDs)});
    Remember(reply.result, HoldKind::kTemporary);
    // Some fonts may have failed while others are active. The caller gets no list, so it asks for their states.
    return reply.result.activated.empty() ? reply.code : kSuccess;
  });
}

TModuleErrorCode DeactivateFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t) {
  if (count > 0 && !fontIDs) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::DeactivateFonts>(h, {NumbersOf(count, fontIDs), /*alsoUser=*/false});
    // If system fonts are among them, the call fails but the others are deactivated.
    if (!IsAgentGone(reply.code)) ProcessFonts().Remove({fontIDs, fontIDs + count});
    return reply.code;
  });
}

TModuleErrorCode GetFontIsActivated(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t* outFlags) {
  if (count > 0 && (!fontIDs || !outFlags)) return kNullPointer;
  return Guarded([&] {
    const Numbers ids = NumbersOf(count, fontIDs);
    if (const auto recent = IsConnected(h) ? RecentFonts::Shared().FlagsOf(ids) : std::nullopt) {
      return WriteAnswers(*recent, count, outFlags);
    }
    const auto reply = AskAgent<calls::GetFontIsActivated>(h, {ids});
    return reply.code == kSuccess ? WriteAnswers(reply.result.flags, count, outFlags) : reply.code;
  });
}

TModuleErrorCode GetClientFontActivationStates(uint32_t count, const uint32_t* fontIDs, uint32_t* outFlags) {
  if (count > 0 && (!fontIDs || !outFlags)) return kNullPointer;
  return Guarded([&] {
    const auto reply = CurrentFacade()->Call<calls::GetClientFontActivationStates>({NumbersOf(count, fontIDs)});
    return reply.code == kSuccess ? WriteAnswers(reply.result.flags, count, outFlags) : reply.code;
  });
}

TModuleErrorCode GetFontConflicts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs,
                                  uint32_t* outConflictingIDs) {
  if (count > 0 && (!fontIDs || !outConflictingIDs)) return kNullPointer;
  return Guarded([&] {
    const auto reply = AskAgent<calls::GetFontConflicts>(h, {NumbersOf(count, fontIDs)});
    return reply.code == kSuccess ? WriteAnswers(reply.result.conflicts, count, outConflictingIDs) : reply.code;
  });
}
