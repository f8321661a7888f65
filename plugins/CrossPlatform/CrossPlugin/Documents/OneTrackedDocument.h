// The record of one document that is open in the host. Path, handle and identifier are independent of each other; only
// the identifier never changes. Work on a record can run the event loop, which may close it, so such work keeps it
// alive with Hold().
#pragma once

#include <ctime>
#include <memory>
#include <string>

#include "platform/Value.h"

class OneTrackedDocument : public std::enable_shared_from_this<OneTrackedDocument> {
 public:
  // Shares ownership of the record; null if it is not owned by a shared_ptr.
  std::shared_ptr<OneTrackedDocument> Hold() { return weak_from_this().lock(); }
  // The host's document ID; 0 if unknown.
  long GetDocumentHandle() const { return mDocumentHandle; }
  void SetDocumentHandle(long handle) { mDocumentHandle = handle; }
  // UTF-8; empty for an untitled document.
  std::string GetDocumentFilePath() const { return mDocumentFilePath; }
  void SetDocumentFilePath(const std::string& path);
  // The tracker's key.
  std::string GetIdentifier() const { return mIdentifier; }
  void SetIdentifier(const std::string& identifier) { mIdentifier = identifier; }
  std::string GetKnownFontUsage() const { return mKnownFontUsage; }
  void SetKnownFontUsage(const std::string& usage) { mKnownFontUsage = usage; }
  bool GetCanExportFontsForDocument() const { return mCanExportFonts; }
  void SetCanExportFontsForDocument(bool can) { mCanExportFonts = can; }
  bool GetNeedsToBeSluggedOnClose() const { return mNeedsToBeSluggedOnClose; }
  void SetNeedsToBeSluggedOnClose(bool needs) { mNeedsToBeSluggedOnClose = needs; }
  // Seconds since the epoch; 0 before the event. The setters store the current time.
  std::time_t GetTimeOpenEventWasHandled() const { return mTimeOpenEventWasHandled; }
  void SetTimeOpenEventWasHandled();
  std::time_t GetTimeSaveEventWasHandled() const { return mTimeSaveEventWasHandled; }
  void SetTimeSaveEventWasHandled();
  long GetLastKnownModificationTime() const { return mLastKnownModificationTime; }
  void SetLastKnownModificationTime(long time);
  unsigned long long RetrieveModificationTimeFromFile() const;  // 0 on failure
  // The fonts that the classification could not resolve, and the fonts that the agent refused; null if there are none.
  platform::Array GetUnresolvedFonts() const { return mUnresolvedFonts; }
  void SetUnresolvedFonts(const platform::Array& fonts) { mUnresolvedFonts = fonts; }
  platform::Array GetNoncompliantFonts() const { return mNoncompliantFonts; }
  void SetNoncompliantFonts(const platform::Array& fonts) { mNoncompliantFonts = fonts; }
  bool GetHasMissingFonts() const;

 private:
  long mDocumentHandle = 0;
  bool mNeedsToBeSluggedOnClose = false;
  std::time_t mTimeOpenEventWasHandled = 0;
  std::time_t mTimeSaveEventWasHandled = 0;
  long mLastKnownModificationTime = 0;
  std::string mReserved;  // always empty; keeps the layout
  std::string mDocumentFilePath;
  std::string mIdentifier;
  std::string mKnownFontUsage;
  bool mCanExportFonts = false;
  platform::Array mUnresolvedFonts;
  platform::Array mNoncompliantFonts;
};
