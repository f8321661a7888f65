// The operations on documents, for the user and for plug-ins, with their notifications in the right order. A failed
// operation leaves documents and files unchanged. Functions return an empty text or one line that names the file. Main
// thread only.
#pragma once

#include <functional>

#include "host/ActionControl.h"

namespace host {

class DocumentOperations : public ActionHost {
 public:
  explicit DocumentOperations(std::function<bool(host_sdk::SPPluginRef)> isPlugin) : isPlugin_(std::move(isPlugin)) {}

  // Brings the document to the front, shows the missing-fonts window if necessary, and then notifies "open". A file
  // that is already open only comes to the front.
  std::string Open(const std::string& path, int32_t* id);
  int32_t Make();
  std::string Edit(int32_t id, const std::string& fontName);
  // Brings the document to the front, because the notification "save" is about the current one. Notifies twice: when
  // everything that can fail is done but the file is still the old one, and when the new file is in place. If there is
  // nothing to write, both notifications come and the file does not change. Refuses to replace a file that another
  // program has put in place of the document's, unless the two differ only in their metadata, which is then kept.
  std::string Save(int32_t id);
  std::string SaveAs(int32_t id, const std::string& path);
  // Removes the document with its changes, then notifies "close".
  std::string Close(int32_t id);

  // ActionHost.
  const DocumentList& OpenDocuments() const override { return documents_; }
  Notifiers& EventNotifiers() override { return notifiers_; }
  bool IsPlugin(host_sdk::SPPluginRef plugin) const override { return isPlugin_(plugin); }
  void SelectDocument(int32_t id) override { documents_.BringToFront(id); }
  std::string OpenDocument(const std::string& path) override { return Open(path, nullptr); }
  std::string SaveDocument(int32_t id) override { return Save(id); }
  std::string CloseDocument(int32_t id) override { return Close(id); }

 private:
  // Runs the operation if the document is open, and returns its line. If memory runs out, only this operation fails.
  template <class Operation>
  std::string WithDocument(int32_t id, const Operation& operation);
  std::string OpenFile(const std::string& path, int32_t* id);
  // The arguments must not be references into a document, because callbacks may close it.
  std::string WriteTo(int32_t id, const std::string& path, DocumentFormat format);

  std::function<bool(host_sdk::SPPluginRef)> isPlugin_;
  DocumentList documents_;
  Notifiers notifiers_;
};

}  // namespace host
