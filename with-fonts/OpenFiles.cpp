#include "with-fonts/OpenFiles.h"

#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace with_fonts {

namespace {

namespace fs = std::filesystem;

// 0 if the process has ended.
pid_t ParentOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  // The program's name, in parentheses, may contain anything.
  const size_t nameEnd = text.rfind(") ");
  return nameEnd == std::string::npos ? 0 : std::atoi(text.c_str() + std::min(nameEnd + 4, text.size()));
}

std::string ProgramOf(const std::string& folder) {
  std::error_code error;
  return fs::read_symlink(folder + "/exe", error).string();
}

// The folders of this program and of those that serve it, each with a slash at its end.
std::vector<std::string> FoldersOfHelpers() {
  const fs::path own = fs::path(ProgramOf("/proc/self")).parent_path(), app = own.parent_path();
  return {own.string() + "/", (app / "agent/").string(), (app / "lib/").string()};
}

bool IsHelper(const std::string& folder) {
  static const std::vector<std::string> sFolders = FoldersOfHelpers();
  const std::string program = ProgramOf(folder);
  return std::any_of(sFolders.begin(), sFolders.end(),
                     [&program](const std::string& start) { return program.starts_with(start); });
}

std::vector<pid_t> Processes() {
  std::vector<pid_t> processes;
  std::error_code error;
  for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
    if (const pid_t process = std::atoi(entry->path().filename().c_str()); process > 0) processes.push_back(process);
  }
  std::sort(processes.rbegin(), processes.rend());
  return processes;
}

// `folder` is that of a process in /proc.
std::vector<std::string> OpenFilesOf(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  for (fs::directory_iterator file(folder + "/fd", error), end; !error && file != end; file.increment(error)) {
    std::error_code gone;
    files.push_back(fs::read_symlink(file->path(), gone).string());
  }
  return files;
}

}  // namespace

void ForEachProcess(const std::function<bool(pid_t process, const std::string& folder)>& take) {
  for (const pid_t process : Processes()) {
    const std::string folder = "/proc/" + std::to_string(process);
    struct stat info;
    if (stat(folder.c_str(), &info) != 0 || info.st_uid != geteuid() || IsHelper(folder)) continue;
    if (!take(process, folder)) return;
  }
}

bool IsDescendant(pid_t process) {
  while (process > 1 && process != getpid()) process = ParentOf(process);
  return process == getpid();
}

void AdoptOrphans() { prctl(PR_SET_CHILD_SUBREAPER, 1); }

bool HasOneOpen(const std::string& folder, const std::vector<std::string>& files) {
  const std::vector<std::string> open = OpenFilesOf(folder);
  return std::any_of(open.begin(), open.end(), [&files](const std::string& file) {
    return std::find(files.begin(), files.end(), file) != files.end();
  });
}

std::map<std::string, pid_t> UsersOf(const std::set<std::string>& files) {
  std::map<std::string, pid_t> users;
  ForEachProcess([&](pid_t process, const std::string& folder) {
    for (const std::string& file : OpenFilesOf(folder)) {
      if (files.contains(file)) users.emplace(file, process);
    }
    return true;
  });
  return users;
}

pid_t UserOf(const std::string& file) {
  const auto users = UsersOf({file});
  return users.empty() ? 0 : users.begin()->second;
}

}  // namespace with_fonts
