// Rules of fontconfig's configuration that hide fonts. Other font managers write such rules.
#pragma once

#include <string>
#include <vector>

namespace nexctl {

struct RejectRule {
  std::string file;  // the configuration file
  std::string glob;  // of the paths of rejected files; empty for a rule about properties of fonts
};

// Files that cannot be read have no rules.
std::vector<RejectRule> RejectRulesIn(const std::vector<std::string>& configFiles);
// True if the rule rejects files in this folder.
bool Rejects(const RejectRule& rule, const std::string& folder);

}  // namespace nexctl
