// Reads messages, finds their handlers, and forms the texts of replies.
#include "Panel/MarquinePanel.h"

#include <algorithm>

#include "GJSONUtils.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"

using namespace panel_keys;

// Has one of the two functions, or none for a message that is accepted and ignored.
struct MarquinePanel::Handler {
  operatorIDs operatorID;
  TModuleErrorCode (MarquinePanel::*answer)();
  TModuleErrorCode (MarquinePanel::*carryOut)(const std::string& message);
};

const MarquinePanel::Handler* MarquinePanel::FindHandler(operatorIDs operatorID) {
  static constexpr Handler kHandlers[] = {
      {kDesignActivateFamilyForFont, nullptr, &MarquinePanel::DesignActivateFamilyForFont},
      {kEnableGoogleFonts, &MarquinePanel::GoogleEnableWebFonts, nullptr},
      {kAreGoogleFontsEnabled, &MarquinePanel::IsGoogleWebFontsEnabled, nullptr},
      {kGetDimensions, &MarquinePanel::GetDimensions, nullptr},
      {kSetDimensions, nullptr, &MarquinePanel::SetDimensions},
      {kDeleteFile, nullptr, &MarquinePanel::DeleteFile},
      {kIsWindows, &MarquinePanel::IsWindows, nullptr},
      {kSaveDropDownSelection, nullptr, &MarquinePanel::SaveDropDownSelection},
      {kGetDropDownSelection, &MarquinePanel::GetDropDownSelection, nullptr},
      {kGetFontPNG, nullptr, &MarquinePanel::GetFontPNGs},
      {kRenameSmartList, nullptr, &MarquinePanel::RenameSmartList},
      {kDeleteSmartList, nullptr, &MarquinePanel::DeleteSmartList},
      {kQueryForSmartListFonts, nullptr, &MarquinePanel::QueryForSmartListFonts},
      {kGetSmartList, nullptr, &MarquinePanel::GetSmartList},
      {kGetPanelSmartListTree, nullptr, &MarquinePanel::GetPanelSmartListTree},
      {kGetAllSmartLists, &MarquinePanel::GetAllSmartLists, nullptr},
      {kCreateSmartList, nullptr, &MarquinePanel::CreateSmartList},
      {kGetSmartListFonts, nullptr, &MarquinePanel::GetSmartListFonts},
      {kSetSmartListQuery, nullptr, &MarquinePanel::SetSmartListQuery},
      {kSetSmartListName, nullptr, &MarquinePanel::SetSmartListName},
      {kTrackFontClick, nullptr, &MarquinePanel::SendTrackFontClick},
      {kIgnoredMessage48, nullptr, nullptr},
      {kIsLoggedIn, &MarquinePanel::HBSIsLoggedIn, nullptr},
      {kIgnoredMessage51, nullptr, nullptr},
      {kCanAccessGoogleFonts, &MarquinePanel::CanAccessGoogleFonts, nullptr},
      {kIsLoggedInAlias, &MarquinePanel::HBSIsLoggedIn, nullptr},
      {kStartPanelInfo, &MarquinePanel::StartPanelInfo, nullptr},
  };
  const auto found = std::find_if(std::begin(kHandlers), std::end(kHandlers),
                                  [&](const Handler& handler) { return handler.operatorID == operatorID; });
  return found == std::end(kHandlers) ? nullptr : found;
}

MarquinePanel::~MarquinePanel() = default;

TModuleErrorCode MarquinePanel::CallMethodForMessage(const std::string& message) {
  if (!MarquineGlobals::ArePluginServicesEnabled()) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node root;
  PANEL_CHECK(GetJSONValueFromMessage(message, root, jsonObject));
  operatorIDs operatorID{};
  PANEL_CHECK(GJSONUtils::GetValueForKey(root, kMessageIDKey, operatorID));
  const Handler* handler = FindHandler(operatorID);
  if (!handler) {
    OutputIndentedAndFormattedString(0, "Unknown operator ID from panel '%d'.", operatorID);
    return CoreErrorCodes::kSuccess;
  }
  // A handler has logged its failure. It is no failure of the message, so the transport goes on with the next one.
  if (handler->answer) (this->*handler->answer)();
  if (handler->carryOut) (this->*handler->carryOut)(message);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::GetJSONValueFromMessage(const std::string& message, Node& jsonValue,
                                                        Parser& jsonObject) {
  PANEL_CHECK(GJSONUtils::Parse(jsonObject, message, jsonValue));
  RETURN_IF(kPanelLogIdentifier, !jsonValue.is_map(), CoreErrorCodes::kError);
  return CoreErrorCodes::kSuccess;
}

// The parentheses are for panels that evaluate the text as a script.
TModuleErrorCode MarquinePanel::GetMessageFromJSONValue(const Node& jsonValue, std::string& message) {
  message = "(" + jsonValue.dump() + ")";
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::PopulateJSONArrayFromSet(const std::set<unsigned int>& values, const Node& jsonArray) {
  for (const unsigned int value : values) {
    Node jsonValue;
    PANEL_CHECK(GJSONUtils::AddValueToArray(value, jsonArray, jsonValue));
  }
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::SendReply(const Node& root) {
  std::string responseMessage;
  PANEL_CHECK(GetMessageFromJSONValue(root, responseMessage));
  PANEL_CHECK(SendMessage(responseMessage));
  return CoreErrorCodes::kSuccess;
}
