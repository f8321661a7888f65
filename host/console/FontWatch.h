// The fonts that the operating system has active, and their files: an outside view of what the plug-in did.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace console {

class AgentLink;
class Sandbox;

// PostScript name to the font's own file: the target of the agent's link, never the link.
using ActiveFiles = std::map<std::string, std::string>;

class FontWatch {
 public:
  FontWatch(const Sandbox& sandbox, AgentLink& agent) : sandbox_(sandbox), agent_(agent) {}

  ActiveFiles Look() const;
  // The fonts that are active because the agent linked them.
  ActiveFiles LookAtAgents() const;

 private:
  bool IsLink(const std::string& file) const;
  std::string TargetOf(const std::string& link) const;

  const Sandbox& sandbox_;
  AgentLink& agent_;
};

// The names that are in `first` but not in `second`.
std::vector<std::string> NamesOnlyIn(const ActiveFiles& first, const ActiveFiles& second);

}  // namespace console
