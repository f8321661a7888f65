// The record of one document that the plug-in knows to be open in the host. Path, handle and identifier are independent of
// one another; only the identifier is constant during the record's life. A record can be closed while work on it runs the
// event loop, so such work holds it by Hold().
#pragma once

#include <ctime>
#include <memory>
#include <string>

#include "platform/Value.h"

class OneTrackedDocument : public std::enable_shared_from_this<OneTrackedDocument> {
 public:
  // A share of the record; null for one that nobody shares.
  std::shared_ptr<OneTrackedDocument> Hold() { return weak_from_this().lock(); }
  // The host's document ID; 0 until known.
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
  // Seconds since the epoch, 0 until it happened; the setters take the present time.
  std::time_t GetTimeOpenEventWasHandled() const { return mTimeOpenEventWasHandled; }
  void SetTimeOpenEventWasHandled();
  std::time_t GetTimeSaveEventWasHandled() const { return mTimeSaveEventWasHandled; }
  void SetTimeSaveEventWasHandled();
  long GetLastKnownModificationTime() const { return mLastKnownModificationTime; }
  void SetLastKnownModificationTime(long time);
  unsigned long long RetrieveModificationTimeFromFile() const;  // 0 on failure
  // Fonts left over by the classification, and fonts that the agent refused; null if there are none to speak of.
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
  std::string mReserved;  // part of the record; always empty
  std::string mDocumentFilePath;
  std::string mIdentifier;
  std::string mKnownFontUsage;
  bool mCanExportFonts = false;
  platform::Array mUnresolvedFonts;
  platform::Array mNoncompliantFonts;
};
