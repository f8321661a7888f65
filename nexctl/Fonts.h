// Fonts named on the command line, and their descriptions.
#pragma once

#include <string>
#include <vector>

#include "nexctl/Session.h"

namespace nexctl {

using Description = calls::DescribeFonts::Font;

// An ID from a word of digits; nothing else. Throws WrongUsage.
uint32_t NumberOf(const std::string& word);
// The IDs of fonts, each named by its ID or its PostScript name. Throws Failure for a font that does not exist, and for
// a name that several files have.
Numbers FontsNamed(Session& session, const std::vector<std::string>& words);
// In the order of the IDs; fonts that do not exist are left out.
std::vector<Description> Describe(Session& session, const Numbers& ids);
// Fonts that a rule describes, or all, sorted by name. Throws WrongUsage for a mistake in the rule.
Numbers FontsThat(Session& session, const std::string& rule);
// "active", "for a document", ... ; empty for an inactive font.
std::string StateText(const Description& font);
// The absolute path of a folder named on the command line. Throws Failure.
std::string AbsoluteFolder(const std::string& argument);
std::string DayText(uint32_t seconds);  // "2026-01-31"; empty for 0

}  // namespace nexctl
