#include "nexctl/Help.h"

#include "nexctl/Commands.h"
#include "nexctl/Options.h"

namespace nexctl {

std::string HelpText() {
  constexpr size_t kColumn = 40;
  Options none;
  return "usage: nexctl [OPTION ...] COMMAND [ARGUMENT ...]\n"
         "Manages fonts through the font manager agent, which it starts if none runs.\n\nCommands:\n" +
         platform::HelpLines(CommandTexts(), kColumn) +
         "\nA FONT is an ID or a PostScript name. A RULE is a condition such as\n"
         "  'family ~ garamond and weight >= 600 and not italic'\n"
         "with the fields family, style, name, foundry, kind, version, path (= != ~ !~), design, script, language (= !=),\n"
         "weight, width, size, age, added (= != < <= > >=), and the flags italic, monospaced, variable, coloured, active.\n"
         "\nOptions:\n" +
         platform::HelpLines(OptionTable(none), kColumn) +
         "\nExit status: 0 done, 1 something could not be done, 2 wrong usage.\n";
}

std::string CompletionText(const std::string& shell) {
  Options none;
  return platform::Completion(shell, "nexctl", OptionTable(none), CommandTexts());
}

std::string ManualPage() {
  Options none;
  return ".TH NEXCTL 1\n.SH NAME\nnexctl \\- manages fonts through the font manager agent\n.SH SYNOPSIS\n.B nexctl\n"
         "[OPTION ...] COMMAND [ARGUMENT ...]\n.SH COMMANDS\n" +
         platform::ManualLines(CommandTexts()) + ".SH OPTIONS\n" + platform::ManualLines(OptionTable(none)) +
         ".SH EXIT STATUS\n0 done, 1 something could not be done, 2 wrong usage.\n";
}

}  // namespace nexctl
