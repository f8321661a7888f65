// The panel's smart lists: queries that the agent stores. Everything but GetAllSmartLists does nothing without an agent.
#include <vector>

#include "Bridge/NotificationKeys.h"
#include "GJSONUtils.h"
#include "Panel/MarquinePanel.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"
#include "platform/Base64.h"

using namespace panel_keys;
using platform::Array;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;

namespace {

using IDs = std::vector<unsigned int>;

uint32_t Count(const IDs& ids) { return static_cast<uint32_t>(ids.size()); }
const uint32_t* Array32(const IDs& ids) { return ids.empty() ? nullptr : ids.data(); }

// What a list consists of.
struct Query {
  unsigned int smartListID = 0;
  IDs workgroupIDs, setIDs, smartSetIDs;
};

// All four must be there; the arrays may be empty.
TModuleErrorCode ReadQuery(const restful_mapper::Json::Node& jsonValue, Query& query) {
  auto& [smartListID, workgroupIDs, setIDs, smartSetIDs] = query;
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kWorkgroupIDsKey, workgroupIDs));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSetIDsKey, setIDs));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartSetIDsKey, smartSetIDs));
  return CoreErrorCodes::kSuccess;
}

}  // namespace

TModuleErrorCode MarquinePanel::RenameSmartList(const std::string& message) {
  const PanelTrace trace(__func__);
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  unsigned int smartListID = 0;
  std::string name;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListNameKey, name));
  PANEL_CHECK_AGENT(RenameSmartList, smartListID, name.c_str());
  return CoreErrorCodes::kSuccess;
}

// The same as RenameSmartList for panels that send the name first.
TModuleErrorCode MarquinePanel::SetSmartListName(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  std::string name;
  unsigned int smartListID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListNameKey, name));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  PANEL_CHECK_AGENT(RenameSmartList, smartListID, name.c_str());
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::DeleteSmartList(const std::string& message) {
  const PanelTrace trace(__func__);
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  unsigned int smartListID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  PANEL_CHECK_AGENT(DeleteSmartList, smartListID);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::GetAllSmartLists() {
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  const Array smartLists = Array::Create();
  const platform::ValueRef results = smartLists.Ref();
  if (MarquineGlobals::sConnectedToCore) PANEL_CHECK_AGENT(GetAllSmartLists, results);
  if (smartLists.Count() > 0) {
    Node jsonArray;
    PANEL_CHECK(GJSONUtils::AddArrayForKey(kSmartListsKey, root, jsonArray));
    for (size_t i = 0; i < smartLists.Count(); ++i) {
      const Dictionary smartList(smartLists.At(i));
      const auto smartListID = static_cast<unsigned int>(smartList.GetInteger(PluginInterface::kSmartListIDKey));
      const std::string name = BoundedText(smartList.GetString(PluginInterface::kSmartListNameKey));
      Node smartListMap;
      PANEL_CHECK(GJSONUtils::AddMapToArray(jsonArray, smartListMap));
      PANEL_CHECK(GJSONUtils::SetValueForKey(smartListID, kSmartListIDKey, smartListMap, jsonValue));
      PANEL_CHECK(GJSONUtils::SetValueForKey(name, kSmartListNameKey, smartListMap, jsonValue));
    }
  }
  PANEL_CHECK(GJSONUtils::SetValueForKey(kGetAllSmartLists, kMessageIDKey, root, jsonValue));
  // The agent's failures get no reply, so this one never has another code.
  PANEL_CHECK(GJSONUtils::SetValueForKey(CoreErrorCodes::kSuccess, kReturnCodeKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::CreateSmartList(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject, replyObject;
  const Node root = replyObject.root();
  Node jsonValue, smartListMap;
  std::string name;
  uint32_t newID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListNameKey, name));
  PANEL_CHECK(GJSONUtils::AddMapForKey(kSmartListKey, root, smartListMap));
  PANEL_CHECK_AGENT(CreateSmartList, name.c_str(), 0, nullptr, 0, nullptr, 0, nullptr, &newID);
  PANEL_CHECK(GJSONUtils::SetValueForKey(newID, kSmartListIDKey, smartListMap, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(name, kSmartListNameKey, smartListMap, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(kCreateSmartList, kMessageIDKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::SetSmartListQuery(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  Query query;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PASS_ON_ERROR(ReadQuery(jsonValue, query));
  const auto& [smartListID, workgroupIDs, setIDs, smartSetIDs] = query;
  PANEL_CHECK_AGENT(SetSmartListQuery, smartListID, Count(workgroupIDs), Array32(workgroupIDs), Count(setIDs),
                    Array32(setIDs), Count(smartSetIDs), Array32(smartSetIDs));
  return GetSmartListFonts(smartListID);
}

TModuleErrorCode MarquinePanel::GetSmartListFonts(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  unsigned int smartListID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  PANEL_CHECK(GetSmartListFonts(smartListID));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::GetSmartListFonts(unsigned int smartListID) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  const Array fonts = Array::Create();
  const platform::ValueRef results = fonts.Ref();
  PANEL_CHECK_AGENT(GetSmartListFonts, smartListID, results);
  PANEL_CHECK(SendFontList(fonts, kFontList));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::QueryForSmartListFonts(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject, replyObject;
  const Node root = replyObject.root();
  Node jsonValue, jsonArray;
  Query query;
  const Array fonts = Array::Create();
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PASS_ON_ERROR(ReadQuery(jsonValue, query));
  const auto& [smartListID, workgroupIDs, setIDs, smartSetIDs] = query;
  // Without workgroups the array of sets is null, although their number is sent. Do not correct it: the agent takes a
  // null array as no sets, and the answers that panels know depend on it.
  PANEL_CHECK_AS(
      AgentFunctions().pfQueryForSmartListFonts(GetFacade(), Count(workgroupIDs), Array32(workgroupIDs), Count(setIDs),
                                                workgroupIDs.empty() ? nullptr : Array32(setIDs), Count(smartSetIDs),
                                                Array32(smartSetIDs), fonts.Ref()),
      "VPILoader::GetSharedInstance()->pfQueryForSmartListFonts "
      "(VPILoader::GetSharedInstance()->pfGetPluginFacadeInstance(), (TUInt32) workgroupIDs.size(), "
      "workgroupIDs.empty() ? __null : &workgroupIDs[0], (TUInt32) setIDs.size(), "
      "workgroupIDs.empty() ? __null : &setIDs[0], (TUInt32) smartSetIDs.size(), "
      "smartSetIDs.empty() ? __null : &smartSetIDs[0], results)");
  PANEL_CHECK(GJSONUtils::SetValueForKey(kFontList, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(smartListID, kSmartListIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::AddArrayForKey(kFontIDsKey, root, jsonArray));
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const auto fontID = static_cast<int32_t>(Number(fonts.At(i)).Integer());
    PANEL_CHECK(GJSONUtils::AddValueToArray(fontID, jsonArray, jsonValue));
  }
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::GetPanelSmartListTree(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject, replyObject;
  const Node root = replyObject.root();
  Node jsonValue;
  unsigned int smartListID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  platform::ValueRef definition = nullptr;  // stays null if the agent fails
  AgentFunctions().pfGetPanelSmartListTree(GetFacade(), smartListID, &definition);
  std::string text = String(Value::Adopt(definition)).Text();
  std::erase(text, '\n');
  PANEL_CHECK(GJSONUtils::SetValueForKey(kGetPanelSmartListTree, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(smartListID, kSmartListIDKey, root, jsonValue));
  if (!text.empty()) {
    const std::string listDefinition = platform::EncodeBase64(text);
    PANEL_CHECK(GJSONUtils::SetValueForKey(listDefinition, kListDefinitionKey, root, jsonValue));
  }
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::GetSmartList(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject, replyObject;
  const Node root = replyObject.root();
  Node jsonValue, jsonArray;
  unsigned int smartListID = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID));
  platform::ValueRef object = nullptr;
  PANEL_CHECK_AGENT(GetSmartList, smartListID, &object);
  const Dictionary smartList(Value::Adopt(object));
  const std::string name = BoundedText(smartList.GetString(PluginInterface::kSmartListNameKey));
  PANEL_CHECK(GJSONUtils::SetValueForKey(kGetSmartList, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(smartListID, kSmartListIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(name, kSmartListNameKey, root, jsonValue));
  const Array workgroupIDs = smartList.GetArray(PluginInterface::kWorkgroupIDsKey);
  PANEL_CHECK(GJSONUtils::AddArrayForKey(kWorkgroupIDsKey, root, jsonArray));
  for (size_t i = 0; i < workgroupIDs.Count(); ++i) {
    const auto workgroupID = static_cast<int32_t>(Number(workgroupIDs.At(i)).Integer());
    PANEL_CHECK(GJSONUtils::AddValueToArray(workgroupID, jsonArray, jsonValue));
  }
  // Throws, because an array is no integer, so this message has never had a reply. Keep it: panels depend on getting
  // none. They read a list from the replies to kGetAllSmartLists and kGetPanelSmartListTree.
  PANEL_CHECK(GJSONUtils::SetValueForKey(jsonArray, kWorkgroupIDsKey, root, jsonValue));
  return CoreErrorCodes::kSuccess;
}
