// The panel's fonts: lists as files, previews, clicks, and the activation of families.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <span>
#include <vector>

#include "Bridge/FontManagerInterface.h"
#include "Bridge/NotificationKeys.h"
#include "GJSONUtils.h"
#include "Panel/MarquinePanel.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/Descriptor.h"
#include "platform/TemporaryFile.h"

using namespace panel_keys;
using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr std::string_view kRecordDisplayNameKey = "DisplayName";
constexpr uint32_t kPreviewTextSize = 14, kPreviewWidth = 400, kPreviewHeight = 30, kPreviewScale = 1;
constexpr uint32_t kDesignActivation = 3;  // until the user deactivates the font

const std::string& LocationWord(int64_t location) {
  static const std::string kNone;
  if (location >= 1 && location <= 3) return kFontLocationDesktopKey;
  if (location >= 4 && location <= 8) return kFontLocationSystemKey;
  if (location == 10) return kFontLocationGoogleKey;
  return location == 11 ? kFontLocationTypekitKey : kNone;
}

std::string ASCIIText(const String& text) {
  const std::string bounded = BoundedText(text);
  const bool isASCII =
      std::all_of(bounded.begin(), bounded.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return isASCII ? bounded : std::string();
}

// Tabs and line ends within a name are not escaped: the panel splits the line at every tab.
void WriteFont(std::FILE* file, const Dictionary& font) {
  const auto number = [&](std::string_view key) { return static_cast<int>(font.GetInteger(key)); };
  std::fprintf(file, "%d\t%s\t%s\t%d\t%s\t%d\n", number(PluginInterface::kFontIDKey),
               BoundedText(font.GetString(PluginInterface::kDisplayNameKey)).c_str(),
               ASCIIText(font.GetString(PluginInterface::kPostscriptNameKey)).c_str(),
               number(PluginInterface::kActivatedKey),
               LocationWord(font.GetInteger(PluginInterface::kFontLocationKey)).c_str(),
               number(PluginInterface::kFontIsLocalKey));
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Creates an empty file that only this user can read. Null, with an empty path, if that fails.
File CreateTemporaryFile(std::string& path) {
  path = platform::TemporaryFile::Folder() + "/velorant-fonts-XXXXXX";
  const int descriptor = mkostemp(path.data(), O_CLOEXEC);
  File file(descriptor < 0 ? nullptr : fdopen(descriptor, "wb"));
  if (!file) path.clear();
  return file;
}

}  // namespace

TModuleErrorCode MarquinePanel::SendFontList(const Array& fonts, unsigned int) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  std::string path;
  File file = CreateTemporaryFile(path);
  if (!file) {
    PANEL_CHECK(GJSONUtils::SetValueForKey(kCouldNotCreateTmpFile, kMessageIDKey, root, jsonValue));
    return SendReply(root);
  }
  const std::string systemTempFilename = "file://" + path;
  mTempFiles[systemTempFilename] = path;
  for (size_t i = 0; i < fonts.Count(); ++i) WriteFont(file.get(), Dictionary(fonts.At(i)));
  const bool isComplete = std::fflush(file.get()) == 0 && !std::ferror(file.get());
  file.reset();
  // On a full disk the panel gets the fonts that fitted.
  if (!isComplete) {
    ReportFailedCheck(kPanelLogIdentifier, CoreErrorCodes::kError, __FILE__, __LINE__, "std::fflush(file) == 0");
  }
  PANEL_CHECK(GJSONUtils::SetValueForKey(kFontList, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(systemTempFilename, kFilenameKey, root, jsonValue));
  return SendReply(root);
}

// Deletes nothing but the files that this panel was sent.
TModuleErrorCode MarquinePanel::DeleteFile(const std::string& message) {
  Parser jsonObject;
  Node jsonValue;
  std::string filename;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kFilenameKey, filename));
  const auto found = mTempFiles.find(filename);
  if (found == mTempFiles.end()) return CoreErrorCodes::kSuccess;
  std::remove(found->second.c_str());
  mTempFiles.erase(found);
  return CoreErrorCodes::kSuccess;
}

// The images come later, as an event of the agent.
TModuleErrorCode MarquinePanel::GetFontPNGs(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  std::vector<unsigned int> highPriorityFontIDs, fontIDs;
  unsigned int smartListID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kHighPriorityFontIDsKey, highPriorityFontIDs));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kFontIDsKey, fontIDs));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  if (fontIDs.empty()) return CoreErrorCodes::kSuccess;
  AgentFunctions().pfRenderFontNamePreviewPNGs(GetFacade(), static_cast<uint32_t>(highPriorityFontIDs.size()),
                                               highPriorityFontIDs.empty() ? nullptr : highPriorityFontIDs.data(),
                                               static_cast<uint32_t>(fontIDs.size()), fontIDs.data(), smartListID,
                                               kPreviewTextSize, kPreviewWidth, kPreviewHeight, kPreviewScale);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::SendTrackFontClick(const std::string& message) {
  if (!MarquineGlobals::ArePluginServicesEnabled()) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  unsigned int fontID = 0;
  std::string version;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kFontIDKey, fontID));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kVersionKey, version));
  AgentFunctions().pfTrackFontPanelClick(GetFacade(), fontID, version.c_str());
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::SendFontActivationError(unsigned int fontID, unsigned int conflictID,
                                                        bool isConflictError) {
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kFontActivationError, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(fontID, kFontIDKey, root, jsonValue));
  if (isConflictError) PANEL_CHECK(GJSONUtils::SetValueForKey(conflictID, kConflictIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(isConflictError, kIsConflictErrorKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::DesignActivateFamilyForFont(const std::string& message) {
  const PanelTrace trace(__func__);
  TModuleErrorCode err = CoreErrorCodes::kSuccess;
  if (FontManagerInterface::sm_pFontManager && MarquineGlobals::sConnectedToCore) {
    Parser jsonObject;
    Node jsonValue;
    unsigned int fontID = 0;
    std::string postscriptNameStr, displayNameStr;
    PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
    PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kFontIDKey, fontID));
    PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kPostscriptNameKey, postscriptNameStr));
    PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kDisplayNameKey, displayNameStr));
    err = ActivateFamily(fontID, postscriptNameStr, displayNameStr);
  }
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kDesignActivateFamilyForFont, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(err, kReturnCodeKey, root, jsonValue));
  return SendReply(root);
}

// The fonts to activate together. `ids` may have gaps of 0, which are no fonts but count.
struct MarquinePanel::Family {
  Family(unsigned int fontID, const std::string& postScriptName, const std::string& displayName, const Array& members);

  std::vector<uint32_t> ids;
  uint32_t count = 1;  // of the entries of `ids` that are sent
};

// A member keeps the place that it has in the array, so a skipped one leaves a gap, and for each gap one font at the
// end is not sent. Do not close the gaps: which fonts of a family with duplicates a panel sees activated depends on
// them.
MarquinePanel::Family::Family(unsigned int fontID, const std::string& postScriptName, const std::string& displayName,
                              const Array& members)
    : ids(members.Count() + 1) {  // one more, because the font itself may be missing in the array
  std::set<std::string, std::less<>> seenPostScriptNames{postScriptName}, seenDisplayNames{displayName};
  ids[0] = fontID;
  size_t shift = 1;
  for (size_t i = 0; i < members.Count(); ++i) {
    const Dictionary member(members.At(i));
    const auto id = static_cast<uint32_t>(XCFUtils::GetLongFromDictString(member, kGS_DatabaseIDKey));
    if (id == fontID) {
      shift = 0;
      continue;
    }
    const String name = member.GetString(kGS_PostScriptNameKey), shown = member.GetString(kRecordDisplayNameKey);
    if (!name || !shown || seenPostScriptNames.contains(name.View()) || seenDisplayNames.contains(shown.View())) {
      continue;
    }
    seenPostScriptNames.insert(name.Text());
    seenDisplayNames.insert(shown.Text());
    ids[i + shift] = id;
    ++count;
  }
}

TModuleErrorCode MarquinePanel::ActivateFamily(unsigned int fontID, const std::string& postScriptName,
                                               const std::string& displayName) {
  FontManagerInterface& manager = *FontManagerInterface::sm_pFontManager;
  Dictionary request = Dictionary::Create();
  XCFUtils::PutULongIntoDictAsString(request, kGS_DatabaseIDKey, fontID);
  XCFUtils::PutLongIntoDictAsString(request, kGS_WorkgroupIDKey, FontManagerInterface::kAllWorkgroupsID);
  FontOrSetInfoRec record;
  int status = manager.GetFontInfoByID(request, &record);
  if (status != 0) return static_cast<TModuleErrorCode>(status);
  const uint32_t databaseID = record.fields.nDatabaseID;
  auto conflicts = manager.GetFontConflicts({databaseID});
  // The panel learns of a conflict by a message of its own, so its request has not failed.
  if (conflicts.size() != 1 || conflicts[databaseID] != 0) {
    SendFontActivationError(databaseID, conflicts[databaseID], true);
    return CoreErrorCodes::kSuccess;
  }
  Array members = Array::Create();
  status = manager.FindFontsInSameFamilyForActivation(record.fontInfo, Array(), FontManagerInterface::kAllWorkgroupsID,
                                                      &members);
  if (status != 0) return static_cast<TModuleErrorCode>(status);
  if (members.Count() == 0) return CoreErrorCodes::kSuccess;
  return ActivateAndTell(Family(fontID, postScriptName, displayName, members));
}

// Tells the panel that every font that was sent is active, also if the call failed. What the agent really did follows
// as its events.
TModuleErrorCode MarquinePanel::ActivateAndTell(const Family& family) {
  std::vector<uint32_t> nonCompliant(family.ids.size());
  uint32_t failedCount = 0, nonCompliantCount = 0;
  const TModuleErrorCode err =
      AgentFunctions().pfActivateFonts(GetFacade(), family.count, family.ids.data(), 0, kDesignActivation, 1, 1, 0,
                                       family.count, nullptr, nonCompliant.data(), &failedCount, &nonCompliantCount);
  nonCompliant.resize(std::min<size_t>(nonCompliantCount, nonCompliant.size()));
  for (const uint32_t id : std::span(family.ids).first(family.count)) {
    if (id == 0) continue;
    const bool isRefused = std::find(nonCompliant.begin(), nonCompliant.end(), id) != nonCompliant.end();
    if (isRefused) {
      PushFontNonCompliantNotification(id);
    } else {
      PushFontActivatedNotification(id);
    }
  }
  return err;
}
