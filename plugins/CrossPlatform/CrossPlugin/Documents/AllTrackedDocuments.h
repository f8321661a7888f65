// The documents that the plug-in knows to be open, in the order in which they were added. Translates between the host's
// names for a document, a path or an ID, and the tracker's identifier. Owns the records. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Documents/OneTrackedDocument.h"

class AllTrackedDocuments {
 public:
  using DocumentList = std::vector<std::shared_ptr<OneTrackedDocument>>;

  static DocumentList& GetDocumentList();
  // Adds the record with this path; null adds a new record. Does nothing if the path is tracked already.
  static void AddDocument(std::shared_ptr<OneTrackedDocument> record, const std::string& path);
  // Closes the document's fonts as the preferences say and removes the record. If that throws, the record stays.
  static void RemoveClosedDocument(const OneTrackedDocument* record);
  // Return the first record that matches, or null. Paths are compared byte for byte; an empty path finds the first
  // untitled record.
  static OneTrackedDocument* FindTrackedDocumentByPath(const std::string& path);
  static OneTrackedDocument* FindTrackedDocumentByHandle(long handle);
  static OneTrackedDocument* FindTrackedDocumentByIdentifier(const std::string& identifier);
  // For hosts that say which document is meant. This host does not, and nothing calls these three.
  static OneTrackedDocument* GetCurrentDocument();
  static void SetCurrentDocument(const std::string& identifier);
  static OneTrackedDocument* GetMostRecentlyOpenedDocument();

  static void ResetForTesting();

 private:
  static std::unique_ptr<DocumentList> s_pDocumentList;
  static std::string s_currentDocumentIdentifier;
};
