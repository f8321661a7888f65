#include "agent/Calls.h"
#include "agent/FontRecord.h"

namespace agent {

namespace {

// The rights that a user without a server has. Asked for by name, in any workgroup.
constexpr const char* kRights[] = {"CanActivateAcrossWorkgroups", "ExportFonts"};

Reply Number(const char* key, int64_t value) { return {kSuccess, {{key, value}}}; }

Reply GetAllWorkgroupsForUser(ClientID, const Arguments& arguments) {
  Json list = Json::array({MakeWorkgroupRecord(kFontLibrary)});
  if (arguments.Flag("includeSpecial")) list.push_back(MakeWorkgroupRecord(kSystemFonts));
  return {kSuccess, {{"workgroups", list}}};
}

Reply GetPermission(ClientID, const Arguments& arguments) {
  const std::string right = arguments.Text("right");
  for (const char* known : kRights) {
    if (right == known) return Number("value", 1);
  }
  return Number("value", 0);
}

}  // namespace

void AddStateCalls(Dispatcher& dispatcher) {
  // This edition serves one user without a server: always logged in, nothing to replicate.
  static constexpr std::pair<const char*, int> kStates[] = {
      {"GetIsLoggedIn", 1},
      {"GetIsOnline", 1},
      {"GetIsStandaloneMode", 1},
      {"GetIsReplicationRunning", 0},
      {"GetCurrentReplicationMode", 0},
      {"GetIsGoogleWebFontsEnabled", 0},
  };
  for (const auto& [call, value] : kStates) {
    dispatcher.Add(call, Needs::kNothing,
                   [value = value](ClientID, const Arguments&) { return Number("value", value); });
  }
  dispatcher.Add("GetAllWorkgroupsForUser", Needs::kNothing, GetAllWorkgroupsForUser);
  dispatcher.Add("GetPermission", Needs::kNothing, GetPermission);
  dispatcher.Add("GetDefaultLibraryName", Needs::kNothing, [](ClientID, const Arguments&) -> Reply {
    return {kSuccess, {{"name", kFontLibrary.name}}};
  });
  dispatcher.Add("GetSystemWorkgroupID", Needs::kNothing,
                 [](ClientID, const Arguments&) { return Number("workgroupID", kSystemFonts.id); });
}

}  // namespace agent
