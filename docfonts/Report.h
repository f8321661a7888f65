// The report about one document, and its two output formats.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "Readers/Document/FontStyle.h"

namespace docfonts {

// A font in a document. Empty texts and missing values mean unknown.
struct Font {
  std::string name{};  // PostScript name, UTF-8; if the document names a style, the name of that (FontStyle.h)
  std::vector<std::string> found{};  // the readers that found it: "parser", "pdf", "text", "scan", "list", "slug"
  std::optional<FontStyle> style{};  // the family, weight, slant and width that the document names
  std::optional<bool> embedded{};
  std::string subset{};                       // six-letter tag before the name of a subset
  std::string type{};                         // the document's name for the type
  FontLook look{};                            // of a font that is not embedded
  std::map<std::string, std::string> slug{};  // stored identification, with the keys of font records
  bool active = false;                        // active in the operating system now
  std::optional<std::string> file{};          // file of the library that would be chosen; empty if there is none
};

struct Report {
  std::string file{};  // as given, any bytes
  std::string kind{};  // empty if unknown
  std::vector<Font> fonts{};
  std::vector<std::string> problems{};  // one line each
};

// Converts to the object of docfonts.schema.json; malformed UTF-8 becomes replacement characters. FromJson
// accepts what ToJson returns, and throws for anything else.
nlohmann::ordered_json ToJson(const Report& report);
Report FromJson(const nlohmann::ordered_json& object);

// Formats lines for people, each with its end. Without colours the text contains no control characters, whatever the
// document contains.
struct TextStyle {
  bool hasColours = false;
  bool isResolved = false;  // the files that would be chosen are known
};
std::string ToText(const Report& report, const TextStyle& style);

}  // namespace docfonts
