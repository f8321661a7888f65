// One open document: where its file is and what was changed since the file was read. The pixels and everything else that
// the host does not edit stay in the file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/DocumentFile.h"

namespace platform {
class Window;
}

namespace host {

struct Document {
  int32_t id = 0;
  std::string path;                     // absolute, without symbolic links; empty while untitled
  int untitledNumber = 0;               // of a document that was made without a file
  DocumentContent content;              // of the file as it was read or written last
  std::vector<std::string> addedFonts;  // of the texts added since, in that order
  bool isDirty = false;
  bool isBeingSaved = false;
  std::shared_ptr<platform::Window> missingFontsWindow;  // null unless it shows

  std::vector<std::string> FontNames() const;  // of the file and of the texts, distinct
  std::string Title() const;                   // the file's name, or "Untitled-" and the number
};

// The open documents. IDs are never used again. Pointers are valid until the document is removed; code that calls into a
// plug-in asks again by ID, since the plug-in may close documents.
class DocumentList {
 public:
  Document& Add(Document document);  // gives it an ID and puts it in front
  void Remove(int32_t id);           // the one that was in front before it comes to the front
  void BringToFront(int32_t id);

  const std::vector<std::unique_ptr<Document>>& All() const { return documents_; }  // in the order of opening
  Document* Find(int32_t id) const;
  // The document whose file is the one at the path, whatever the path is spelled like.
  Document* FindByFile(const std::string& path) const;
  Document* Front() const;

 private:
  std::vector<std::unique_ptr<Document>> documents_;
  std::vector<int32_t> order_;  // the front one is last
  int32_t lastID_ = 0;
  int lastUntitled_ = 0;
};

}  // namespace host
