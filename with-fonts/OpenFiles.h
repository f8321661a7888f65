// The processes of this user, and which of them have files open.
#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace with_fonts {

// Calls `take` with each process of this user, the latest ones first, and its folder in /proc, until it returns false.
// Leaves out those of this program, also of its other runs, and the processes that serve it: the agent and the workers.
void ForEachProcess(const std::function<bool(pid_t process, const std::string& folder)>& take);

// True if this process has started the process, or one that has started it, and so on. After AdoptOrphans that holds
// also if those between have ended.
bool IsDescendant(pid_t process);

// Makes this process the parent of its descendants whose parent ends, and which would be the system's otherwise.
void AdoptOrphans();

// `files` are real paths (without links). `folder` is that of a process in /proc.
bool HasOneOpen(const std::string& folder, const std::vector<std::string>& files);

// Returns those of the files that processes, other than those left out above, have open, each with the latest of them.
std::map<std::string, pid_t> UsersOf(const std::set<std::string>& files);

// Returns the latest process, other than those left out above, that has the file open; 0 if there is none.
pid_t UserOf(const std::string& file);

}  // namespace with_fonts
