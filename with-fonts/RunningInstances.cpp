#include "with-fonts/RunningInstances.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/Files.h"
#include "with-fonts/OpenFiles.h"
#include "with-fonts/ProgramPath.h"

namespace with_fonts {

namespace {

namespace fs = std::filesystem;

constexpr const char* kGeneralFolders[] = {"/bin", "/usr/bin", "/usr/local/bin", "/sbin", "/usr/sbin", "/usr/games"};

std::string RealPath(const std::string& path) {
  std::error_code error;
  const std::string real = fs::canonical(path, error).string();
  return error ? "" : real;
}

// Programs that the first one that needs them starts for the whole session.
constexpr const char* kOfSession[] = {
    "dbus-daemon", "dbus-launch",   "dbus-broker", "at-spi-bus-launcher", "at-spi2-registryd",
    "gvfsd",       "dconf-service", "gpg-agent",   "ssh-agent",           "pulseaudio",
    "pipewire",    "kdeinit5",      "kded5",       "ibus-daemon",         "fcitx5"};

bool IsScript(const std::string& file) {
  char start[2] = {};
  std::ifstream(file).read(start, sizeof start);
  return start[0] == '#' && start[1] == '!';
}

bool IsShell(const std::string& program) {
  std::ifstream shells("/etc/shells");
  for (std::string line; std::getline(shells, line);) {
    if (line.starts_with('/') && RealPath(line) == program) return true;
  }
  return false;
}

std::string LinkAt(const std::string& path) {
  std::error_code error;
  return fs::read_symlink(path, error).string();
}

std::vector<std::string> CommandLineOf(const std::string& folder) {
  std::ifstream file(folder + "/cmdline", std::ios::binary);
  std::vector<std::string> words;
  for (std::string word; std::getline(file, word, '\0');) words.push_back(word);
  return words;
}

}  // namespace

RunningInstances::RunningInstances(const std::vector<std::string>& words, const std::vector<std::string>& documents) {
  for (const std::string& document : documents) documents_.push_back(RealPath(document));
  const std::string file = PathOfProgram(words[0]);
  if (file.empty()) return;
  if (IsScript(file)) {
    const std::string folder = fs::path(file).parent_path().string();
    const bool isGeneral =
        std::find(std::begin(kGeneralFolders), std::end(kGeneralFolders), folder) != std::end(kGeneralFolders);
    if (!isGeneral) folder_ = folder;
    return;
  }
  if (IsShell(file)) return;
  program_ = file;
  const bool hasScript = words.size() > 1 && platform::FileExists(words[1]) &&
                         std::find(documents_.begin(), documents_.end(), RealPath(words[1])) == documents_.end();
  if (hasScript) script_ = words[1];
}

bool RunningInstances::IsInstance(const std::string& folder) const {
  const std::string program = LinkAt(folder + "/exe");
  if (program.empty()) return false;
  if (!folder_.empty()) return fs::path(program).parent_path() == folder_;
  if (program != program_) return false;
  if (script_.empty()) return true;
  const std::vector<std::string> words = CommandLineOf(folder);
  return std::find(words.begin(), words.end(), script_) != words.end();
}

bool RunningInstances::GoesOn(pid_t process, const std::string& folder) {
  const std::string program = fs::path(LinkAt(folder + "/exe")).filename().string();
  const bool isOfSession = std::any_of(std::begin(kOfSession), std::end(kOfSession),
                                       [&program](const char* one) { return program.starts_with(one); });
  return !program.empty() && !isOfSession && IsDescendant(process);
}

std::vector<pid_t> RunningInstances::Find() const {
  std::vector<pid_t> processes;
  ForEachProcess([&](pid_t process, const std::string& folder) {
    if (IsInstance(folder) || HasOneOpen(folder, documents_) || GoesOn(process, folder)) {
      processes.push_back(process);
    }
    return true;
  });
  return processes;
}

}  // namespace with_fonts
