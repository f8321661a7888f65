// A host's state folder: everything that the host, the plug-in and the agent store.
//
//   STATE/host.lock      held by the one host that uses the folder; names its process while that lives
//   STATE/nexcore.json, root, home, logs   see agent/client/StateFolder.h; the list of library folders stays until
//                        another is given
//   STATE/fonts.conf     which fonts are active in the sandbox: DejaVu, and what the agent links into STATE/active
//   STATE/run, agent, active   the agent's; see agent/include/AgentProtocol.h
//   STATE/cache          fontconfig's cache
//   STATE/preferences.plist    the user-interface framework's preferences
//   STATE/run/panel.html opens the font panel's page, whose address is secret
//   STATE/copies               where documents are saved that must not be changed themselves
//
// Each file is replaced atomically, and only if its content changes.
#pragma once

#include <string>
#include <vector>

#include "platform/LocalSocket.h"

namespace console {

struct SandboxOptions {
  std::string stateFolder;           // empty for the user's folder of program states
  std::vector<std::string> library;  // empty for the stored list, or else Debian's font folders
  bool desktop = false;              // activate for the user's own programs
};

class Sandbox {
 public:
  Sandbox() = default;
  ~Sandbox();  // releases the folder
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  // Creates what is missing and calls platform::SetPlaces. Returns an empty text, or one line that names the file; then
  // stored data is neither changed nor lost.
  std::string Prepare(const SandboxOptions& options);

  // True if the folder that Prepare took is still in its place.
  bool IsInPlace() const;

  const std::string& Folder() const { return folder_; }
  const std::vector<std::string>& Library() const { return library_; }
  std::string AgentExecutable() const;
  std::string InterfaceFramework() const;      // through which the plug-in calls the agent
  std::string UserInterfaceFramework() const;  // boxes, texts, preferences
  std::string EventsFramework() const;         // between the plug-in and its panel
  std::string PluginBundle() const;
  std::string FontListerExecutable() const;  // docfonts
  std::string PanelPageFolder() const;       // the files of the font panel's page
  std::string PreviewFolder() const {
    return folder_ + "/agent/previews";
  }                                                                     // the names of fonts that the agent has drawn
  std::string PanelLog() const { return folder_ + "/logs/panel.log"; }  // of the panel's server, for this run
  std::string PanelRedirect() const { return folder_ + "/run/panel.html"; }
  std::string ActiveFolder() const { return activeFolder_; }
  std::string AgentErrors() const {
    return folder_ + "/logs/agent.err";
  }  // what the agent started last has complained of
  // True if an agent that started earlier with this folder would now read another configuration.
  bool HasNewAgentConfiguration() const { return newAgentConfiguration_; }
  // The process that used the folder before and ended without releasing it; 0 if there is none.
  int KilledPredecessor() const { return killedPredecessor_; }

  // Where to save a copy of the document. Two documents with one name get two places within a run.
  std::string PlaceForCopy(const std::string& document);

 private:
  std::string Lock();
  std::string MakeFolders() const;
  std::string SetUp(const SandboxOptions& options);
  std::string WriteFontConfiguration() const;

  std::string folder_;
  std::string app_;  // the folder of host/ and agent/
  std::string activeFolder_;
  std::vector<std::string> library_;
  std::vector<std::string> copies_;
  platform::Descriptor lock_;
  bool newAgentConfiguration_ = false;
  int killedPredecessor_ = 0;
};

}  // namespace console
