#include "road/Row.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>

#include "platform/Files.h"
#include "road/HostProcess.h"
#include "support/TempFolder.h"

namespace road {

namespace {

constexpr const char* kSeparator = ";";

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\r");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find(separator, start), text.size());
    if (const std::string part = Trimmed(text.substr(start, end - start)); !part.empty()) parts.push_back(part);
    start = end + separator.size();
  }
  return parts;
}

std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += " " + name;
  return names.empty() ? " -" : text;
}

std::string ExtensionOf(const std::string& path) { return path.substr(path.rfind('.') + 1); }

// The outcome has the first event of each kind. Errors come first, so that no row expects one by accident.
std::string Outcome(const HostResult& result) {
  std::map<std::string, Json> first;
  std::string errors;
  for (const Json& event : result.Events()) {
    if (event["event"] == "error") errors += "error " + event["message"].get<std::string>() + " | ";
    first.emplace(event["event"].get<std::string>(), event);
  }
  if (!first.contains("opened")) return errors + "not opened";
  std::vector<std::string> activated;
  for (const Json& font : first["opened"]["activated"]) {
    activated.push_back(font["name"].get<std::string>() + "(" + ExtensionOf(font["file"].get<std::string>()) + ")");
  }
  const auto names = [&](const char* event, const char* key) {
    return Listed(first[event].value(key, std::vector<std::string>()));
  };
  return errors + "active" + names("opened", "active") + " | now" + Listed(activated) + " | missing" +
         names("opened", "missing") + " | slug" + names("saved", "slug") + " | back" + names("closed", "deactivated");
}

}  // namespace

std::string Row::Text() const { return document + " ; " + library + " ; " + preferences + " ; " + expected; }

std::vector<std::string> LibraryFolders(const std::string& names) {
  static const std::map<std::string, std::vector<std::string>> sFolders = {
      {"-", {}},
      {"liberation", {"/usr/share/fonts/truetype/liberation2"}},
      {"dejavu", {"/usr/share/fonts/truetype/dejavu"}},
      {"otf", {"/usr/share/fonts/opentype/urw-base35"}},
      {"t1", {"/usr/share/fonts/type1/urw-base35"}},
      {"pfb", {"/usr/share/fonts/X11/Type1"}},
      {"urw",
       {"/usr/share/fonts/opentype/urw-base35", "/usr/share/fonts/type1/urw-base35", "/usr/share/fonts/X11/Type1"}},
  };
  std::vector<std::string> folders;
  for (const std::string& name : Split(names, ",")) {
    const auto found = sFolders.find(name);
    if (found == sFolders.end()) throw std::runtime_error("no library is named " + name);
    folders.insert(folders.end(), found->second.begin(), found->second.end());
  }
  return folders;
}

std::vector<Row> ReadRows(const std::string& path) {
  std::string text;
  if (platform::ReadFile(path, text)) throw std::runtime_error(path + " can't be read");
  std::vector<Row> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (Trimmed(line).empty() || line.starts_with("#")) continue;
    const std::vector<std::string> cells = Split(line, kSeparator);
    if (cells.size() != 4) throw std::runtime_error("no row: " + line);
    rows.push_back({cells[0], cells[1], cells[2], cells[3]});
  }
  return rows;
}

std::string RunRow(const Row& row) {
  const test_support::TempFolder folder;
  const StateFolder state(folder / "state");
  std::filesystem::create_directories(folder / "empty");
  std::vector<std::string> arguments = {"--json", "--state", state.Path()};
  std::vector<std::string> library = LibraryFolders(row.library);
  if (library.empty()) library.push_back(folder / "empty");
  for (const std::string& each : library) arguments.insert(arguments.end(), {"--library", each});

  std::string script;
  for (const std::string& preference :
       row.preferences == "-" ? std::vector<std::string>() : Split(row.preferences, " ")) {
    const size_t equals = preference.find('=');
    if (equals == std::string::npos) throw std::runtime_error("no preference: " + preference);
    script += "set " + preference.substr(0, equals) + " " + preference.substr(equals + 1) + "\n";
  }
  const std::string extension = row.document.substr(row.document.rfind('.'));
  script += "open '" SOURCE_DIR "/samples/" + row.document + "'\nwait 6\n";
  script += "save-as '" + folder / ("saved" + extension) + "'\nclose\n";
  arguments.insert(arguments.end(), {"--script", folder.Write("script", script)});
  return Outcome(RunHost(arguments));
}

}  // namespace road
