// The texts that are made from a table of options. tests/console covers the parser.
#include "platform/CommandLine.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(CommandLine, ManualLinesKeepHyphensAndShowValues) {
  bool isForced = false;
  std::string state;
  const Option options[] = {{"-f, --force", "", "overwrite read-only files", &isForced},
                            {"--state", "FOLDER", "the state folder", &state}};
  EXPECT_EQ(ManualLines(options),
            ".TP\n.B \\-f, \\-\\-force\nOverwrite read\\-only files.\n"
            ".TP\n.BI \"\\-\\-state\" \" FOLDER\"\nThe state folder.\n");
  const CommandText commands[] = {{"add", "FOLDER", "add a folder"}};
  EXPECT_EQ(ManualLines(commands), ".TP\n.BI \"add\" \" FOLDER\"\nAdd a folder.\n");
}

// Quotes, colons and brackets of a help text must reach the shell as they are.
TEST(CommandLine, EachShellGetsItsCompletion) {
  bool isForced = false;
  std::string state, shell;
  const Option options[] = {{"-f, --force", "", "don't ask [ever]", &isForced},
                            {"--state", "FOLDER", "the state folder", &state},
                            {"--shell", kShells, "a shell", &shell}};
  const CommandText commands[] = {
      {"add", "FOLDER", "add: a folder"}, {"set list", "", "list"}, {"set make", "", "make"}};
  EXPECT_EQ(Completion("bash", "tool", options, commands),
            "complete -o default -W 'add set list set make -f --force --state --shell' tool\n");
  EXPECT_EQ(Completion("zsh", "tool", options, commands),
            "#compdef tool\nlocal curcontext=$curcontext state line\nlocal -a words_here\n_arguments -C"
            " \\\n  '(-f --force)-f[don'\\''t ask \\[ever\\]]'"
            " \\\n  '(-f --force)--force[don'\\''t ask \\[ever\\]]'"
            " \\\n  '(--state)--state=[the state folder]:FOLDER:_files -/'"
            " \\\n  '(--shell)--shell=[a shell]:value:(bash zsh fish)'"
            " \\\n  '1: :->first' '2: :->second' '*:file:_files' && return\n"
            "case $state:$line[1] in\n"
            "  first:*) words_here=( 'add:add\\: a folder' 'set:list, make') ;;\n"
            "  second:set) words_here=( 'list:list' 'make:make') ;;\n"
            "  *) _files; return ;;\nesac\n_describe command words_here\n");
  EXPECT_EQ(Completion("fish", "tool", options, commands),
            "complete -c tool -s f -l force -d 'don\\'t ask [ever]'\n"
            "complete -c tool -l state -x -a '(__fish_complete_directories)' -d 'the state folder'\n"
            "complete -c tool -l shell -x -a 'bash zsh fish' -d 'a shell'\n"
            "complete -c tool -f -n '__fish_use_subcommand' -a add -d 'add: a folder'\n"
            "complete -c tool -f -n '__fish_use_subcommand' -a set -d 'list, make'\n"
            "complete -c tool -f -n '__fish_seen_subcommand_from set' -a list -d 'list'\n"
            "complete -c tool -f -n '__fish_seen_subcommand_from set' -a make -d 'make'\n");
  std::vector<std::string> words;
  EXPECT_EQ(ParseOptions(options, {"--shell", "csh"}, words), "--shell takes one of bash, zsh, fish");
  EXPECT_EQ(ParseOptions(options, {"--shell=fish"}, words), "");
  EXPECT_EQ(shell, "fish");
}

}  // namespace
}  // namespace platform
