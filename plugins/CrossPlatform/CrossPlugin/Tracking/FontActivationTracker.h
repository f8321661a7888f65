// Records which document uses which font. Only this class asks the agent to activate or deactivate fonts for documents.
// A font that was opened for a document stays open until the last document that uses it is closed. A font that was
// active before is never deactivated. A document is known by its identifier only.
//
// Invariant, except during a close with deactivation: a font's nRefCount is the number of times its ID is in the
// vectors of m_mDocuments that are not closed. If an exception of the agent ends a close, some fonts keep counts
// without a vector entry; they are closed at quit. The first registration sets bWasAlreadyActive, sFirstDocument and
// the handle for good.
//
// Locking: the mutex guards the three maps and is held across agent calls while closing. Those calls can run the host's
// event loop, and an open or close on the same thread then proceeds without the mutex. So no iterator or reference into
// a map is kept across an agent call.
//
// The pointer to the user interface is not owned and may be null.
//
// Sources: FontActivationTrackerClosing.cpp (closing, for a document or at the quit), FontActivationTracker.cpp (the
// rest).
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "GMutex.h"
#include "Services/VPFInterface.h"
#include "platform/Value.h"

class FontManagerInterface;

class FontActivationTracker {
 public:
  struct FontInfo {
    platform::Dictionary font;  // the matched record, as passed to the agent
    uint32_t nDatabaseID = 0;
    bool bWasAlreadyActive = false;
    platform::String postScriptName;
    std::string sFirstDocument;
    bool bOpen = false;
    uint32_t nRefCount = 0;
    void* handle = nullptr;  // given at registration, passed back to DeactivateFont
  };
  struct DocumentFonts {
    std::string identifier;
    std::vector<uint32_t> fontIDs;  // in order of registration, with duplicates
  };

  explicit FontActivationTracker(VPFInterface* ui);
  virtual ~FontActivationTracker();  // deactivates nothing
  FontActivationTracker(const FontActivationTracker&) = delete;
  FontActivationTracker& operator=(const FontActivationTracker&) = delete;

  static std::string GenerateUniqueIdentifier();
  // Fallback when the system cannot create a UUID: one random byte as decimal text, never 0. It repeats only after all
  // 255 are used; a repetition is logged, because the two documents then share their counts.
  static std::string GenerateFallbackIdentifier();

  // Registers the matched fonts for the document and activates them in one batch. `activated` and `refused` may be null
  // handles. Returns 0, 1000 without a connected font manager, or the result of the batch. Exceptions of the agent pass
  // through.
  int OpenFontsForIdentifier(const platform::Array& fonts, const std::string& identifier, bool bShowProgress,
                             platform::Array activated, platform::Array refused);
  void RegisterFontWithDocument(const platform::Dictionary& font, const platform::String& name, uint32_t fontID,
                                bool bWasAlreadyActive, const std::string& identifier, void* handle);
  // A close leaves its progress box open; the caller hides it. An open hides its own.
  int CloseAllFontsForIdentifier(const std::string& identifier, bool bDeactivateClosedFonts, bool bShowProgress,
                                 platform::Array fontsDeactivated);
  // For quit: closes all fonts, whatever their counts.
  int CloseAllFonts(bool bDeactivateClosedFonts, bool bShowProgress);

  // Returns the fonts that are registered for the document and open, each once.
  std::vector<FontInfo> GetOpenFontsForIdentifier(const std::string& identifier);
  size_t CountFontsRegisteredForIdentifier(const std::string& identifier);
  // Counts the open fonts that this document registered first. alreadyActive receives the number of those that were
  // active before.
  size_t CountFontsOpenedForIdentifier(const std::string& identifier, size_t& alreadyActive);
  // Removes from the array the fonts that the operating system has active. With removeOnlyManuallyActivated, removes
  // only those that neither the system nor an automatic activation activated.
  static void RemoveActivatedFonts(platform::Array fontArray, int workgroupID, bool removeOnlyManuallyActivated);
  void EndFontChangeSession(bool bShowProgress);
  void AddUnresolvedFont(const std::string& identifier, const std::string& fontName);  // not locked
  std::vector<std::string>& GetUnresolvedFonts(const std::string& identifier);         // not locked

  // For tests that compare the counts with the vectors.
  const std::map<uint32_t, FontInfo>& GetFontsForTesting() const { return m_mFonts; }
  const std::map<std::string, DocumentFonts>& GetDocumentsForTesting() const { return m_mDocuments; }

 private:
  struct OpenRun;
  struct CloseRun;
  struct ProgressContext {
    bool bShow;
    VPFInterface* ui;
    FontProgressProperties* properties;
  };
  using ProgressRef = std::unique_ptr<FontProgressProperties>;

  static void ProgressCallback(int current, int maximum, const std::string& text, void* context);
  ProgressRef StartProgress(bool bShow, size_t count, const char* titleKey, const char* headerKey);

  void PrepareFonts(OpenRun& run);
  void PrepareOneFont(OpenRun& run, const platform::Dictionary& element, size_t index);
  platform::Array CollectFamily(OpenRun& run, const platform::Dictionary& matched);
  void PrepareFamilyFont(OpenRun& run, const platform::Dictionary& element, const platform::Dictionary& font,
                         const std::string& familyName, size_t index);
  static bool IsFamilyActive(OpenRun& run, const std::string& familyName);
  bool QueueForActivation(OpenRun& run, const platform::Dictionary& font, const platform::String& name, uint32_t fontID,
                          const std::string& familyName);
  void RegisterUnderIdentifiers(OpenRun& run, const platform::Dictionary& element, const platform::Dictionary& font,
                                const platform::String& name, uint32_t fontID, bool wasActive, size_t index);
  void AskToGoOnline(OpenRun& run);
  int RunBatch(OpenRun& run, platform::Array activated, platform::Array refused);

  int CloseRegisteredFonts(CloseRun& run, platform::Array fontsDeactivated);
  int CloseInBatch(CloseRun& run, platform::Array fontsDeactivated);
  int CloseOneByOne(CloseRun& run, platform::Array fontsDeactivated);
  int DeactivateOne(CloseRun& run, const FontInfo& info);
  int CloseBooks(CloseRun& run);
  int CloseBooksInBatch(CloseRun& run);
  int CloseBooksOneByOne(CloseRun& run);

  GMutex mMutex;
  std::map<uint32_t, FontInfo> m_mFonts;
  std::map<std::string, DocumentFonts> m_mDocuments;
  std::map<std::string, std::vector<std::string>> m_mUnresolvedFonts;
  VPFInterface* mVPFInterface;
};
