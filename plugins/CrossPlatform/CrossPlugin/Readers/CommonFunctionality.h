// The host-independent flows: start and stop, reading a document's fonts, and activating them without a dialog. Main
// thread only.
//
// Sources: the operations on file names and bytes are in FontNameScans.cpp. Those that need documents, tracker or
// manager are on the floor of the documents: PluginStartup.cpp (start and stop), DocumentFontData.cpp (a document's
// fonts), SilentActivation.cpp.
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
  // Created while the plug-in is loaded. Identifies the plug-in to MarquineGlobals by its bundle's identifier, or by
  // the path of its binary if the identifier does not begin with "com.velorant.".
  class StaticPluginInitializer {
   public:
    explicit StaticPluginInitializer(const std::string& identifier);
  };

  // Returns 0; 2 without a user-interface object; 3 if not logged in; 4 without workgroups; or a code. Only the first
  // call starts anything.
  static TModuleErrorCode Startup(bool allowDialogs);
  // Returns 0 at the first call, 0x15000000 later.
  static TModuleErrorCode Shutdown();
  // Writes the first-run defaults if no preferences exist.
  static void InitializeCommonPreferences();

  // Activates the fonts that the file names, without a dialog. extraFonts may be null. Returns 0 or an error.
  static TModuleErrorCode ActivateFontsForDocumentSilently(bool useGlyphsure, bool pickBestMatch,
                                                           int& numFontsActivated, const std::string& filePath,
                                                           const platform::Array& extraFonts,
                                                           OneTrackedDocument* document);
  // Adds the fonts of a document that is not open in the host, with their database records. No flow of this host needs
  // it.
  static TModuleErrorCode CreateGlyphsureDataForClosedDocument(const std::string& path, platform::Array fonts,
                                                               long workgroupID, bool& allFontsFound);

  // Appends the ranges between two patterns that begin before `end`. The second form appends only those that contain a
  // middle pattern, from there on. Returns true if there was one.
  static bool FindPatternsBetweenOffsets(DocumentBytes& bytes, size_t start, size_t end, std::string_view beginPattern,
                                         EndFinder& endPattern, OffsetRanges& outRanges);
  static bool FindPatternsBetweenOffsets(DocumentBytes& bytes, size_t start, size_t end, std::string_view beginPattern,
                                         std::string_view middlePattern, EndFinder& endPattern,
                                         OffsetRanges& outRanges);
  // Appends the names, including duplicates. Always returns 0.
  static int GetFontNamesFromByteVector(DocumentBytes& bytes, std::string_view outerBegin, std::string_view middle,
                                        std::string_view skipBytes, std::string_view innerEnd,
                                        std::string_view outerEnd, std::vector<std::string>& outNames);
  // The extension may have its dot, in upper or lower case.
  static bool FileExtensionIs(const std::string& path, const std::string& extension);
  // Appends and reports nothing for a file that cannot be read.
  static void GetFontNamesFromNonXMPSectionOfAdobeDocument(const char* path, std::vector<std::string>& outNames);
  static platform::Array CreateFontArrayFromNonXMPSectionOfAdobeDocument(const char* path);

  // Remove fonts that are internal to the host and exist nowhere else, and fonts whose name starts with a prefix.
  static void RemoveFontsThatHaveNoPossibleReplacement(platform::Array fontArray);
  static void RemoveMatchingFonts(platform::Array fontArray, const std::string& prefix);

  // Read the slug alone, and the XMP data with, if requested, the raw scan.
  static TModuleErrorCode GetAllGlyphsureDataFromDocument(const std::string& filePath,
                                                          const platform::Array& slugArray);
  static TModuleErrorCode GetAllFontDataFromDocFile(const std::string& filePath, const platform::Array& fontArray,
                                                    bool scanRawBytes);

  static void ResetForTesting();
};
