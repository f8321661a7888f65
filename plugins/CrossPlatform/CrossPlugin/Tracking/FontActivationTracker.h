// The books of which document holds which font; the only part that asks the agent to activate or give back fonts for
// documents. A font opened for a document stays open until the last document that uses it has gone, and a font that was
// active before is never deactivated. Documents are known by their document identifier alone.
//
// Always true, as long as no close with deactivation is in progress: a font's nRefCount is the number of times its ID stands
// in the vectors of m_mDocuments that have not been closed. A close that an exception of the agent ended leaves fonts whose
// count no vector stands for; they wait for the quit. The first registration fixes bWasAlreadyActive, sFirstDocument and the
// handle for good. The mutex guards the three maps and is held across agent calls while closing. The agent calls of a close
// can run the host's loop and with it another open or close on the same thread, which then goes on without the mutex: no
// iterator and no reference into a map is held across an agent call. The pointer to the user interface is not owned and may
// be null.
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
    std::vector<uint32_t> fontIDs;  // in order of registration, with repeats
  };

  explicit FontActivationTracker(VPFInterface* ui);
  virtual ~FontActivationTracker();  // deactivates nothing
  FontActivationTracker(const FontActivationTracker&) = delete;
  FontActivationTracker& operator=(const FontActivationTracker&) = delete;

  static std::string GenerateUniqueIdentifier();
  // The identifier where the system can make no UUID: one random byte as text, never 0, and none twice before all 255 are
  // used up. A repetition goes into the log, as the two documents then share their counts.
  static std::string GenerateFallbackIdentifier();

  // Registers the matched fonts under the identifier and activates them in one batch. activated and refused may be null.
  // 0, 1000 without a connected font manager, or the batch's result. An exception of the agent passes through.
  int OpenFontsForIdentifier(const platform::Array& fonts, const std::string& identifier, bool bShowProgress,
                             platform::Array activated, platform::Array refused);
  void RegisterFontWithDocument(const platform::Dictionary& font, const platform::String& name, uint32_t fontID,
                                bool bWasAlreadyActive, const std::string& identifier, void* handle);
  // A progress box that a close shows stays when it has ended, for the caller to hide; only an open hides its own.
  int CloseAllFontsForIdentifier(const std::string& identifier, bool bDeactivateClosedFonts, bool bShowProgress,
                                 platform::Array fontsDeactivated);
  // For the quit: any font still on the books goes, whatever its count.
  int CloseAllFonts(bool bDeactivateClosedFonts, bool bShowProgress);

  size_t CountFontsRegisteredForIdentifier(const std::string& identifier);
  // Fonts first registered by this document that are open; of them those that were active before are counted apart.
  size_t CountFontsOpenedForIdentifier(const std::string& identifier, size_t& alreadyActive);
  // Removes the fonts that the operating system has active; with removeOnlyManuallyActivated only those that neither the
  // system nor an automatic activation made active.
  static void RemoveActivatedFonts(platform::Array fontArray, int workgroupID, bool removeOnlyManuallyActivated);
  void EndFontChangeSession(bool bShowProgress);
  void AddUnresolvedFont(const std::string& identifier, const std::string& fontName);  // not locked
  std::vector<std::string>& GetUnresolvedFonts(const std::string& identifier);         // not locked

  // For tests that hold the counts against the vectors.
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
