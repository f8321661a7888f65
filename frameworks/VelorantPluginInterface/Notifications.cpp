#include "frameworks/VelorantPluginInterface/Notifications.h"

#include <algorithm>
#include <mutex>
#include <span>
#include <vector>

#include "frameworks/VelorantPluginInterface/RecentFonts.h"
#include "frameworks/VelorantPluginInterface/Values.h"
#include "platform/Base64.h"

namespace plugin_interface {

namespace {

struct Registrations {
  std::recursive_mutex mutex;  // held while callbacks run; one of them may remove itself
  std::vector<PluginInterface::NotificationCallback> callbacks;
};

// Leaked on purpose: a reader thread may still run when the process ends.
Registrations& Registered() {
  static auto* registrations = new Registrations;
  return *registrations;
}

using PluginInterface::EventPayload;

EventPayload PayloadOf(PluginInterface::ECallbackKind kind) {
  switch (kind) {
#define PAYLOAD(number, name, payload) \
  case PluginInterface::k##name: return EventPayload::k##payload;  // NOLINT(bugprone-branch-clone): a row of the table
    AGENT_EVENTS(PAYLOAD)
#undef PAYLOAD
  }
  return EventPayload::kNothing;  // an event of a newer agent
}

bool IsNumber(const nlohmann::json& json) { return json.is_number_unsigned() && json.get<uint64_t>() <= UINT32_MAX; }

// Like ValueOfJson, but the bytes of the pictures, which the agent sends as Base64, become data.
platform::Value PicturesOfJson(const nlohmann::json& json) {
  if (!json.is_object()) return platform::Value();
  platform::Dictionary fonts = platform::Dictionary::Create();
  for (const auto& [id, pictures] : json.items()) {
    platform::Value value = ValueOfJson(pictures);
    const auto text = pictures.is_object() ? pictures.find("pngBytes") : pictures.end();
    if (text != pictures.end() && text->is_string()) {
      const auto bytes = platform::DecodeBase64(text->get_ref<const std::string&>());
      if (!bytes) continue;
      platform::Dictionary(value).Set("pngBytes", platform::Data::From(std::as_bytes(std::span(*bytes))));
    }
    fonts.Set(id, value);
  }
  return fonts;
}

}  // namespace

void AddCallback(PluginInterface::NotificationCallback callback) {
  Registrations& registered = Registered();
  const std::lock_guard lock(registered.mutex);
  auto& callbacks = registered.callbacks;
  if (std::find(callbacks.begin(), callbacks.end(), callback) == callbacks.end()) callbacks.push_back(callback);
}

void RemoveCallback(PluginInterface::NotificationCallback callback) {
  Registrations& registered = Registered();
  const std::lock_guard lock(registered.mutex);
  std::erase(registered.callbacks, callback);
}

void Deliver(const nlohmann::json& message) {
  const auto found = message.find("notify");
  if (found == message.end() || !IsNumber(*found)) return;
  RecentFonts::Shared().Forget();
  const auto kind = static_cast<PluginInterface::ECallbackKind>(found->get<uint32_t>());
  const EventPayload payload = PayloadOf(kind);
  const auto content = message.find(payload == EventPayload::kFontID ? "fontID" : "payload");
  uint32_t number = 0;
  platform::Value value;
  void* data = nullptr;
  if (payload != EventPayload::kNothing && content != message.end()) {
    if (payload == EventPayload::kDictionary) {
      value = kind == PluginInterface::kPreviewPNGsRendered ? PicturesOfJson(*content) : ValueOfJson(*content);
      if (!value.Is(platform::ValueType::kDictionary)) return;
      data = value.Ref();
    } else {
      if (!IsNumber(*content) && !(payload == EventPayload::kFlag && content->is_boolean())) return;
      number = content->get<uint32_t>();
      data = &number;
    }
  }
  Registrations& registered = Registered();
  const std::lock_guard lock(registered.mutex);
  const auto callbacks = registered.callbacks;
  for (const auto callback : callbacks) callback(kind, data);
}

}  // namespace plugin_interface
