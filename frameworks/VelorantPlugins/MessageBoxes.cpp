// Boxes that show or ask one thing.

#include "frameworks/VelorantPlugins/Boxes.h"
#include "frameworks/VelorantPlugins/Exports.h"
#include "frameworks/VelorantPlugins/HostDetails.h"
#include "frameworks/VelorantPlugins/Texts.h"
#include "platform/Presenter.h"

using platform::Array;
using platform::Dictionary;
using platform::String;
using platform::Value;

namespace {

constexpr int32_t kTwoButtons = 2;  // the button set; every other number means one button

struct ButtonPair {
  std::string_view messageKey;
  const char* first;
  const char* second;
};

// The texts of the two buttons; "OK" and "Cancel" for all other messages.
constexpr ButtonPair kButtonPairs[] = {
    {"NotLoggedInOfferLoginMessage", "Log In", "Cancel"},
    {"LoggedOffOfferLoginMessage", "Log In", "Cancel"},
    {"MPCoreAgentMissingMessage", "Try Again", "Cancel"},
    {"HBCoreAgentMissingMessage", "Try Again", "Cancel"},
    {"SomeFontsOfflineMessage", "Go Online", "Stay Offline"},
    // The fonts are collected whatever the answer is, so the buttons must not promise anything else.
    {"MissingFontsExportMessage", "OK", "Close"},
    {"MissingFontsOfflineExportMessage", "OK", "Close"},
};

ButtonPair ButtonsOf(std::string_view messageKey) {
  for (const ButtonPair& pair : kButtonPairs) {
    if (pair.messageKey == messageKey) return pair;
  }
  return {messageKey, "OK", "Cancel"};
}

// Shows fonts with a text above them.
void ShowFonts(const char* kind, const char* headerKey, const char* messageKey, const Array& fonts) {
  Dictionary box = boxes::MakeBox(kind, headerKey, messageKey, {"OK"});
  box.Set("Fonts", boxes::DescribeFonts(fonts));
  platform::RunBox(box);
}

}  // namespace

int32_t VPFShowMessageBox(const char* header, const char* message, int32_t buttonSet) {
  const ButtonPair buttons = ButtonsOf(message ? message : "");
  Dictionary box = buttonSet == kTwoButtons
                       ? boxes::MakeBox("message", header, message, {buttons.first, buttons.second})
                       : boxes::MakeBox("message", header, message, {"OK"});
  if (message) box.Set("Key", message);
  const int32_t button = boxes::ButtonOf(box, platform::RunBox(box));
  // Closing the box counts as its last button.
  return button == boxes::kClosed ? static_cast<int32_t>(box.GetArray("Buttons").Count()) : button;
}

int32_t VPFAskForOneString(const char* prompt, const char* label, const char* initial, platform::ValueRef* outText) {
  if (!outText) return 0;
  *outText = nullptr;
  Dictionary box = boxes::MakeBox("text", prompt, label, {"OK", "Cancel"});
  if (initial) box.Set("Default", initial);
  const Dictionary answer = platform::RunBox(box);
  if (boxes::ButtonOf(box, answer) != 1) return 0;
  // If the user confirmed without typing, use the default.
  String text = answer.GetString("Text");
  if (!text) text = box.GetString("Default");
  if (!text) text = String::FromUTF8("");
  *outText = text.Release();
  return 1;
}

void VPFShowAboutBox() {
  const HostDetails& details = HostDetails::Shared();
  std::string message;
  if (!details.pluginVersion.empty()) message = texts::Formatted("AboutPluginVersion", details.pluginVersion);
  if (!details.interfaceVersion.empty()) {
    if (!message.empty()) message += "\n";
    message += texts::Formatted("AboutInterfaceVersion", details.interfaceVersion);
  }
  Dictionary box =
      boxes::MakeBox("about", "[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]", nullptr, {"OK"});
  box.Set("Message", message);
  platform::RunBox(box);
}

void VPFShowRestrictedFonts(platform::ValueRef fonts) {
  const Array shown(Value::Retain(fonts));
  if (shown.Count() == 0) return;
  ShowFonts("restricted", "RestrictedFontsHeader", "RestrictedFontsMessage", shown);
}

void VPFShowMissingFonts(platform::ValueRef box) {
  const Array shown = Dictionary(Value::Retain(box)).GetArray("Fonts");
  if (shown.Count() == 0) return;
  ShowFonts("missing", "MissingFontsHeader", "MissingFontsMessage", shown);
}
