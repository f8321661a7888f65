// What is found out about one document, and the two forms in which it is written.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace docfonts {

// A font that a document names. Empty texts and missing values are not known.
struct Font {
  std::string name{};                // PostScript name, UTF-8
  std::vector<std::string> found{};  // by which readers: "parser", "pdf", "scan", "list", "slug"
  std::optional<bool> embedded{};
  std::string subset{};                       // the tag of six letters before the name of a part of a font
  std::string type{};                         // as the document calls it
  std::map<std::string, std::string> slug{};  // the stored identification, by the keys of font records
  bool active = false;                        // for the operating system, now
  std::optional<std::string> file{};          // of the library, that would be chosen; empty if there is none
};

struct Report {
  std::string file{};  // as given, any bytes
  std::string kind{};  // empty if not known
  std::vector<Font> fonts{};
  std::vector<std::string> problems{};  // one line each
};

// The object of docfonts.schema.json; bytes that are no UTF-8 become replacement characters. Reading accepts what writing
// gives, and throws for anything else.
nlohmann::ordered_json ToJson(const Report& report);
Report FromJson(const nlohmann::ordered_json& object);

// Lines for a person, each with its end. Without colours it holds no control characters, whatever the document holds.
struct TextStyle {
  bool hasColours = false;
  bool isResolved = false;  // whether the files that would be chosen were asked for
};
std::string ToText(const Report& report, const TextStyle& style);

}  // namespace docfonts
