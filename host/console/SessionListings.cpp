// The listings of a session, and what is known of its documents.
#include <algorithm>

#include "host/console/Session.h"

namespace console {

std::vector<std::string> Session::DocumentNames() const {
  std::vector<std::string> names;
  for (const KnownDocument& known : documents_) names.push_back(known.name);
  return names;
}

std::string Session::DocumentUsing(const std::string& postScriptName) const {
  for (const host::DocumentInfo& info : host_->Documents()) {
    if (std::ranges::find(info.fontNames, postScriptName) != info.fontNames.end()) return info.title;
  }
  return "";
}

void Session::ShowDocuments() {
  CatchUp();
  std::vector<std::string> lines;
  const int32_t front = host_->FrontDocument();
  for (const KnownDocument& known : documents_) {
    const host::DocumentInfo info = InfoOf(known.id);
    std::string line = (known.id == front ? "* " : "  ") + known.name + (info.isDirty ? "  (changed)" : "");
    for (const std::string& name : info.fontNames) line += "  " + name;
    lines.push_back(line);
  }
  if (lines.empty()) lines.emplace_back("no documents");
  report_.Listing(lines);
}

void Session::ShowFonts() {
  std::vector<std::string> lines;
  for (const auto& [name, file] : fonts_.LookAtAgents())
    lines.push_back(std::string("  ").append(name).append("  ").append(file));
  const size_t all = fonts_.Look().size();
  std::string head = std::to_string(all) + " fonts active, ";
  head += std::to_string(lines.size()) + " of them by the agent" + (lines.empty() ? "" : ":");
  lines.insert(lines.begin(), head);
  report_.Listing(lines);
}

void Session::ShowWindows() {
  std::vector<std::string> lines;
  for (const host::WindowInfo& window : host_->Windows()) {
    lines.push_back(std::to_string(window.number) + "  " + window.title + (window.isVisible ? "" : "  (hidden)"));
  }
  if (lines.empty()) lines.emplace_back("no windows");
  report_.Listing(lines);
}

void Session::ShowTrace(size_t lines) { report_.Listing(trace_.LastLines(lines)); }

void Session::ShowPreferences() { report_.Listing(preferences_.Describe()); }

}  // namespace console
