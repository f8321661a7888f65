// Which fonts the operating system has active, and by which files: the outside view of what the plug-in did.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace console {

class AgentLink;
class Sandbox;

// PostScript name to the font's own file: the target of a link that the agent made, never the link.
using ActiveFiles = std::map<std::string, std::string>;

class FontWatch {
 public:
  FontWatch(const Sandbox& sandbox, AgentLink& agent) : sandbox_(sandbox), agent_(agent) {}

  ActiveFiles Look() const;
  // Those that are active because the agent linked them.
  ActiveFiles LookAtAgents() const;

 private:
  bool IsLink(const std::string& file) const;
  std::string TargetOf(const std::string& link) const;

  const Sandbox& sandbox_;
  AgentLink& agent_;
};

// The names of the first that the second has not.
std::vector<std::string> NamesOnlyIn(const ActiveFiles& first, const ActiveFiles& second);

}  // namespace console
