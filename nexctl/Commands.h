// The commands of nexctl.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "nexctl/Options.h"
#include "nexctl/Output.h"
#include "platform/CommandLine.h"

namespace nexctl {

struct Call {
  const Options& options;
  std::vector<std::string> arguments;  // after the command's words
  Output output;
};

// Runs a command. Returns the exit status: 0 done, 1 something could not be done. Throws Failure and WrongUsage.
using Run = int (*)(const Call& call);

struct Command {
  const char* name;  // one word, or two: "set create"
  const char* arguments;
  const char* help;
  size_t fewest, most;  // how many arguments
  Run run;
};

std::span<const Command> AllCommands();
std::vector<platform::CommandText> CommandTexts();
// The command that the words begin with, and its arguments. Throws WrongUsage.
const Command& FindCommand(const std::vector<std::string>& words, std::vector<std::string>& arguments);

// What several commands do.
std::vector<std::string> After(const std::vector<std::string>& words, size_t count);
int PrintCreated(const Call& call, uint32_t id);  // returns 0
// The ID that --workgroup names, or that of the first library. Throws WrongUsage.
uint32_t WorkgroupOf(const Call& call);

// FontCommands.cpp
int ListFonts(const Call& call);
int ShowFont(const Call& call);
int ListDuplicates(const Call& call);
int ListConflicts(const Call& call);
int ExportFonts(const Call& call);
// ActivationCommands.cpp
int ActivateFonts(const Call& call);
int DeactivateFonts(const Call& call);
// ListCommands.cpp
int ListSets(const Call& call);
int CreateSet(const Call& call);
int AddToSet(const Call& call);
int RemoveFromSet(const Call& call);
int RenameSet(const Call& call);
int DeleteSet(const Call& call);
int ListSmartSets(const Call& call);
int CreateSmartSet(const Call& call);
int ChangeSmartSet(const Call& call);
int DeleteSmartSet(const Call& call);
int ListSmartLists(const Call& call);
int ShowSmartList(const Call& call);
int CreateSmartList(const Call& call);
int RenameSmartList(const Call& call);
int ChangeSmartList(const Call& call);
int DeleteSmartList(const Call& call);
// LibraryCommands.cpp
int ListLibrary(const Call& call);
int AddToLibrary(const Call& call);
int RemoveFromLibrary(const Call& call);
int Rescan(const Call& call);
int ListWorkgroups(const Call& call);
int CreateWorkgroup(const Call& call);
int RenameWorkgroup(const Call& call);
int DeleteWorkgroup(const Call& call);
int ListRights(const Call& call);
int DenyRight(const Call& call);
int AllowRight(const Call& call);
// WebFontCommands.cpp
int ShowWebFonts(const Call& call);
int EnableWebFonts(const Call& call);
int DisableWebFonts(const Call& call);
int SetWebFontsFolder(const Call& call);
// AgentCommands.cpp
int ShowStatus(const Call& call);
int CheckLibrary(const Call& call);
int Watch(const Call& call);
// DoctorCommand.cpp
int Diagnose(const Call& call);
int ShowLog(const Call& call);

}  // namespace nexctl
