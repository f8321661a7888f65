// What became of the fonts of one document, and the two output formats.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace with_fonts {

enum class EUse {
  kActive,     // before
  kEmbedded,   // in the document itself, so nothing is activated
  kActivated,  // for this document
  kMissing,    // not in the library
  kRefused,    // must not be activated
  kLeft,       // in the library, but not activated because of a refused one
  kFailed,     // activated, but programs do not see it
  kFound,      // would be activated; of a dry run only
};

struct FontUse {
  std::string name{};  // as the document names it
  EUse use = EUse::kMissing;
  std::string file{};                  // of an active font
  std::vector<std::string> nearest{};  // PostScript names in the library, of a missing font
};

struct DocumentFonts {
  std::string document{};  // as given, any bytes
  std::vector<FontUse> fonts{};
  std::vector<std::string> problems{};  // one line each

  bool IsComplete() const;  // all fonts are active, or would be
};

// Malformed UTF-8 becomes replacement characters in ToJson. FromJson accepts what ToJson returns, and throws for
// anything else.
nlohmann::ordered_json ToJson(const DocumentFonts& fonts);
DocumentFonts FromJson(const nlohmann::ordered_json& object);
// One line with its end, for people.
std::string ToLine(const DocumentFonts& fonts);

}  // namespace with_fonts
