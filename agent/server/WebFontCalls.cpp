// Web fonts: the handlers of their calls, and what the agent does when their folders change.
#include "agent/fonts/ShownText.h"
#include "agent/server/Agent.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Files.h"

namespace agent {

// Each scan is followed by a comparison of the folders, and each change that it makes by a scan.
WebFontEvents Agent::MakeWebFontEvents() {
  WebFontEvents events;
  events.progress = [this](const ScanProgress& progress) {
    NotifyProgress(PluginInterface::kGoogleReplicationProgress, progress);
  };
  events.finished = [this](bool hasChanged, bool hadProgress) {
    if (hadProgress) Notify({{"notify", PluginInterface::kGoogleReplicationStopped}});
    if (hasChanged && library_) library_->Rescan();
  };
  events.report = [this](const std::string& line) { log_.Write(line); };
  return events;
}

void Agent::FollowWebFolder() { webFonts_.SetFolder(configuration_.hasWebFonts ? configuration_.webFolder : ""); }

Answer<calls::GetIsGoogleWebFontsEnabled> Agent::Serve(ClientID, const calls::GetIsGoogleWebFontsEnabled::Arguments&) {
  return calls::Value{configuration_.hasWebFonts ? 1u : 0u};
}

Answer<calls::SetGoogleWebFontsEnabled> Agent::Serve(ClientID,
                                                     const calls::SetGoogleWebFontsEnabled::Arguments& arguments) {
  if (configuration_.webFolder.empty()) return kNotFound;
  if (arguments.enabled == configuration_.hasWebFonts) return calls::Nothing();
  Configuration changed = configuration_;
  changed.hasWebFonts = arguments.enabled;
  std::string problem;
  if (!ChangeConfiguration(changed, problem)) return kDatabaseError;
  Notify({{"notify", PluginInterface::kGoogleWebFontsEnabled}, {"payload", arguments.enabled}});
  return calls::Nothing();
}

Answer<calls::CanAccessGoogleFonts> Agent::Serve(ClientID, const calls::CanAccessGoogleFonts::Arguments&) {
  return calls::Value{platform::FolderExists(configuration_.webFolder) ? 1u : 0u};
}

Answer<calls::SetWebFontsFolder> Agent::Serve(ClientID, const calls::SetWebFontsFolder::Arguments& arguments) {
  const std::string& folder = arguments.folder;
  if (!folder.empty() && !folder.starts_with('/')) return {kInvalidParam, {folder + ": is not an absolute path"}};
  Configuration changed = configuration_;
  changed.webFolder = folder.empty() ? "" : CleanFolder(changed, folder);
  changed.hasWebFonts = changed.hasWebFonts && !folder.empty();
  const bool isDisabled = configuration_.hasWebFonts && folder.empty();
  std::string problem;
  if (!ChangeConfiguration(changed, problem)) return {kDatabaseError, {problem}};
  if (isDisabled) Notify({{"notify", PluginInterface::kGoogleWebFontsEnabled}, {"payload", false}});
  return calls::SetWebFontsFolder::Result();
}

Answer<calls::GetWebFontsStatus> Agent::Serve(ClientID, const calls::GetWebFontsStatus::Arguments&) {
  calls::GetWebFontsStatus::Result result;
  result.folder = configuration_.webFolder;
  result.enabled = configuration_.hasWebFonts;
  result.isUnpacking = webFonts_.IsBusy();
  for (const ScanProblem& problem : webFonts_.Problems()) {
    result.problems.push_back({ShownPath(problem.path), problem.message});
  }
  return result;
}

}  // namespace agent
