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
class PSFU_FreeZone;

// What the walk of a descriptor collects.
struct DescriptorTexts {
  std::vector<std::string> fontNames;  // each once
  int fontCount = 0;                   // how many of them the walk added
  std::vector<std::string> fileReferences;
};

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
  // These three answer what the host could do and has; the reopen of a document made them needless, and no flow calls them.
  static SPErr PlayreplaceSubstitutes();
  static bool CanReplaceSubstitutes() { return true; }
  static SPErr GetPhotoshopFonts(std::vector<std::string>& names);

  // The recursive walk of a descriptor, which stays the caller's: every key goes to the trace, texts go to `found`. A host
  // error ends it with what was found so far. For the day on which the host's events tell of fonts; no flow calls it.
  static SPErr ProcessDescriptor(host_sdk::PIActionDescriptor descriptor, DescriptorTexts& found);

  // The names that the document's file holds, duplicates too; nothing if it can't be read.
  static void GetDocumentFonts(const std::string& path, std::vector<std::string>& fontNames, bool bOpeningNewDocument);
  // Whether the window that the host is about to show belongs to a document in the middle of opening. null asks for the
  // current document.
  static bool isCurrentDocumentBeingOpened(OneTrackedDocument* document);

  // Throws the error as a long, unless it is 0.
  static void ThrowSPErr(long error);
  static void AcquireSuite(const char* name, int32_t version, const void** suite);
  static void ReleaseSuite(const char* name, int32_t version, const void** suite);

  // The destination has `maximum` bytes and is empty after a failure; a longer path of an alias is cut.
  static SPErr AliasToFullPath(host_sdk::Handle alias, char* destination, size_t maximum);
  static SPErr FullPathToAlias(const std::string& path, host_sdk::Handle* alias);
  // A file that is found again after a rename, by data that can be stored (platform/Bookmark.h).
  static SPErr BookmarkToFullPath(const platform::Data& bookmark, char* destination, size_t maximum);
  static SPErr FullPathToBookmark(const std::string& path, platform::Data* bookmark);

  static void ResetForTesting();

 private:
  // Set by the first open and never cleared.
  inline static int replaceSubstitutes = 0;
  // The one indeterminate progress box from a close to the reopen; null while it does not show.
  static std::unique_ptr<FontProgressProperties> pProgressProperties;

  // While ProcessDescriptor runs: what its walk has met and not given back.
  static PSFU_FreeZone* sFreeZone;

  static SPErr ProcessInfoFromDescriptor(host_sdk::PIActionDescriptor descriptor, DescriptorTexts& found);
  static SPErr ProcessInfoFromList(host_sdk::PIActionList list, host_sdk::FourCharCode key, DescriptorTexts& found);
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
