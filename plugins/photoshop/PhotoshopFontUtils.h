// The plug-in's queries to the host. All results are host errors, 0 for success, unless noted. Out values are written
// on success only. Main thread only.
//
// Sources: PlayEvents.cpp (Playevent...), AliasPaths.cpp (aliases and bookmarks), PhotoshopDocumentFonts.cpp (fonts of
// documents and of the host), DescriptorWalk.cpp (ProcessDescriptor), PhotoshopFontUtils.cpp (the rest).
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
  int fontCount = 0;                   // the number that the walk added
  std::vector<std::string> fileReferences;
};

class PhotoshopFontUtils {
 public:
  using SPErr = host_sdk::SPErr;

  static SPErr GetCurrentDocumentPathUnstableInCS6(std::string* path);
  static SPErr GetCurrentDocumentPathTracked(std::string* path);
  static SPErr GetCurrentDocumentID(int* id);
  // Returns -1 if no open document has this path.
  static SPErr GetDocumentID(int* id, const std::string& path);
  static SPErr GetDocumentDirtyFlag(const int* id, bool* isDirty);
  static SPErr DocumentExists(int id, bool* exists);
  // An untitled document adds an empty string. A failed read ends the walk; `paths` keeps what was read so far.
  static SPErr GetUTF8PathsForAllOpenDocuments(std::vector<std::string>& paths);
  // Empty for a document that was never saved.
  static std::string GetUTF8EncodedPathFromFileAlias(host_sdk::Handle alias);
  static std::string FileNameOnly(const std::string& path);
  static SPErr BringDocumentToFront(int id);
  // Close the current document without saving, and open a path. No dialogs; a progress box shows from the close to the
  // open.
  static SPErr PlayeventClose();
  static SPErr PlayeventOpen(const std::string& path);
  // These three report what the host supports and contains. Reopening the document made them unnecessary; nothing calls
  // them.
  static SPErr PlayreplaceSubstitutes();
  static bool CanReplaceSubstitutes() { return true; }
  static SPErr GetPhotoshopFonts(std::vector<std::string>& names);

  // Walks a descriptor recursively: traces every key and stores texts in `found`. The caller keeps the descriptor. A
  // host error ends the walk; `found` keeps what was found so far. Nothing calls it: it is for hosts whose events name
  // fonts.
  static SPErr ProcessDescriptor(host_sdk::PIActionDescriptor descriptor, DescriptorTexts& found);

  // Appends the font names in the document's file, with duplicates; nothing if the file cannot be read.
  static void GetDocumentFonts(const std::string& path, std::vector<std::string>& fontNames, bool bOpeningNewDocument);
  // True if the window that the host is about to show belongs to a document that is being opened. Null means the
  // current document.
  static bool isCurrentDocumentBeingOpened(OneTrackedDocument* document);

  // Throws the error as a long. Does nothing for 0.
  static void ThrowSPErr(long error);
  static void AcquireSuite(const char* name, int32_t version, const void** suite);
  static void ReleaseSuite(const char* name, int32_t version, const void** suite);

  // `destination` has room for `maximum` bytes. It is empty after a failure; a path that is too long is cut.
  static SPErr AliasToFullPath(host_sdk::Handle alias, char* destination, size_t maximum);
  static SPErr FullPathToAlias(const std::string& path, host_sdk::Handle* alias);
  // Converts between a path and a bookmark, which can be stored and finds a file after a rename (platform/Bookmark.h).
  static SPErr BookmarkToFullPath(const platform::Data& bookmark, char* destination, size_t maximum);
  static SPErr FullPathToBookmark(const std::string& path, platform::Data* bookmark);

  static void ResetForTesting();

 private:
  // Set by the first open and never cleared.
  inline static int replaceSubstitutes = 0;
  // The indeterminate progress box between a close and the reopen; null while it is hidden.
  static std::unique_ptr<FontProgressProperties> pProgressProperties;

  // The objects of the walk of ProcessDescriptor, while it runs.
  static PSFU_FreeZone* sFreeZone;

  static SPErr ProcessInfoFromDescriptor(host_sdk::PIActionDescriptor descriptor, DescriptorTexts& found);
  static SPErr ProcessInfoFromList(host_sdk::PIActionList list, host_sdk::FourCharCode key, DescriptorTexts& found);
  static int IndexOfDocumentWithPath(const std::string& path);
  static bool IsTrackedDocumentBeingOpened(OneTrackedDocument& document);
};

// Sets `out` to a new font array with the document's font names, without duplicates.
void PSGetDocumentFonts(platform::Array& out, const std::string& path, bool bOpeningNewDocument);

class PSDocumentSuite {
 public:
  static host_sdk::SPErr GetDocument(int& id, const std::string& path);
  static host_sdk::SPErr GetCurrentDocument(int& id);
  static host_sdk::SPErr DocumentExists(int id, bool& exists);
};
