#include "nexctl/Commands.h"

#include "nexctl/Fonts.h"
#include "nexctl/Session.h"

namespace nexctl {

namespace {

constexpr size_t kAny = SIZE_MAX;

constexpr Command kCommands[] = {
    {"status", "", "show whether the font manager runs, and what it has", 0, 0, ShowStatus},
    {"fonts", "[RULE]", "list the fonts, or those that a rule describes", 0, kAny, ListFonts},
    {"show", "FONT ...", "show everything that is known about fonts, in a terminal with a picture", 1, kAny, ShowFont},
    {"activate", "FONT ...", "activate fonts until they are deactivated", 1, kAny, ActivateFonts},
    {"deactivate", "FONT ...", "deactivate fonts", 1, kAny, DeactivateFonts},
    {"conflicts", "FONT ...", "list the active fonts that stand in the way of these", 1, kAny, ListConflicts},
    {"duplicates", "", "list fonts that are in several files with the same outlines", 0, 0, ListDuplicates},
    {"export", "FOLDER FONT ...", "copy font files to a folder; an existing file is not replaced", 2, kAny,
     ExportFonts},
    {"set list", "", "list the sets", 0, 0, ListSets},
    {"set create", "NAME [FONT ...]", "create a set", 1, kAny, CreateSet},
    {"set add", "SET FONT ...", "add fonts to a set, named by its ID", 2, kAny, AddToSet},
    {"set remove", "SET FONT ...", "remove fonts from a set", 2, kAny, RemoveFromSet},
    {"set rename", "SET NAME", "rename a set", 2, 2, RenameSet},
    {"set delete", "SET", "delete a set; its fonts stay", 1, 1, DeleteSet},
    {"smartset list", "", "list the smart sets, which are rules", 0, 0, ListSmartSets},
    {"smartset create", "NAME RULE", "create a smart set", 2, kAny, CreateSmartSet},
    {"smartset change", "ID NAME RULE", "change the name and the rule of a smart set", 3, kAny, ChangeSmartSet},
    {"smartset delete", "ID", "delete a smart set", 1, 1, DeleteSmartSet},
    {"smartlist list", "", "list the smart lists", 0, 0, ListSmartLists},
    {"smartlist show", "ID", "show the definition of a smart list and its fonts", 1, 1, ShowSmartList},
    {"smartlist create", "NAME [PART ...]", "create a smart list; a part is workgroup:ID, set:ID or smartset:ID", 1,
     kAny, CreateSmartList},
    {"smartlist change", "ID [PART ...]", "change what a smart list consists of", 1, kAny, ChangeSmartList},
    {"smartlist rename", "ID NAME", "rename a smart list", 2, 2, RenameSmartList},
    {"smartlist delete", "ID", "delete a smart list", 1, 1, DeleteSmartList},
    {"library list", "", "list the folders of the libraries", 0, 0, ListLibrary},
    {"library add", "FOLDER ...", "add folders to a library, with those below them", 1, kAny, AddToLibrary},
    {"library remove", "FOLDER ...", "remove folders from a library; their fonts are deactivated", 1, kAny,
     RemoveFromLibrary},
    {"library rescan", "", "look for changes in the libraries' folders now", 0, 0, Rescan},
    {"workgroup list", "", "list the libraries and the other groups of fonts", 0, 0, ListWorkgroups},
    {"workgroup create", "NAME [FOLDER ...]", "create a library", 1, kAny, CreateWorkgroup},
    {"workgroup rename", "ID NAME", "rename a library", 2, 2, RenameWorkgroup},
    {"workgroup delete", "ID", "delete a library; its fonts are deactivated, its files stay", 1, 1, DeleteWorkgroup},
    {"rights list", "", "list the rights, and where they were taken away", 0, 0, ListRights},
    {"rights deny", "RIGHT [WORKGROUP]", "take a right away: export, or activate-across (in all workgroups only)", 1, 2,
     DenyRight},
    {"rights allow", "RIGHT [WORKGROUP]", "give a right back", 1, 2, AllowRight},
    {"webfonts status", "", "show the folder of web fonts, and whether they are enabled", 0, 0, ShowWebFonts},
    {"webfonts enable", "", "make the fonts of that folder available; WOFF files are unpacked", 0, 0, EnableWebFonts},
    {"webfonts disable", "", "leave them out again", 0, 0, DisableWebFonts},
    {"webfonts folder", "FOLDER", "name the folder of a collection of web fonts", 1, 1, SetWebFontsFolder},
    {"check", "", "list font files that cannot be used, and why; status 1 if there are any", 0, 0, CheckLibrary},
    {"doctor", "", "say what is wrong with this machine's font set-up, and how to mend it; status 1 if anything is", 0,
     0, Diagnose},
    {"watch", "", "print what happens until interrupted", 0, 0, Watch},
    {"log", "", "print the font manager's log", 0, 0, ShowLog},
};

std::vector<std::string> WordsOf(const std::string& name) {
  const size_t space = name.find(' ');
  if (space == std::string::npos) return {name};
  return {name.substr(0, space), name.substr(space + 1)};
}

bool IsFirstWordOfCommand(const std::string& word) {
  for (const Command& command : kCommands) {
    if (WordsOf(command.name)[0] == word) return true;
  }
  return false;
}

}  // namespace

std::span<const Command> AllCommands() { return kCommands; }

std::vector<platform::CommandText> CommandTexts() {
  std::vector<platform::CommandText> texts;
  for (const Command& command : kCommands) texts.push_back({command.name, command.arguments, command.help});
  return texts;
}

std::vector<std::string> After(const std::vector<std::string>& words, size_t count) {
  return {words.begin() + static_cast<ptrdiff_t>(count), words.end()};
}

int PrintCreated(const Call& call, uint32_t id) {
  call.output.Table({"id"}, {{std::to_string(id)}});
  return 0;
}

uint32_t WorkgroupOf(const Call& call) {
  constexpr uint32_t kFontLibrary = 1;
  return call.options.workgroup.empty() ? kFontLibrary : NumberOf(call.options.workgroup);
}

const Command& FindCommand(const std::vector<std::string>& words, std::vector<std::string>& arguments) {
  for (const Command& command : kCommands) {
    const std::vector<std::string> name = WordsOf(command.name);
    if (words.size() < name.size() || !std::equal(name.begin(), name.end(), words.begin())) continue;
    arguments.assign(words.begin() + static_cast<ptrdiff_t>(name.size()), words.end());
    if (arguments.size() < command.fewest || arguments.size() > command.most) {
      const std::string expected = command.arguments;
      throw WrongUsage(std::string(command.name) + (expected.empty() ? " takes no arguments" : " takes " + expected));
    }
    return command;
  }
  const bool isHalf = IsFirstWordOfCommand(words[0]);
  throw WrongUsage(isHalf ? "'" + words[0] + "' needs a second word; see --help"
                          : "there is no command '" + words[0] + "'; see --help");
}

}  // namespace nexctl
