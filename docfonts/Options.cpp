#include "docfonts/Options.h"

namespace docfonts {

std::vector<platform::Option> OptionTable(Options& options) {
  return {
      {"-r, --recursive", "", "read the documents in folders, and in the folders below them", &options.recursive},
      {"-m, --missing", "", "list only fonts that are not active", &options.missing},
      {"--resolve", "", "ask the font manager which file of its library it would choose for each font",
       &options.resolve},
      {"--state", "FOLDER", "the state folder of ./run whose fonts count as active, and whose font manager is asked",
       &options.state},
      {"--json", "", "write one JSON object a line for each document", &options.json},
      {"--completion", platform::kShells, "print what this shell reads to complete the words of the program",
       &options.completion},
      {"--version", "", "print the version", &options.version},
      {"-h, --help", "", "print this help", &options.help},
  };
}

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  std::string problem = platform::ParseOptions(OptionTable(options), arguments, options.files);
  const bool isAboutItself = options.help || options.version || !options.completion.empty();
  const bool isIncomplete = options.files.empty() && !isAboutItself;
  return problem.empty() && isIncomplete ? "no document named; see --help" : problem;
}

std::string HelpText() {
  constexpr size_t kColumn = 20;
  Options none;
  return "usage: docfonts [OPTION ...] FILE ...\n"
         "Lists the fonts that each document names, whether they are embedded and active, which identification of them the\n"
         "document carries, and what of it says so: pdf (the whole structure of a PDF), parser (the structure as the "
         "plug-in\n"
         "reads it), text (the styles of its text), scan (text around font names), list (metadata of other applications),\n"
         "slug (metadata of the plug-in).\n"
         "\n" +
         platform::HelpLines(OptionTable(none), kColumn) +
         "\nExit status: 0 all documents were read, 1 one could not be read wholly, 2 an option is not known.\n";
}

std::string CompletionText(const std::string& shell) {
  Options none;
  return platform::Completion(shell, "docfonts", OptionTable(none));
}

}  // namespace docfonts
