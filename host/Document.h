// One open document: its file, and what was changed since the file was read. Pixels and everything else that the host
// does not edit stay in the file.
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
  int untitledNumber = 0;               // if it was created without a file
  DocumentContent content;              // the file as it was last read or written
  std::vector<std::string> addedFonts;  // fonts of the texts added since, in order
  bool isDirty = false;
  bool isBeingSaved = false;
  std::shared_ptr<platform::Window> missingFontsWindow;  // null unless it is open

  std::vector<std::string> FontNames() const;  // distinct; of the file and of the added texts
  std::string Title() const;                   // the file's name, or "Untitled-" and the number
};

// The open documents. IDs are never reused. Pointers are valid until the document is removed; code that calls a plug-in
// looks the document up again by ID, because the plug-in may close it.
class DocumentList {
 public:
  Document& Add(Document document);  // assigns an ID and brings it to the front
  void Remove(int32_t id);           // brings the previous front document to the front
  void BringToFront(int32_t id);

  const std::vector<std::unique_ptr<Document>>& All() const { return documents_; }  // in the order of opening
  Document* Find(int32_t id) const;
  // Returns the document with the file at this path, however the path is spelled.
  Document* FindByFile(const std::string& path) const;
  Document* Front() const;

 private:
  std::vector<std::unique_ptr<Document>> documents_;
  std::vector<int32_t> order_;  // front document last
  int32_t lastID_ = 0;
  int lastUntitled_ = 0;
};

}  // namespace host
