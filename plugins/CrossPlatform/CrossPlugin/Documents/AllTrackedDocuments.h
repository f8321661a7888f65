// The documents that the plug-in knows to be open, in order of adding: the bridge between the host's way of naming a
// document, a path or an ID, and the tracker's, an identifier. The list holds the records. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Documents/OneTrackedDocument.h"

class AllTrackedDocuments {
 public:
  using DocumentList = std::vector<std::shared_ptr<OneTrackedDocument>>;

  static DocumentList& GetDocumentList();
  // Files the record under the path; null stands for a new one. If the path is tracked already nothing is added, and the
  // record stays as it is.
  static void AddDocument(std::shared_ptr<OneTrackedDocument> record, const std::string& path);
  // Closes the document's fonts as the preferences say and lets the record go. An exception leaves it in the list.
  static void RemoveClosedDocument(const OneTrackedDocument* record);
  // The first record that matches, or null. Paths compare byte for byte; an empty one finds the first untitled record.
  static OneTrackedDocument* FindTrackedDocumentByPath(const std::string& path);
  static OneTrackedDocument* FindTrackedDocumentByHandle(long handle);
  static OneTrackedDocument* FindTrackedDocumentByIdentifier(const std::string& identifier);
  // These three are for a host that tells which document is meant; this one does not, and no flow calls them.
  static OneTrackedDocument* GetCurrentDocument();
  static void SetCurrentDocument(const std::string& identifier);
  static OneTrackedDocument* GetMostRecentlyOpenedDocument();

  static void ResetForTesting();

 private:
  static std::unique_ptr<DocumentList> s_pDocumentList;
  static std::string s_currentDocumentIdentifier;
};
