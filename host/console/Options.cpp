#include "host/console/Options.h"

#include "host/console/Commands.h"
#include "platform/CommandLine.h"

namespace console {

namespace {

constexpr const char* kName = "velorant-host";

std::vector<platform::Option> OptionTable(Options& options) {
  return {
      {"--script", "FILE", "replay the commands of a file, one per line", &options.script},
      {"--interactive", "", "take commands from the terminal", &options.interactive},
      {"--panel", "", "open the font panel in the browser, and take commands from the terminal", &options.panel},
      {"--json", "", "write one JSON object a line instead of the report", &options.json},
      {"--library", "FOLDER", "a folder of fonts to choose from; may be given several times", &options.library},
      {"--state", "FOLDER", "keep fonts, preferences and copies of documents there", &options.state},
      {"--samples", "FOLDER", "the documents to show if none is named", &options.samples},
      {"--desktop", "", "make fonts active for all of your programs, not in a sandbox", &options.desktop},
      {"--completion", platform::kShells, "print what this shell reads to complete these options", &options.completion},
      {"--manual", "", "print the manual page, in the man macros", &options.manual},
      {"--version", "", "print the version", &options.version},
      {"--help", "", "print this help", &options.help},
  };
}

std::string Conflict(const Options& options) {
  if (options.script.empty()) return "";
  if (options.panel) return "--script and --panel cannot be used together";
  if (options.interactive) return "--script and --interactive cannot be used together";
  if (!options.files.empty()) return "--script allows no documents on the command line; open them in the script";
  return "";
}

}  // namespace

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  std::string problem = platform::ParseOptions(OptionTable(options), arguments, options.files);
  if (problem.empty()) problem = Conflict(options);
  options.interactive |= options.panel;
  return problem;
}

std::string HelpText() {
  constexpr size_t kColumn = 22;
  Options none;
  return "usage: velorant-host [OPTION ...] [DOCUMENT ...]\n"
         "Opens each document with the font plug-in loaded, saves a copy and closes it, and shows which fonts it needed,\n"
         "which were activated and why, which are missing, what the save wrote and what the close gave back.\n"
         "Without documents it does so for the samples.\n\n" +
         platform::HelpLines(OptionTable(none), kColumn) + "\nCommands of a script and of the console:\n" +
         CommandHelp() +
         "\nExit status: 0 all went well, 1 something went wrong, 2 a command or option is not known.\n"
         "SIGINT, SIGTERM and SIGHUP close all documents and give fonts back before they end the host.\n";
}

std::string CompletionText(const std::string& shell) {
  Options none;
  return platform::Completion(shell, kName, OptionTable(none));
}

std::string ManualPage() {
  Options none;
  return ".TH VELORANT\\-HOST 1\n.SH NAME\nvelorant\\-host \\- opens documents with the font plug\\-in loaded\n.SH SYNOPSIS\n"
         ".B velorant\\-host\n[OPTION ...] [DOCUMENT ...]\n.SH DESCRIPTION\n"
         "Opens each document, saves a copy and closes it, and shows which fonts it needed, which were activated and why,\n"
         "which are missing, what the save wrote and what the close gave back.\n.SH OPTIONS\n" +
         platform::ManualLines(OptionTable(none)) + ".SH COMMANDS\nOf a script and of the console:\n" +
         platform::ManualLines(CommandTexts()) +
         ".SH EXIT STATUS\n0 all went well, 1 something went wrong, 2 a command or option is not known.\n";
}

std::string VersionText() { return platform::VersionLine(kName); }

}  // namespace console
