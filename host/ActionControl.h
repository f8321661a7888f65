// The action control suite: reads properties through references, plays events for a plug-in, and manages notifiers.
#pragma once

#include <string>

#include "host/Document.h"
#include "host/Notifiers.h"

namespace host {

// What a plug-in can make the host do. Each function returns an empty text or a line that says what went wrong.
class ActionHost {
 public:
  virtual ~ActionHost() = default;
  virtual const DocumentList& OpenDocuments() const = 0;
  virtual Notifiers& EventNotifiers() = 0;
  virtual bool IsPlugin(host_sdk::SPPluginRef plugin) const = 0;
  virtual void SelectDocument(int32_t id) = 0;
  virtual std::string OpenDocument(const std::string& path) = 0;
  virtual std::string SaveDocument(int32_t id) = 0;
  virtual std::string CloseDocument(int32_t id) = 0;
};

// Sets the host that the suite uses; not owned. Without a host every function fails, except those for the names of
// codes.
void SetActionHost(ActionHost* host);
ActionHost* CurrentActionHost();

}  // namespace host
