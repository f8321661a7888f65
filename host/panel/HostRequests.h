// The page's requests to the host itself, for what the plug-in's messages have no words for. They are events of their
// own:
//   page to host   {"request": 7, "call": "deactivateFamily", "fontID": 12}    "request" is any number of the page's
//   host to page   {"request": 7, ...}  or  {"request": 7, "problem": "failed"}
// docs/PANEL.md lists the calls. To add one: a row in HostRequests.cpp, what it needs in FontSource, and a row there.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace panel {

inline constexpr const char* kPageToHost = "com.velorant.PageToHost";
inline constexpr const char* kHostToPage = "com.velorant.HostToPage";

// What the host knows of fonts and can do with them. Every function returns nothing if no agent answers.
class FontSource {
 public:
  virtual ~FontSource() = default;

  // What a smart list can be made of.
  struct Part {
    const char* kind;  // "workgroup", "set" or "smartset"
    uint32_t number = 0;
    std::string name;
  };
  virtual std::optional<std::vector<Part>> Parts() = 0;

  struct Kind {
    std::string kind;  // of font files, as in the agent's records
    std::vector<uint32_t> fontIDs;
  };
  virtual std::optional<std::vector<Kind>> Kinds() = 0;

  struct Kept {
    uint32_t fontID = 0;
    const char* why;       // "document", "system", "file" or "program": what keeps the font active
    std::string document;  // the name of an open one that uses the font; empty if none is known
  };
  struct Deactivation {
    std::vector<uint32_t> inactive;  // by this call
    std::vector<Kept> kept;
  };
  // Deactivates the active fonts of this font's family, except those that documents use. Also nothing for an unknown
  // font.
  virtual std::optional<Deactivation> DeactivateFamily(uint32_t fontID) = 0;
};

// Returns the answer to a request; empty if the text has no number that it could be sent under.
std::string AnswerHostRequest(FontSource& fonts, const std::string& text);

}  // namespace panel
