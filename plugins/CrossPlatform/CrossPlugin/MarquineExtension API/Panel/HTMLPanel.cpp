#include "Panel/HTMLPanel.h"

#include <algorithm>

#include "Bridge/NotificationKeys.h"
#include "GJSONUtils.h"
#include "GSystem.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"
#include "frameworks/PlugPlug/include/PanelEvents.h"

using namespace panel_keys;
using platform::Dictionary;

namespace {

// The service's listener for messages of the panel in `context`. A bad message is only logged.
void EventCallback(const csxs::event::Event* event, void* context) {
  if (!context) return;
  const std::string message = event->data ? event->data : "";
  static_cast<HTMLPanel*>(context)->CallMethodForMessage(message);
}

// Empty without a path. Panels read the path as it is, so it is not percent-encoded.
std::string FileURL(const Dictionary& value, std::string_view key) {
  const platform::String path = value.GetString(key);
  if (!path) return "";
  std::string text = path.Text();
  if (GSystem::IsWindows()) std::replace(text.begin(), text.end(), '/', '\\');
  return "file://" + text;
}

void HTMLPanelSendFontImage(std::string_view key, const Dictionary& value, HTMLPanel* panel) {
  if (!panel) return;
  panel->AddFontURL(static_cast<unsigned int>(FontIDOf(key)), FileURL(value, PluginInterface::kPngFilenameKey),
                    FileURL(value, PluginInterface::k2xPNGFilenameKey));
}

}  // namespace

HTMLPanel::~HTMLPanel() {
  if (mIsRegistered) mPlugPlug->RemoveEventListener(panel_events::kPanelToPlugin, EventCallback, this);
}

TModuleErrorCode HTMLPanel::RegisterHandler() {
  RETURN_IF_AT(kPanelLogIdentifier, GLogger::kDebug,
               mPlugPlug->AddEventListener("com.velorant.PanelToPlugin", EventCallback, this) !=
                   csxs::event::kEventErrorCode_Success,
               CoreErrorCodes::kNotInitialized);
  mIsRegistered = true;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode HTMLPanel::SendMessage(const std::string& text) {
  RETURN_IF(kPanelLogIdentifier, (mPlugPlug) == nullptr, CoreErrorCodes::kNullPointer);
  const csxs::event::Event event{panel_events::kPluginToPanel, panel_events::kApplicationScope,
                                 panel_events::kPanelApplication, nullptr, text.c_str()};
  mPlugPlug->DispatchEvent(&event);
  return CoreErrorCodes::kSuccess;
}

void HTMLPanel::AddFontURL(unsigned int fontID, const std::string& url, const std::string& url2x) {
  mFontURLs.push_back({fontID, url, url2x});
}

TModuleErrorCode HTMLPanel::SendFontImages(const Dictionary& fontPNGs) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue, jsonArray;
  std::string responseMessage;
  mFontURLs.clear();
  PANEL_CHECK(GJSONUtils::SetValueForKey(kGetFontPNG, kMessageIDKey, root, jsonValue));
  for (size_t i = 0; i < fontPNGs.Count(); ++i) {
    HTMLPanelSendFontImage(fontPNGs.KeyAt(i), Dictionary(fontPNGs.ValueAt(i)), this);
  }
  PANEL_CHECK(GJSONUtils::AddArrayForKey(kFontsKey, root, jsonArray));
  for (auto it = mFontURLs.begin(); it != mFontURLs.end(); ++it) {
    Node fontURLMap;
    PANEL_CHECK(GJSONUtils::AddMapToArray(jsonArray, fontURLMap));
    PANEL_CHECK(GJSONUtils::SetValueForKey((*it).fontID, kFontIDKey, fontURLMap, jsonValue));
    PANEL_CHECK(GJSONUtils::SetValueForKey((*it).url, kPNGFilenameKey, fontURLMap, jsonValue));
    PANEL_CHECK(GJSONUtils::SetValueForKey((*it).url2x, k2xPNGFilenameKey, fontURLMap, jsonValue));
  }
  PANEL_CHECK(GetMessageFromJSONValue(root, responseMessage));
  PANEL_CHECK(SendMessage(responseMessage));
  return CoreErrorCodes::kSuccess;
}
