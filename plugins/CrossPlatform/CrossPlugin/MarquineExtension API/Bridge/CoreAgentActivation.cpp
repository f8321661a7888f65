// Activation states, activation, and the two commands that make a set and collect fonts. Part of CoreAgentInterface.
#include <algorithm>
#include <cstdio>

#include "Bridge/AgentLaunch.h"
#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentSupport.h"
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/TextEncoding.h"
#include "platform/Trace.h"

using namespace GlyphsureSupport;
using platform::Dictionary;
using platform::String;

namespace {

constexpr uint32_t kOrdinaryActivation = 1;
constexpr size_t kLongestSetName = 255;  // UTF-16 units

// Returns the first `count` UTF-16 units, without half a surrogate pair at the end.
std::string FirstCharacters(const std::string& text, size_t count) {
  std::u16string units = platform::UTF8ToUTF16(text).value_or(std::u16string());
  units.resize(std::min(units.size(), count));
  if (!units.empty() && (units.back() & 0xFC00) == 0xD800) units.pop_back();
  return platform::UTF16ToUTF8(units).value_or("");
}

uint32_t FontIDOf(const Dictionary& record) {
  return static_cast<uint32_t>(XCFUtils::GetLongFromDictString(record, kGS_DatabaseIDKey));
}

// Logs the agent's answer, and the cache's if it differs. The agent's answer is used.
void LogActivation(const std::string& name, uint32_t fontID, bool isActive) {
  OutputIndentedAndFormattedString(
      0, isActive ? "VPI says that %s (fontID %d) is active" : "VPI says that %s (fontID %d) is NOT active",
      name.c_str(), fontID);
  Dictionary cached;
  uint32_t cachedID = 0;
  const bool cachedActive =
      FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphsureDataForActiveFont(name, cached, cachedID) &&
      cachedID == fontID;
  if (cachedActive == isActive) return;
  OutputIndentedAndFormattedString(
      0, cachedActive ? "But cache says %s (fontID %d) is active" : "But cache says %s (fontID %d) is NOT active",
      name.c_str(), fontID);
}

}  // namespace

namespace {

// A preview does not list the fonts that failed, so this asks the agent which fonts are active. Writes the others to
// the front of `failed`, which has room for all, and returns their number; 0 if the agent fails.
uint32_t ListInactive(const std::vector<uint32_t>& ids, std::vector<uint32_t>& failed) {
  std::vector<uint32_t> flags(ids.size());
  const auto count = static_cast<uint32_t>(ids.size());
  if (AgentTable().pfGetFontIsActivated(GetFacade(), count, ids.data(), flags.data()) != 0) return 0;
  uint32_t failedCount = 0;
  for (size_t i = 0; i < ids.size(); ++i) {
    if (flags[i] == 0) failed[failedCount++] = ids[i];
  }
  return failedCount;
}

}  // namespace

FontManagerInterface::ActivationStates CoreAgentInterface::GetClientFontActivationStates(const FontIDs& ids) {
  std::vector<uint32_t> flags(ids.size());
  AgentTable().pfGetClientFontActivationStates(static_cast<uint32_t>(ids.size()), ids.data(), flags.data());
  ActivationStates states;
  for (size_t i = 0; i < ids.size(); ++i) states.emplace(ids[i], flags[i] != 0);
  return states;
}

FontManagerInterface::ActivationStates CoreAgentInterface::GetFontIsActivated(const Array& fonts) {
  ActivationStates states;
  if (!fonts) return states;
  const FontIDs ids = GetFontIDsFromFontInfoArray(fonts, false);
  std::vector<std::string> names;
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const String name = Dictionary(fonts.At(i)).GetString(kGS_PostScriptNameKey);
    if (name) names.push_back(name.Text());
  }
  std::vector<uint32_t> flags(ids.size());
  const auto count = static_cast<uint32_t>(ids.size());
  if (AgentTable().pfGetFontIsActivated(GetFacade(), count, ids.data(), flags.data()) != 0) return states;
  for (size_t i = 0; i < ids.size(); ++i) {
    // IDs and names are paired by their positions in two lists, so a record without a name shifts the names in the log.
    LogActivation(i < names.size() ? names[i] : "", ids[i], flags[i] != 0);
    states[ids[i]] = flags[i] != 0;
  }
  return states;
}

std::map<uint32_t, uint32_t> CoreAgentInterface::GetFontConflicts(const FontIDs& ids) {
  std::map<uint32_t, uint32_t> conflicts;
  std::vector<uint32_t> others(ids.size());
  const auto count = static_cast<uint32_t>(ids.size());
  if (AgentTable().pfGetFontConflicts(GetFacade(), count, ids.data(), others.data()) != 0) return conflicts;
  for (size_t i = 0; i < ids.size(); ++i) {
    if (ids[i] != 0) conflicts[ids[i]] = others[i];
  }
  return conflicts;
}

TModuleErrorCode CoreAgentInterface::ActivateByPreference(const FontIDs& ids, FontIDs& failed, FontIDs& refused,
                                                          uint32_t& failedCount, uint32_t& refusedCount) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  const bool locally = ui->GetActivateLocally();
  const bool globally = ui->GetActivateGlobally();
  const auto count = static_cast<uint32_t>(ids.size());
  TModuleErrorCode code = CoreErrorCodes::kSuccess;
  if (!locally || globally) {
    code = CallWithRelaunch([&] {
      return AgentTable().pfActivateFonts(GetFacade(), count, ids.data(), 0, kOrdinaryActivation, 1, 1, count, count,
                                          failed.data(), refused.data(), &failedCount, &refusedCount);
    });
  }
  if (locally) {
    code = CallWithRelaunch([&] { return AgentTable().pfPreviewActivateFonts(GetFacade(), count, ids.data(), 0); });
    if (code == 0 && !globally) failedCount = ListInactive(ids, failed);
  }
  return code;
}

int CoreAgentInterface::ActivateFontByName(const std::string& name, long workgroupID, const std::string&,
                                           unsigned long* outFontID) {
  if (!outFontID) return kErrorBadArgument;
  *outFontID = 0;
  std::vector<uint64_t> ids;
  const int status = FontIDsForPostScriptName(name, workgroupID, ids);
  if (status != 0 || ids.size() != 1) return status;
  *outFontID = static_cast<unsigned long>(ids.front());
  Dictionary request = Dictionary::Create();
  XCFUtils::PutULongIntoDictAsString(request, kGS_DatabaseIDKey, *outFontID);
  XCFUtils::PutLongIntoDictAsString(request, kGS_WorkgroupIDKey, workgroupID);
  return ActivateFontByID(request, "", nullptr);
}

int CoreAgentInterface::ActivateFontByID(const Dictionary& font, const std::string&, void**) {
  FontIDs failed(1), refused(1);
  uint32_t failedCount = 0, refusedCount = 0;
  return ActivateByPreference({FontIDOf(font)}, failed, refused, failedCount, refusedCount) == 0 ? 0 : -1;
}

int CoreAgentInterface::ActivateFontsByID(const Array& fonts, const std::string&, void**, Array activated,
                                          Array refused, ProgressFunction, void*) {
  if (fonts.Count() == 0) {
    OutputIndentedAndFormattedString(0, "CoreAgentInterface::ActivateFontsByID -- empty fonts vector, doing nothing.");
    return 0;
  }
  const FontIDs ids = GetFontIDsFromFontInfoArray(fonts, false);
  FontIDs failedIDs(ids.size()), refusedIDs(ids.size());
  uint32_t failedCount = 0, refusedCount = 0;
  const TModuleErrorCode code = ActivateByPreference(ids, failedIDs, refusedIDs, failedCount, refusedCount);
  if (code == 0 && activated) {
    // Each reported failure covers four entries of the list. Do not correct it: the agent's callers have always read
    // the list so. Entries beyond the buffer are ignored.
    failedIDs.resize(std::min<size_t>(static_cast<size_t>(failedCount) * 4, failedIDs.size()));
    CreateFontArrayWithErrorsRemoved(fonts, activated, failedIDs);
  }
  if (refused && refusedCount > 0) {
    refusedIDs.resize(std::min<size_t>(refusedCount, refusedIDs.size()));
    for (size_t i = 0; i < fonts.Count(); ++i) {
      const Dictionary record(fonts.At(i));
      if (std::find(refusedIDs.begin(), refusedIDs.end(), FontIDOf(record)) != refusedIDs.end()) refused.Append(record);
    }
  }
  return code == 0 ? 0 : -1;
}

void CoreAgentInterface::HandleProgress(ProgressFunction progress, void* context) {
  for (;;) progress(0, 0, "", context);
}

void CoreAgentInterface::CreateFontArrayWithErrorsRemoved(const Array& in, Array out, const FontIDs& failedIDs) {
  if (!in || !out) return;
  for (size_t i = 0; i < in.Count(); ++i) {
    const Dictionary record(in.At(i));
    const uint32_t id = FontIDOf(record);
    if (id != 0 && std::find(failedIDs.begin(), failedIDs.end(), id) == failedIDs.end()) out.Append(record);
  }
}

int CoreAgentInterface::DeactivateFont(const Dictionary& font, void*) {
  const uint32_t id = FontIDOf(font);
  const TModuleErrorCode code =
      CallWithRelaunch([&] { return AgentTable().pfDeactivateFonts(GetFacade(), 1, &id, 0); });
  return code == 0 ? 0 : -1;
}

int CoreAgentInterface::DeactivateFonts(const Array& fonts, void*, Array deactivated, ProgressFunction, void*) {
  if (fonts.Count() == 0) return 0;
  const FontIDs ids = GetFontIDsFromFontInfoArray(fonts, false);
  const TModuleErrorCode code = CallWithRelaunch(
      [&] { return AgentTable().pfDeactivateFonts(GetFacade(), static_cast<uint32_t>(ids.size()), ids.data(), 0); });
  if (code == 0) CreateFontArrayWithErrorsRemoved(fonts, deactivated, {});
  return code == 0 ? 0 : -1;
}

int CoreAgentInterface::CollectFontsUsedByCurrentDocument(const std::string& documentName, const std::string&,
                                                          const Array& fonts) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui) return 0;
  try {
    std::string folder;
    const std::string title = ui->LocalizedString("[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]");
    const std::string message = ui->LocalizedString("Enter name of new folder.  Collected fonts will be placed here.");
    if (ShowSaveFolderDialog(documentName, folder, title, message, ui->LocalizedString("%@'s fonts")) != 0) return 0;
    const FontIDs ids = GetFontIDsFromFontInfoArray(fonts, false);
    TModuleErrorCode code = CoreErrorCodes::kSuccess;
    if (ids.empty()) {
      OutputIndentedAndFormattedString(
          0, "No fonts to collect.  Creating empty destination folder, if it does not already exist.");
      if (!AgentTable().pfOSDoesDirectoryExist(folder.c_str())) {
        code = AgentTable().pfOSCreateDirectory(folder.c_str(), 1);
      }
    } else {
      const auto count = static_cast<uint32_t>(ids.size());
      code = CallWithRelaunch(
          [&] { return AgentTable().pfExportFonts(GetFacade(), count, ids.data(), folder.c_str(), 0, 0); });
    }
    if (code == 0) return 0;
    char reason[32];
    std::snprintf(reason, sizeof reason, "0x%08x", code);
    platform::ReportProblem(folder + ": the fonts could not be collected here; the font manager refused with " +
                            reason);
    return -1;
  } catch (...) {
    // The command must never terminate the host, so it only traces the exception.
    OutputIndentedAndFormattedString(0, "Exception thrown somewhere under CollectFontsUsedByCurrentDocument().");
    return 0;
  }
}

// Returns -1 on every path, also on success; callers ignore it.
int CoreAgentInterface::MakeSetForDocumentFonts(const String& defaultName, const Array& fonts) {
  if (!defaultName || IsAllWorkgroupsSelected()) return -1;
  try {
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    std::string name;
    const std::string prompt = ui->LocalizedString("Create a [FONT_MANAGER_MODIFIER] set for this document's fonts?");
    ui->AskForOneString(prompt, ui->LocalizedString("Set Name:"), defaultName.Text(), name);
    if (String::FromUTF8(name).Length() > kLongestSetName) {
      name = FirstCharacters(name, kLongestSetName);
      ui->ShowSetNameTooLongMessageBox();
    }
    if (name.empty()) return -1;
    const FontIDs ids = GetFontIDsFromFontInfoArray(fonts, true);
    uint32_t setID = 0;
    CallWithRelaunch([&] {
      return AgentTable().pfCreateTopLevelSet(GetFacade(), &setID, static_cast<uint32_t>(GetCurrentWorkgroupID()),
                                              name.c_str(), 0, 0, static_cast<uint32_t>(ids.size()), ids.data());
    });
  } catch (...) {
    OutputIndentedAndFormattedString(0, "Exception thrown somewhere under MakeSetForDocumentFonts().");
  }
  return -1;
}
