// The fonts that are active in the operating system's font service, fontconfig.
//
// Answers come from a snapshot of fontconfig, which all callers share. It is replaced as soon as a configuration file
// or a font folder has changed, so an answer is never older than the call. The check takes a tenth of a millisecond, a
// new snapshot several. Thread-safe.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

struct ActiveFont {
  std::string postScriptName;           // may be empty
  std::string family;                   // the first family name; may be empty
  std::string file;                     // the path in the font folder, which may be a link
  int faceIndex = 0;                    // index of the face in its file, from 0
  std::vector<std::string> families{};  // all names of the family, in several languages or with parts of the style
  // Of a variable font the range; otherwise both are the same. As in CSS: 400 is regular, 700 is bold.
  int lightest = 400, heaviest = 400;
  bool isItalic = false;  // or oblique
  int stretch = 100;      // width in percent
};

struct FontSnapshot {
  // All scalable faces, in fontconfig's order. Named instances of variable fonts are not listed.
  std::vector<ActiveFont> fonts;
  // The PostScript names of everything that fontconfig lists, including named instances and bitmap fonts.
  std::set<std::string> postScriptNames;
};

// Returns what is active now. Never null; empty if fontconfig cannot read its configuration. Returns the same object as
// long as nothing changes.
PLATFORM_API std::shared_ptr<const FontSnapshot> GetFontSnapshot();

// True if a font with exactly this PostScript name is active. Does not compare family names: "Z003" is not active just
// because the face "Z003-MediumItalic" of that family is.
PLATFORM_API bool IsPostScriptNameActive(const std::string& name);

// Returns the first face of this family and style; null if there is none. The case of the family's letters does not
// matter, weights may differ by 50 and widths by 5.
PLATFORM_API const ActiveFont* FindFace(const FontSnapshot& snapshot, const std::string& family, int weight,
                                        bool isItalic, int stretch);

// Returns the families that can take the place of this one, the preferred ones first: those that the configuration
// binds as closely as the family itself, as a rule because their letters are exactly as wide. They need not be active.
PLATFORM_API std::vector<std::string> InterchangeableFamilies(const std::string& family);

PLATFORM_API std::set<std::string> ActivePostScriptNames();
PLATFORM_API std::vector<ActiveFont> ActiveFonts();

// What the font service goes by, to find out why a font is not active.
struct FontServiceSetup {
  bool isReadable = false;  // false: the configuration cannot be read
  std::vector<std::string> configFiles;
  std::vector<std::string> folders;  // absolute, with all below them; they need not exist
};
PLATFORM_API FontServiceSetup GetFontServiceSetup();

}  // namespace platform
