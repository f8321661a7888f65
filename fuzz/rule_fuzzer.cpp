// Any text as a rule over fonts: it is read, or refused with a line for people that says where; a rule and its negation
// disagree.
#include <string>

#include "Check.h"
#include "Input.h"
#include "agent/fonts/FontRule.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text = BytesOf(data, size);
  agent::Font font;
  font.face.family = "Garamond";
  font.face.traits.weight = 700;
  const agent::RuleSubject subject{font, true, 1700000000};
  try {
    const bool matches = agent::FontRule::Parse(text).Matches(subject);
    // The negation may be too long, or have one level too many.
    CHECK(agent::FontRule::Parse("not (" + std::string(text) + ")").Matches(subject) != matches);
  } catch (const agent::RuleError& error) {
    CHECK(std::string_view(error.what()).find("rule") != std::string_view::npos);
  }
  return 0;
}
