// The action control suite: properties read through references, events played by a plug-in, notifiers.
#pragma once

#include <string>

#include "host/Document.h"
#include "host/Notifiers.h"

namespace host {

// What a plug-in can set going. Each operation returns an empty text or a line that says what went wrong.
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

// The host that the suite speaks for from here on; not owned. Without one every call but the names of codes fails.
void SetActionHost(ActionHost* host);
ActionHost* CurrentActionHost();

}  // namespace host
