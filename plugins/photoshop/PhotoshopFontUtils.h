// What the plug-in asks of the host. All results are host errors, 0 for success, unless a result is named; out values are
// written on success only. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "photoshop/HostObjects.h"
#include "platform/Value.h"

class FontProgressProperties;
class OneTrackedDocument;

class PhotoshopFontUtils {
 public:
  using SPErr = host_sdk::SPErr;

  static SPErr GetCurrentDocumentPathUnstableInCS6(std::string* path);
  static SPErr GetCurrentDocumentPathTracked(std::string* path);
  static SPErr GetCurrentDocumentID(int* id);
  // -1 if no open document has this path.
  static SPErr GetDocumentID(int* id, const std::string& path);
  static SPErr GetDocumentDirtyFlag(const int* id, bool* isDirty);
  static SPErr DocumentExists(int id, bool* exists);
  // An untitled document yields an empty string; a failed read ends the walk with the paths so far.
  static SPErr GetUTF8PathsForAllOpenDocuments(std::vector<std::string>& paths);
  // Empty for a document that is not on disk.
  static std::string GetUTF8EncodedPathFromFileAlias(host_sdk::Handle alias);
  static std::string FileNameOnly(const std::string& path);
  static SPErr BringDocumentToFront(int id);
  // Close the current document without saving; open a path. Silently, with a progress box from the one to the other.
  static SPErr PlayeventClose();
  static SPErr PlayeventOpen(const std::string& path);
  static SPErr PlayreplaceSubstitutes();
  static bool CanReplaceSubstitutes() { return true; }
  static SPErr GetPhotoshopFonts(std::vector<std::string>& names);

  // The names that the document's file holds, duplicates too; nothing if it can't be read.
  static void GetDocumentFonts(const std::string& path, std::vector<std::string>& fontNames, bool bOpeningNewDocument);
  // Whether the window that the host is about to show belongs to a document in the middle of opening. null asks for the
  // current document.
  static bool isCurrentDocumentBeingOpened(OneTrackedDocument* document);

  // Throws the error as a long, unless it is 0.
  static void ThrowSPErr(long error);
  static void AcquireSuite(const char* name, int32_t version, const void** suite);
  static void ReleaseSuite(const char* name, int32_t version, const void** suite);

  // Host errors.
  static SPErr AliasToFullPath(host_sdk::Handle alias, char* destination, size_t maximum);
  static SPErr FullPathToAlias(const std::string& path, host_sdk::Handle* alias);

  static void ResetForTesting();

 private:
  // Set by the first open and never cleared.
  inline static int replaceSubstitutes = 0;
  // The one indeterminate progress box from a close to the reopen; null while it does not show.
  static std::unique_ptr<FontProgressProperties> pProgressProperties;

  static int IndexOfDocumentWithPath(const std::string& path);
  static bool IsTrackedDocumentBeingOpened(OneTrackedDocument& document);
};

// The document's font names as a new font array, without duplicates.
void PSGetDocumentFonts(platform::Array& out, const std::string& path, bool bOpeningNewDocument);

class PSDocumentSuite {
 public:
  static host_sdk::SPErr GetDocument(int& id, const std::string& path);
  static host_sdk::SPErr GetCurrentDocument(int& id);
  static host_sdk::SPErr DocumentExists(int id, bool& exists);
};
