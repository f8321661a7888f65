// The workgroup logic of FontManagerInterface, and its default answers.
#include "Bridge/FontManagerInterface.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/Fonts.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

OwnedPointer<FontManagerInterface> FontManagerInterface::sm_pFontManager;
GMutex FontManagerInterface::sm_Mutex;
bool FontManagerInterface::sValidWorkgroupSelected = false;
bool FontManagerInterface::sSelectWorkgroupInProgress = false;

FontManagerInterface::~FontManagerInterface() = default;

void FontManagerInterface::ResetForTesting() {
  sm_pFontManager.reset();
  sValidWorkgroupSelected = false;
  sSelectWorkgroupInProgress = false;
}

FontManagerInterface::ActivationStates FontManagerInterface::GetClientFontActivationStates(const FontIDs& ids) {
  ActivationStates states;
  for (const uint32_t id : ids) {
    if (id != 0) states[id] = true;
  }
  return states;
}

int FontManagerInterface::ActivateFontByName(const std::string&, long, const std::string&, unsigned long* outFontID) {
  if (outFontID) *outFontID = 0;
  return -1;
}

int FontManagerInterface::CountNamedFonts(const std::string&, TypeOfFontName, long, long* outCount, std::string&) {
  if (outCount) *outCount = 0;
  return -1;
}

std::string FontManagerInterface::GetStringFromDictionary(const Dictionary& dictionary, std::string_view key) {
  return dictionary.GetString(key).Text();
}

FontManagerInterface* FontManagerInterface::ConnectedManager() {
  FontManagerInterface* manager = sm_pFontManager.get();
  return manager && manager->IsFontManagerConnected() ? manager : nullptr;
}

bool FontManagerInterface::AutoActivationIsReady() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || !ui->IsValid() || !ui->GetEnabledAutoActivationPref()) return false;
  if (!MarquineGlobals::ArePluginServicesEnabled() || !sm_pFontManager) return false;
  return sm_pFontManager->IsLoggedIn();
}

bool FontManagerInterface::IsFontActive(const std::string& name) {
  unsigned char pascalName[256];
  bool isActive = false;
  if (CopyUTF8CStringToMacRomanPascalString(pascalName, sizeof pascalName, name.c_str())) {
    isActive = IsFontActive(pascalName);
  }
  OutputIndentedAndFormattedString(0, isActive ? "Found active match for %s." : "No active match for %s.",
                                   name.c_str());
  return isActive;
}

bool FontManagerInterface::IsFontActive(const unsigned char* pascalName) {
  // Read as UTF-8, although the other form writes MacRoman. So a name beyond ASCII counts as inactive and is requested
  // from the agent.
  const String name = String::FromUTF8(STLStringFromPlatformString(pascalName));
  return name && platform::IsPostScriptNameActive(name.Text());
}

bool FontManagerInterface::IsValidWorkgroupForUser(int id) {
  if (id == 0) return false;
  if (IsAllWorkgroups(id)) return CanActivateFromAllWorkgroups();
  const String name = GetWorkgroupNameFromID(id);
  Array workgroups;
  if (!name || GetAllWorkgroupsForUser(&workgroups, false, false, false) != 0) return false;
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const String held = Dictionary(workgroups.At(i)).GetString(kGS_WorkgroupNameKey);
    if (held && held.View() == name.View()) return true;
  }
  return false;
}

bool FontManagerInterface::UserHasAtLeastOneWorkgroup() {
  Array workgroups;
  return GetAllWorkgroupsForUser(&workgroups, false, false, false) == 0 && workgroups.Count() > 0;
}

int FontManagerInterface::GetCurrentWorkgroupID() {
  return MarquineGlobals::GetSharedVPFInterface()->GetCurrentWorkgroupID();
}

int FontManagerInterface::SetDefaultWorkgroupID(int id) {
  MarquineGlobals::GetSharedVPFInterface()->SetCurrentWorkgroupID(id);
  return 0;
}

int FontManagerInterface::SetDefaultWorkgroupName(const String& name) {
  int id = 0;
  const int status = GetWorkgroupID(name, &id);
  return status != 0 ? status : SetDefaultWorkgroupID(id);
}

String FontManagerInterface::GetDefaultWorkgroupName() { return GetWorkgroupNameFromID(GetCurrentWorkgroupID()); }

String FontManagerInterface::GetWorkgroupNameFromID(long id) {
  Array workgroups;
  if (GetAllWorkgroupsForUser(&workgroups, true, true, false) != 0) return String();
  return FindWorkgroupIDGetName(id, workgroups);
}

String FontManagerInterface::FindWorkgroupIDGetName(long id, const Array& workgroups) {
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const Dictionary workgroup(workgroups.At(i));
    if (workgroup && XCFUtils::GetLongFromDictString(workgroup, kGS_WorkgroupIDKey) == id) {
      return workgroup.GetString(kGS_WorkgroupNameKey);
    }
  }
  return String();
}

int FontManagerInterface::GetWorkgroupID(const String& name, int* outID) {
  if (!name || !outID) return -1;
  Array workgroups;
  if (GetAllWorkgroupsForUser(&workgroups, false, false, false) != 0) return -1;
  if (CanActivateFromAllWorkgroups()) {
    const char* key = RunningStandalone() ? "All Libraries" : "All Workgroups";
    if (name.View() == MarquineGlobals::GetSharedVPFInterface()->LocalizedString(key)) {
      *outID = kAllWorkgroupsID;
      return 0;
    }
  }
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const Dictionary workgroup(workgroups.At(i));
    const String held = workgroup.GetString(kGS_WorkgroupNameKey);
    if (!held || held.View() != name.View()) continue;
    *outID = static_cast<int>(XCFUtils::GetLongFromDictString(workgroup, kGS_WorkgroupIDKey));
    return 0;
  }
  return -1;
}

int FontManagerInterface::AddWorkgroupNamesToFonts(const Array& fonts) {
  Array workgroups;
  if (!fonts || GetAllWorkgroupsForUser(&workgroups, false, true, false) != 0) return -1;
  int status = -1;
  for (size_t i = 0; i < fonts.Count(); ++i) {
    Dictionary record(fonts.At(i));
    if (!record) continue;
    const String name = FindWorkgroupIDGetName(XCFUtils::GetLongFromDictString(record, kGS_WorkgroupIDKey), workgroups);
    if (!name) continue;
    record.Set(kGS_WorkgroupNameKey, name);
    status = 0;
  }
  return status;
}

void FontManagerInterface::InitializeDefaultWorkgroup() {
  TracedCall traced("FontManagerInterface::InitializeDefaultWorkgroup");
  if (!IsRunning()) {
    traced.End("Exiting because FontManager is not running.");
    return;
  }
  const int id = GetCurrentWorkgroupID();
  if (IsValidWorkgroupForUser(id)) {
    if (SetDefaultWorkgroupID(id) != 0) {
      sValidWorkgroupSelected = false;
    } else if (MarquineGlobals::sUserHasWorkgroups) {
      sValidWorkgroupSelected = true;
    }
    return;
  }
  if (CanActivateFromAllWorkgroups()) {
    sValidWorkgroupSelected = SetDefaultWorkgroupID(kAllWorkgroupsID) == 0;
    return;
  }
  Array workgroups;
  sValidWorkgroupSelected = GetAllWorkgroupsForUser(&workgroups, false, false, false) == 0 && workgroups.Count() == 1;
  if (sValidWorkgroupSelected) {
    const Dictionary only(workgroups.At(0));
    SetDefaultWorkgroupID(static_cast<int>(XCFUtils::GetLongFromDictString(only, kGS_WorkgroupIDKey)));
  }
}

namespace {

long WorkgroupIDAt(const Array& workgroups, size_t index) {
  return XCFUtils::GetLongFromDictString(Dictionary(workgroups.At(index)), kGS_WorkgroupIDKey);
}

bool HoldsWorkgroup(const Array& workgroups, long id) {
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    if (WorkgroupIDAt(workgroups, i) == id) return true;
  }
  return false;
}

}  // namespace

void FontManagerInterface::HandleSelectWorkgroup() {
  if (sSelectWorkgroupInProgress) {
    OutputIndentedAndFormattedString(0,
                                     "*** FontManagerInterface::HandleSelectWorkgroup -- OOPS, Select Workgroup dialog "
                                     "is already being displayed!");
    return;
  }
  const struct InProgress {
    InProgress() { sSelectWorkgroupInProgress = true; }
    ~InProgress() { sSelectWorkgroupInProgress = false; }
  } inProgress;
  const bool wasValid = sValidWorkgroupSelected;
  if (!IsFontManagerConnected()) return;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || !ui->IsValid()) {
    SetDefaultWorkgroupID(0);
    return;
  }
  Array workgroups;
  if (GetAllWorkgroupsForUser(&workgroups, false, false, false) == 0 && workgroups.Count() > 0) {
    int id = GetCurrentWorkgroupID();
    if (id == 0 || !HoldsWorkgroup(workgroups, id)) {
      id = CanActivateFromAllWorkgroups() ? kAllWorkgroupsID : static_cast<int>(WorkgroupIDAt(workgroups, 0));
    }
    MarquineGlobals::SetUserHasWorkgroups(true);
    sValidWorkgroupSelected = true;
    SetDefaultWorkgroupID(id);
    return;
  }
  if (sm_pFontManager && !sm_pFontManager->RunningStandalone()) {
    OutputIndentedAndFormattedString(0, "HandleSelectWorkgroup:  Setting PluginServicesEnabled false");
    MarquineGlobals::SetUserHasWorkgroups(false);
    if (wasValid) {
      sValidWorkgroupSelected = false;
      ui->ShowNoWorkgroupsMessageBox();
    }
  }
  SetDefaultWorkgroupID(0);
}

bool FontManagerInterface::CheckSelectWorkgroup() {
  // Set it before anything else: a login must find the flag set.
  MarquineGlobals::SetUserHasWorkgroups(true);
  if (sValidWorkgroupSelected) return true;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!MarquineGlobals::ArePluginServicesEnabled() || !ui) return false;
  if (!ui->GetEnabledAutoActivationPref() || !sm_pFontManager) return false;
  if (!sm_pFontManager->IsLoggedIn() && !sm_pFontManager->RunningStandalone()) return false;
  if (sSelectWorkgroupInProgress) {
    OutputIndentedAndFormattedString(
        0, "*** UH-OH, can't display Select Workgroup dialog, because it's already being displayed!");
  } else {
    sm_pFontManager->HandleSelectWorkgroup();
  }
  return MarquineGlobals::ArePluginServicesEnabled();
}
