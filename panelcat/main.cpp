// panelcat: sends messages to the font panel's port and prints what comes.
#include <cstdio>
#include <system_error>

#include "panelcat/Conversation.h"
#include "panelcat/Options.h"
#include "platform/PlainText.h"

namespace {

enum EStatus : int { kDone = 0, kNotDone = 1, kWrongUsage = 2 };

int Fail(const std::string& what, EStatus status) {
  std::fprintf(stderr, "panelcat: %s\n", platform::OneLine(what).c_str());
  return status;
}

int Print(const std::string& text) {
  if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return kDone;
  return Fail("the output could not be written", kNotDone);
}

int Talk(const panelcat::Options& options) {
  try {
    const std::string problem = panelcat::Conversation(options.port).Run(options);
    return problem.empty() ? kDone : Fail(problem, kNotDone);
  } catch (const std::system_error& error) {
    return Fail(error.what(), kNotDone);
  }
}

}  // namespace

int main(int count, char** words) {
  panelcat::Options options;
  const std::string problem = panelcat::ParseOptions(std::vector<std::string>(words + 1, words + count), options);
  if (!problem.empty()) return Fail(problem, kWrongUsage);
  if (options.help) return Print(panelcat::HelpText());
  if (!options.completion.empty()) return Print(panelcat::CompletionText(options.completion));
  if (options.manual) return Print(panelcat::ManualPage());
  if (options.version) return Print(platform::VersionLine("panelcat"));
  return Talk(options);
}
