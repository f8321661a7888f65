#include "host/console/FontWatch.h"

#include <cstdlib>
#include <filesystem>

#include "host/console/AgentLink.h"
#include "host/console/Sandbox.h"
#include "platform/Fonts.h"

namespace console {

namespace fs = std::filesystem;

bool FontWatch::IsLink(const std::string& file) const { return file.starts_with(sandbox_.ActiveFolder() + "/"); }

std::string FontWatch::TargetOf(const std::string& link) const {
  std::error_code error;
  const fs::path target = fs::read_symlink(link, error);
  if (!error) return target.string();
  // A hard link does not tell its source; its name is the font's ID.
  const std::string number = fs::path(link).stem().string();
  const std::string file = agent_.FileOf(static_cast<uint32_t>(std::strtoul(number.c_str(), nullptr, 10)));
  return file.empty() ? link : file;
}

ActiveFiles FontWatch::Look() const {
  ActiveFiles active;
  for (const platform::ActiveFont& font : platform::ActiveFonts()) {
    if (font.postScriptName.empty() || active.contains(font.postScriptName)) continue;
    active.emplace(font.postScriptName, IsLink(font.file) ? TargetOf(font.file) : font.file);
  }
  return active;
}

ActiveFiles FontWatch::LookAtAgents() const {
  ActiveFiles active;
  for (const platform::ActiveFont& font : platform::ActiveFonts()) {
    if (IsLink(font.file) && !font.postScriptName.empty()) active.emplace(font.postScriptName, TargetOf(font.file));
  }
  return active;
}

std::vector<std::string> NamesOnlyIn(const ActiveFiles& first, const ActiveFiles& second) {
  std::vector<std::string> names;
  for (const auto& [name, file] : first) {
    if (!second.contains(name)) names.push_back(name);
  }
  return names;
}

}  // namespace console
