// The handlers of the session calls. Members of Agent, because they concern its clients and its whole state.
#include "agent/server/Agent.h"

namespace agent {

Answer<calls::Hello> Agent::Serve(ClientID client, const calls::Hello::Arguments& arguments) {
  if (arguments.protocol != kProtocolVersion) {
    log_.Write("a client of protocol " + std::to_string(arguments.protocol) + " was refused");
    return {kVersionMismatch, {kProtocolVersion}};
  }
  ClearDesktop();  // a new client is a program that has just started
  clients_[client].wantsNotifications = arguments.notifications;
  KeepRunning();
  return calls::Hello::Result{kProtocolVersion};
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

// This edition serves a single user without a server: always logged in, nothing to replicate.
#define CONSTANT_STATE(name, number) \
  Answer<calls::name> Agent::Serve(ClientID, const calls::name::Arguments&) { return calls::Value{number}; }
CONSTANT_STATE(GetIsLoggedIn, 1)
CONSTANT_STATE(GetIsOnline, 1)
CONSTANT_STATE(GetIsStandaloneMode, 1)
CONSTANT_STATE(GetIsReplicationRunning, 0)
CONSTANT_STATE(GetCurrentReplicationMode, 0)
#undef CONSTANT_STATE

Answer<calls::GetRenderedPNGsDirectory> Agent::Serve(ClientID, const calls::GetRenderedPNGsDirectory::Arguments&) {
  return calls::GetRenderedPNGsDirectory::Result{previews_.Folder()};
}

Answer<calls::GetStatus> Agent::Serve(ClientID, const calls::GetStatus::Arguments&) {
  calls::GetStatus::Result result;
  result.activeFolder = configuration_.ActiveFolderPath();
  result.isDesktop = configuration_.desktop;
  if (!library_) return {kInvalidVault, std::move(result)};
  const bool isScanning = library_->Scans().IsRunning();
  const ScanProgress progress = isScanning ? library_->Scans().Progress() : webFonts_.Progress();
  result.unwritable = library_->User().Unwritable();
  result.isUnwatched = library_->IsUnwatched();
  result.isScanning = isScanning || webFonts_.IsBusy();
  result.step = static_cast<uint32_t>(progress.step);
  result.steps = static_cast<uint32_t>(progress.steps);
  result.fonts = static_cast<uint32_t>(library_->Table().Count());
  return result;
}

}  // namespace agent
