// with-fonts: runs a program with the fonts of its documents.
#include <cstdio>

#include "platform/Descriptor.h"
#include "platform/Trace.h"
#include "with-fonts/Complain.h"
#include "with-fonts/Options.h"
#include "with-fonts/Session.h"

namespace with_fonts {

namespace {

int Print(const std::string& text) {
  return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? kAllFound : kNotAllFound;
}

int Main(const std::vector<std::string>& arguments) {
  Options options;
  if (const std::string problem = ParseOptions(arguments, options); !problem.empty()) {
    Complain(problem);
    return kWrongUsage;
  }
  if (options.help) return Print(HelpText());
  if (options.version) return Print(platform::VersionLine("with-fonts"));
  if (!options.completion.empty()) return Print(CompletionText(options.completion));
  if (options.manual) return Print(ManualPage());
  platform::SetProblemSink(Complain);
  return Session(options).Run();
}

}  // namespace

}  // namespace with_fonts

int main(int count, char** arguments) {
  platform::ReserveStandardStreams();
  return with_fonts::Main({arguments + 1, arguments + count});
}
