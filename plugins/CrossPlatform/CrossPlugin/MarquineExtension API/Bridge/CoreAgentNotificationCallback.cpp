// Packs the agent's notifications on the thread on which they arrive, and queues them for the main thread.
#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentNotifications.h"
#include "Bridge/NotificationKeys.h"
#include "Services/DiagnosticLog.h"

using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::Value;

namespace {

using PluginInterface::EventPayload;

struct Kind {
  PluginInterface::ECallbackKind kind;
  std::string_view key;
  EventPayload payload;
};

constexpr Kind kKinds[] = {
#define KIND(number, name, payload) {PluginInterface::k##name, kPluginNotification_##name, EventPayload::k##payload},
    AGENT_EVENTS(KIND)
#undef KIND
};

void CopyAllPairs(platform::ValueRef from, Dictionary& to) {
  const Dictionary source(Value::Retain(from));
  for (size_t i = 0; i < source.Count(); ++i) to.Set(source.KeyAt(i), source.ValueAt(i));
}

// Most payloads are stored beside the event's key, a flag under it. The flag of web fonts and the previews have keys of
// their own.
void PackPayload(const Kind& kind, void* data, Dictionary& out) {
  switch (kind.payload) {
    case EventPayload::kNothing: break;
    case EventPayload::kFlag: {
      const bool hasOwnKey = kind.kind == PluginInterface::kGoogleWebFontsEnabled;
      out.Set(hasOwnKey ? kPluginNotification_Enabled : kind.key, Boolean::From(*static_cast<int32_t*>(data) != 0));
      break;
    }
    case EventPayload::kFontID:
      out.Set(kPluginNotification_FontActivation_Font_ID, Number::FromInteger(*static_cast<int32_t*>(data)));
      break;
    case EventPayload::kDictionary:
      if (kind.kind == PluginInterface::kPreviewPNGsRendered) {
        out.Set(kPluginNotification_FontPNGs, Value::Retain(static_cast<platform::ValueRef>(data)));
      } else {
        CopyAllPairs(static_cast<platform::ValueRef>(data), out);
      }
      break;
  }
}

void Pack(const Kind& kind, void* data, Dictionary& out) {
  out.Set(kind.key, Boolean::From(true));
  if (data) PackPayload(kind, data, out);
}

}  // namespace

TModuleErrorCode CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data) {
  auto* agent = dynamic_cast<CoreAgentInterface*>(FontManagerInterface::sm_pFontManager.get());
  if (!agent) {
    OutputIndentedAndFormattedString(0, "WARNING:  CoreAgentInterface::GetFontManager() returned NULL.");
    return CoreErrorCodes::kUnknownError;
  }
  for (const Kind& row : kKinds) {
    if (row.kind != kind) continue;
    auto notification = std::make_unique<CoreAgentPluginNotification>(agent);
    Pack(row, data, notification->GetDictionary());
    agent->EnqueueNotification(std::move(notification));
    break;
  }
  return CoreErrorCodes::kUnknownError;
}
