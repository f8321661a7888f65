// The boxes with a choice of workgroups: the command box and the chooser.
#include "frameworks/VelorantPlugins/Boxes.h"
#include "frameworks/VelorantPlugins/Exports.h"
#include "frameworks/VelorantPlugins/HostDetails.h"
#include "frameworks/VelorantPlugins/Texts.h"
#include "platform/Presenter.h"

using platform::Array;
using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::Value;

namespace {

struct CommandButton {
  const char* text;
  VPFCommand command;
  bool needsDocument;
};

// In the order of the box's buttons.
constexpr CommandButton kCommandButtons[] = {
    {"Check Document Fonts", kVPFCommandCheckDocumentFonts, true},
    {"Make Document Set", kVPFCommandMakeDocumentSet, true},
    {"Collect for Output", kVPFCommandCollectForOutput, true},
    {"Preferences", kVPFCommandPreferences, false},
    {"About", kVPFCommandAbout, false},
    {"Cancel", kVPFCommandCancelled, false},
};

// The number of open boxes with a choice of workgroups.
int sShown = 0;

class Shown {
 public:
  Shown() { ++sShown; }
  ~Shown() { --sShown; }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;
};

// Converts each workgroup to "Name", "ID" and "IsLocalPersonal".
Array ChoicesOf(const Array& workgroups) {
  Array choices = Array::Create();
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const Dictionary workgroup(workgroups.At(i));
    if (!workgroup.GetString("WorkgroupName")) continue;
    Dictionary choice = Dictionary::Create();
    choice.Set("Name", Value(workgroup.GetString("WorkgroupName")));
    choice.Set("ID", Number::FromInteger(boxes::NumberOf(workgroup, "WorkgroupID", 0)));
    choice.Set("IsLocalPersonal", Boolean::From(boxes::FlagOf(workgroup, "IsLocalPersonal", false)));
    choices.Append(choice);
  }
  return choices;
}

// Returns the ID that the answer chose if the box offered it, and `otherwise` if not.
int32_t ChosenWorkgroup(const Dictionary& box, const Dictionary& answer, int32_t otherwise) {
  const Number choice(answer.Get("Choice"));
  const Array choices = box.GetArray("Workgroups");
  for (size_t i = 0; choice && i < choices.Count(); ++i) {
    const int64_t id = Dictionary(choices.At(i)).GetInteger("ID");
    if (id == choice.Integer()) return static_cast<int32_t>(id);
  }
  return otherwise;
}

Dictionary MakeCommandBox(const Dictionary& given) {
  Dictionary box =
      boxes::MakeBox("command", "[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]", nullptr, {});
  const bool isOnline = boxes::FlagOf(given, "IsOnline", HostDetails::Shared().isOnline);
  const bool hasDocument = boxes::FlagOf(given, "ButtonsEnabled", false);
  box.Set("Message", texts::Localized(isOnline ? "WorkingOnline" : "WorkingOffline"));
  Array buttons = Array::Create(), enabled = Array::Create();
  for (const CommandButton& button : kCommandButtons) {
    buttons.Append(platform::String::FromUTF8(texts::Localized(button.text)));
    enabled.Append(Boolean::From(!button.needsDocument || hasDocument));
  }
  box.Set("Buttons", buttons);
  box.Set("ButtonsEnabled", enabled);
  box.Set("Workgroups", ChoicesOf(given.GetArray("Workgroups")));
  box.Set("CurrentWorkgroupID", Number::FromInteger(given.GetInteger("CurrentWorkgroupID")));
  return box;
}

}  // namespace

int32_t VPFShowSelectWorkgroup(platform::ValueRef workgroups) {
  constexpr int32_t kNoWorkgroup = 0;
  Dictionary box = boxes::MakeBox("workgroup", "SelectWorkgroupHeader", "SelectWorkgroupMessage", {"OK", "Cancel"});
  box.Set("Workgroups", ChoicesOf(Array(Value::Retain(workgroups))));
  const Shown shown;
  const Dictionary answer = platform::RunBox(box);
  return boxes::ButtonOf(box, answer) == 1 ? ChosenWorkgroup(box, answer, kNoWorkgroup) : kNoWorkgroup;
}

int32_t VPFShowCommandBox(platform::ValueRef given, int32_t* workgroupID) {
  const Dictionary described(Value::Retain(given));
  const Dictionary box = MakeCommandBox(described);
  const Shown shown;
  const Dictionary answer = platform::RunBox(box);
  const int32_t button = boxes::ButtonOf(box, answer);
  if (button == boxes::kClosed) return kVPFCommandCancelled;
  const size_t index = static_cast<size_t>(button) - 1;
  const bool isEnabled = Boolean(box.GetArray("ButtonsEnabled").At(index)).IsTrue();
  const VPFCommand command = isEnabled ? kCommandButtons[index].command : kVPFCommandCancelled;
  if (command != kVPFCommandCancelled && workgroupID) *workgroupID = ChosenWorkgroup(box, answer, *workgroupID);
  return command;
}

void VPFForceSelectWorkgroupWindowToFront() {
  if (sShown > 0) platform::BringBoxToFront();
}
