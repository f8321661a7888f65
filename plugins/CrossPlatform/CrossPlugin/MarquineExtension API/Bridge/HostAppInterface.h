// The host as the rest of the plug-in sees it, whatever host that is. The plug-in reports news through these
// operations; the implementation for a host passes them on, for example to its panels.
//
// Main thread only. The operations of the base do nothing, so that an implementation overrides only what concerns its
// host. Nothing here reports an error or throws. Arguments are borrowed for the call; a dictionary that an
// implementation wants to keep must be retained.
#pragma once

#include <map>
#include <string>

#include "Bridge/HostEvents.h"
#include "platform/Value.h"

// The server that a login belongs to, with the agent's numbers. The plug-in ignores logins to server 3.
enum EServerType : int { kServerTypeDefault = 1, kServerTypeIgnored = 3 };

class HostAppInterface {
 public:
  // Returns the one host object. Never null. Created on first use and never deleted; each host program defines this
  // function. The caller does not own the result.
  static HostAppInterface* GetHostAppInterface();
  // Replaces the host object. Not owned; null restores the own one.
  static void SetForTesting(HostAppInterface* host) { sm_pHostApp = host; }

  // The list of workgroups changed. Despite the name, an implementation may update anything that depends on them.
  virtual void RebuildWorkgroupsMenu() = 0;
  // Whether the user may export the fonts of the current document. The value is stored with that document. Without a
  // document setting it does nothing and reading it gives false.
  virtual void SetCanExportFontsForDocument(bool) {}
  virtual bool CanExportFontsForDocument() { return false; }
  virtual void SetMissingFontsDialogNeeded() {}
  // The user logged in (true) or out of a server.
  virtual void SetLoggedInState(bool, EServerType) {}
  // The plug-in's services were switched on or off; panels switch with them.
  virtual void SetPanelsEnabled(bool) {}
  virtual void FontActivationRecognized(unsigned int) {}
  virtual void LumetypeReplicationProgress(const platform::Dictionary&) {}
  virtual void LumetypeReplicationStopped() {}
  // One operation for each line of HOST_EVENTS. Font IDs are the agent's. Dictionaries of progress contain "stepIndex",
  // "numSteps" and "text"; PreviewPNGsRendered gets one entry for each font (see PluginInterface.h).
#define HOST_OPERATION(operation, push, parameters, arguments) \
  virtual void operation parameters {}
  HOST_EVENTS(HOST_OPERATION)
#undef HOST_OPERATION
  virtual ~HostAppInterface();

 private:
  static HostAppInterface* sm_pHostApp;
  std::map<std::string, std::string> mProperties;  // never read; it keeps the size of the object
};
