// The handlers of the session calls. Members of Agent, because they concern its clients and its whole state.
#include <algorithm>
#include <iterator>

#include "agent/fonts/FontRecord.h"
#include "agent/server/Agent.h"

namespace agent {

namespace {

// The rights of a user without a server, in every workgroup.
constexpr const char* kRights[] = {"CanActivateAcrossWorkgroups", "ExportFonts"};

}  // namespace

Answer<calls::Hello> Agent::Serve(ClientID client, const calls::Hello::Arguments& arguments) {
  ClearDesktop();  // a new client is a program that has just started
  clients_[client].wantsNotifications = arguments.notifications;
  KeepRunning();
  return calls::Hello::Result{static_cast<uint32_t>(kProtocolVersion)};
}

Answer<calls::SetNotifications> Agent::Serve(ClientID client, const calls::SetNotifications::Arguments& arguments) {
  const auto found = clients_.find(client);
  if (found == clients_.end()) return kInvalidParam;
  found->second.wantsNotifications = arguments.wanted;
  return calls::Nothing();
}

Answer<calls::EnableDesignActivation> Agent::Serve(ClientID client, const calls::EnableDesignActivation::Arguments&) {
  const auto found = clients_.find(client);
  if (found == clients_.end()) return kInvalidParam;
  found->second.activatesDesigns = true;
  return calls::Nothing();
}

Answer<calls::InitThreadInstance> Agent::Serve(ClientID, const calls::InitThreadInstance::Arguments&) {
  if (!library_) return kInvalidVault;
  return calls::Nothing();
}

Answer<calls::GetFontVaultPath> Agent::Serve(ClientID, const calls::GetFontVaultPath::Arguments&) {
  return calls::GetFontVaultPath::Result{configuration_.DataFolder()};
}

// This edition serves a single user without a server: always logged in, nothing to replicate, no web fonts.
#define CONSTANT_STATE(name, number) \
  Answer<calls::name> Agent::Serve(ClientID, const calls::name::Arguments&) { return calls::Value{number}; }
CONSTANT_STATE(GetIsLoggedIn, 1)
CONSTANT_STATE(GetIsOnline, 1)
CONSTANT_STATE(GetIsStandaloneMode, 1)
CONSTANT_STATE(GetIsReplicationRunning, 0)
CONSTANT_STATE(GetCurrentReplicationMode, 0)
CONSTANT_STATE(GetIsGoogleWebFontsEnabled, 0)
#undef CONSTANT_STATE

Answer<calls::GetAllWorkgroupsForUser> Agent::Serve(ClientID,
                                                    const calls::GetAllWorkgroupsForUser::Arguments& arguments) {
  calls::GetAllWorkgroupsForUser::Result result;
  result.workgroups.push_back(MakeWorkgroupRecord(kFontLibrary));
  if (arguments.includeSpecial) result.workgroups.push_back(MakeWorkgroupRecord(kSystemFonts));
  return result;
}

Answer<calls::GetDefaultLibraryName> Agent::Serve(ClientID, const calls::GetDefaultLibraryName::Arguments&) {
  return calls::GetDefaultLibraryName::Result{kFontLibrary.name};
}

Answer<calls::GetSystemWorkgroupID> Agent::Serve(ClientID, const calls::GetSystemWorkgroupID::Arguments&) {
  return calls::GetSystemWorkgroupID::Result{kSystemFonts.id};
}

Answer<calls::GetPermission> Agent::Serve(ClientID, const calls::GetPermission::Arguments& arguments) {
  return calls::Value{std::find(std::begin(kRights), std::end(kRights), arguments.right) != std::end(kRights) ? 1u
                                                                                                              : 0u};
}

Answer<calls::GetRenderedPNGsDirectory> Agent::Serve(ClientID, const calls::GetRenderedPNGsDirectory::Arguments&) {
  return calls::GetRenderedPNGsDirectory::Result{previews_.Folder()};
}

Answer<calls::GetStatus> Agent::Serve(ClientID, const calls::GetStatus::Arguments&) {
  calls::GetStatus::Result result;
  result.folders = configuration_.library;
  result.activeFolder = configuration_.ActiveFolderPath();
  result.isDesktop = configuration_.desktop;
  if (!library_) return {kInvalidVault, std::move(result)};
  const ScanProgress progress = library_->Scans().Progress();
  result.isScanning = library_->Scans().IsRunning();
  result.step = static_cast<uint32_t>(progress.step);
  result.steps = static_cast<uint32_t>(progress.steps);
  result.fonts = static_cast<uint32_t>(library_->Table().Count());
  return result;
}

Answer<calls::SetLibraryFolders> Agent::Serve(ClientID, const calls::SetLibraryFolders::Arguments& arguments) {
  for (const std::string& folder : arguments.folders) {
    if (!folder.starts_with('/')) return {kInvalidParam, {folder + ": is not an absolute path"}};
  }
  std::string problem;
  if (!StoreLibrary(configuration_, arguments.folders, problem)) {
    log_.Write(problem);
    return {kDatabaseError, {problem}};
  }
  if (library_) library_->SetFolders(configuration_.library);
  return calls::SetLibraryFolders::Result();
}

}  // namespace agent
