// What is done with documents, for the user and for a plug-in alike: each operation with its notifications in their order.
// A failed operation leaves documents and files as they were. Results are empty or one line that names the file.
// Main thread only.
#pragma once

#include <functional>

#include "host/ActionControl.h"

namespace host {

class DocumentOperations : public ActionHost {
 public:
  explicit DocumentOperations(std::function<bool(host_sdk::SPPluginRef)> isPlugin) : isPlugin_(std::move(isPlugin)) {}

  // The document comes to the front; a window that shows its missing fonts is ordered; then comes the notification "open".
  // A file that is open already only comes to the front.
  std::string Open(const std::string& path, int32_t* id);
  int32_t Make();
  std::string Edit(int32_t id, const std::string& fontName);
  // The document comes to the front, since the notification "save" is about the current one. That comes twice: when all that
  // can fail is behind, but the file is still the old one, and when the new one is in place. Where nothing is to be written,
  // both come and the file stays. A file that another program put in place of the document's is refused, unless the two
  // differ in their metadata alone, which is kept then.
  std::string Save(int32_t id);
  std::string SaveAs(int32_t id, const std::string& path);
  // The document goes, changes and all; then comes the notification "close".
  std::string Close(int32_t id);

  // Of ActionHost.
  const DocumentList& OpenDocuments() const override { return documents_; }
  Notifiers& EventNotifiers() override { return notifiers_; }
  bool IsPlugin(host_sdk::SPPluginRef plugin) const override { return isPlugin_(plugin); }
  void SelectDocument(int32_t id) override { documents_.BringToFront(id); }
  std::string OpenDocument(const std::string& path) override { return Open(path, nullptr); }
  std::string SaveDocument(int32_t id) override { return Save(id); }
  std::string CloseDocument(int32_t id) override { return Close(id); }

 private:
  // Runs the operation, which gives one line, unless the document is not open. Without memory it alone fails.
  template <class Operation>
  std::string WithDocument(int32_t id, const Operation& operation);
  std::string OpenFile(const std::string& path, int32_t* id);
  // Neither argument may belong to a document, since callbacks may close it.
  std::string WriteTo(int32_t id, const std::string& path, DocumentFormat format);

  std::function<bool(host_sdk::SPPluginRef)> isPlugin_;
  DocumentList documents_;
  Notifiers notifiers_;
};

}  // namespace host
