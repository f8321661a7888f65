// The fonts that the operating system's font service, fontconfig, has active.
//
// A question is answered from a snapshot of fontconfig. The snapshot is shared by all questions and replaced as soon as
// a configuration file or a font folder has changed, so an answer is never older than the question. Checking for
// changes takes a tenth of a millisecond, a new snapshot several. Any thread.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

struct ActiveFont {
  std::string postScriptName;  // may be empty
  std::string family;          // the first family name; may be empty
  std::string file;            // the path in the font folder, which may be a link
  int faceIndex = 0;           // the number of the face in its file, from 0
};

struct FontSnapshot {
  // All scalable faces, in fontconfig's order. Named instances of variable fonts are not listed.
  std::vector<ActiveFont> fonts;
  // The PostScript names of everything that fontconfig lists: named instances and bitmap fonts too.
  std::set<std::string> postScriptNames;
};

// What is active now. Never null; empty if fontconfig can't read its configuration. Two calls return the same object if
// nothing has changed in between.
PLATFORM_API std::shared_ptr<const FontSnapshot> GetFontSnapshot();

// Whether a font with exactly this PostScript name is active. A family name is no PostScript name, even if the two are
// often the same text: "Z003" is not active because the face "Z003-MediumItalic" of that family is.
PLATFORM_API bool IsPostScriptNameActive(const std::string& name);

PLATFORM_API std::set<std::string> ActivePostScriptNames();
PLATFORM_API std::vector<ActiveFont> ActiveFonts();

}  // namespace platform
