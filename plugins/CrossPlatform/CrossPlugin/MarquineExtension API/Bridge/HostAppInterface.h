// The host as the rest of the plug-in sees it, without knowing which host it is.
//
// Every operation of the base does nothing, so that a host implements what concerns it. Main thread only. Nothing here
// fails or throws.
#pragma once

#include <map>
#include <string>

#include "Bridge/HostEvents.h"
#include "platform/Value.h"

// Which server a login concerns, as the agent numbers them. 3 is a server that this plug-in has no dealings with.
enum EServerType : int { kServerTypeDefault = 1, kServerTypeIgnored = 3 };

class HostAppInterface {
 public:
  // The one host object, made on first use and kept for the life of the process.
  static HostAppInterface* GetHostAppInterface();
  static void SetForTesting(HostAppInterface* host) { sm_pHostApp = host; }

  // The list of workgroups changed. Despite its name, an implementation may update anything that shows workgroups.
  virtual void RebuildWorkgroupsMenu() = 0;
  // Whether the fonts of the current document may be exported; kept with the document. False without a document.
  virtual void SetCanExportFontsForDocument(bool) {}
  virtual bool CanExportFontsForDocument() { return false; }
  virtual void SetMissingFontsDialogNeeded() {}
  virtual void SetLoggedInState(bool, EServerType) {}
  // The plug-in's services were switched off or on: panels follow.
  virtual void SetPanelsEnabled(bool) {}
  virtual void FontActivationRecognized(unsigned int) {}
  virtual void LumetypeReplicationProgress(const platform::Dictionary&) {}
  virtual void LumetypeReplicationStopped() {}
  // One for each line of HOST_EVENTS. Font IDs are those of the agent; dictionaries are borrowed for the call.
#define HOST_OPERATION(operation, push, parameters, arguments) \
  virtual void operation parameters {}
  HOST_EVENTS(HOST_OPERATION)
#undef HOST_OPERATION
  virtual ~HostAppInterface();

 private:
  static HostAppInterface* sm_pHostApp;
  std::map<std::string, std::string> mProperties;  // part of the object's form; nothing reads it
};
