#include "nexctl/Options.h"

namespace nexctl {

std::vector<platform::Option> OptionTable(Options& options) {
  return {
      {"--state", "FOLDER", "the state folder of the font manager, instead of the user's", &options.state},
      {"--columns", "LIST", "for fonts: the columns, such as id,name,weight,path", &options.columns},
      {"--workgroup", "ID", "for library add and remove, and set create: the library, instead of the first",
       &options.workgroup},
      {"--json", "", "write one JSON object a line", &options.json},
      {"--completion", platform::kShells, "print what this shell reads to complete the words of the program",
       &options.completion},
      {"--manual", "", "print the manual page, in the man macros", &options.manual},
      {"--version", "", "print the version", &options.version},
      {"-h, --help", "", "print this help", &options.help},
  };
}

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  std::string problem = platform::ParseOptions(OptionTable(options), arguments, options.words);
  const bool isAboutItself = options.help || options.manual || options.version || !options.completion.empty();
  const bool isIncomplete = options.words.empty() && !isAboutItself;
  return problem.empty() && isIncomplete ? "no command named; see --help" : problem;
}

}  // namespace nexctl
