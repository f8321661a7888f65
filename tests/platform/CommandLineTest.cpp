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
  EXPECT_EQ(CompletionLine("tool", options, commands), "complete -o default -W 'add -f --force --state' tool\n");
}

}  // namespace
}  // namespace platform
