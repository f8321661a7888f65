// The host-independent flows: start and stop, reading a document's fonts, and activating them without a dialog. Main thread.
// The operations that reach up to documents, tracker and manager are defined on the floor of the documents.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ErrorCodes.h"
#include "Readers/RawFontScan.h"
#include "platform/Value.h"

class OneTrackedDocument;

class CommonFunctionality {
 public:
  // Made while the plug-in is loaded: identifies the plug-in to MarquineGlobals, from its bundle's identifier or, where
  // that does not begin with "com.velorant.", from the path of its binary.
  class StaticPluginInitializer {
   public:
    explicit StaticPluginInitializer(const std::string& identifier);
  };

  // 0; 2 no user-interface object; 3 not logged in; 4 no workgroups; or a code. Only the first call starts anything.
  static TModuleErrorCode Startup(bool allowDialogs);
  // 0 on its first call, 0x15000000 on later ones.
  static TModuleErrorCode Shutdown();
  // Writes the first-run defaults if no preferences exist.
  static void InitializeCommonPreferences();

  // Activates what the file alone says, with no dialog. extraFonts may be null. 0 or an error.
  static TModuleErrorCode ActivateFontsForDocumentSilently(bool useGlyphsure, bool pickBestMatch,
                                                           int& numFontsActivated, const std::string& filePath,
                                                           const platform::Array& extraFonts,
                                                           OneTrackedDocument* document);
  // Adds the fonts of a document that is not open in the host, with their database records. No flow of this host needs it.
  static TModuleErrorCode CreateGlyphsureDataForClosedDocument(const std::string& path, platform::Array fonts,
                                                               long workgroupID, bool& allFontsFound);

  // Ranges between two patterns that begin before `end`, appended; the second form counts only those that hold a middle
  // pattern, from it on. True if there was one.
  static bool FindPatternsBetweenOffsets(DocumentBytes& bytes, size_t start, size_t end, std::string_view beginPattern,
                                         EndFinder& endPattern, OffsetRanges& outRanges);
  static bool FindPatternsBetweenOffsets(DocumentBytes& bytes, size_t start, size_t end, std::string_view beginPattern,
                                         std::string_view middlePattern, EndFinder& endPattern,
                                         OffsetRanges& outRanges);
  // Appends the names found, duplicates too. Always 0.
  static int GetFontNamesFromByteVector(DocumentBytes& bytes, std::string_view outerBegin, std::string_view middle,
                                        std::string_view skipBytes, std::string_view innerEnd,
                                        std::string_view outerEnd, std::vector<std::string>& outNames);
  // The extension with or without its dot, in whatever case.
  static bool FileExtensionIs(const std::string& path, const std::string& extension);
  // Nothing, and no report, for a file that can't be read.
  static void GetFontNamesFromNonXMPSectionOfAdobeDocument(const char* path, std::vector<std::string>& outNames);
  static platform::Array CreateFontArrayFromNonXMPSectionOfAdobeDocument(const char* path);

  // Fonts that are internal to the host and could be found nowhere; fonts whose name starts with a prefix.
  static void RemoveFontsThatHaveNoPossibleReplacement(platform::Array fontArray);
  static void RemoveMatchingFonts(platform::Array fontArray, const std::string& prefix);

  // The slug alone; XMP data and, if asked, the raw scan.
  static TModuleErrorCode GetAllGlyphsureDataFromDocument(const std::string& filePath,
                                                          const platform::Array& slugArray);
  static TModuleErrorCode GetAllFontDataFromDocFile(const std::string& filePath, const platform::Array& fontArray,
                                                    bool scanRawBytes);

  static void ResetForTesting();
};
