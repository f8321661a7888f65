// nexctl: manages fonts from the command line.
#include <cstdio>
#include <system_error>

#include "nexctl/Commands.h"
#include "nexctl/Help.h"
#include "nexctl/Session.h"
#include "platform/Descriptor.h"
#include "platform/PlainText.h"

namespace {

enum EStatus : int { kDone = 0, kNotDone = 1, kWrongUsage = 2 };

int Fail(const char* what, EStatus status) {
  std::fprintf(stderr, "nexctl: %s\n", platform::OneLine(what).c_str());
  return status;
}

int Print(const std::string& text) {
  if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return kDone;
  return Fail("the output could not be written", kNotDone);
}

int RunCommand(const nexctl::Options& options) {
  try {
    nexctl::Call call{options, {}, nexctl::Output(options.json)};
    const nexctl::Command& command = nexctl::FindCommand(options.words, call.arguments);
    const int status = command.run(call);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) return Fail("the output could not be written", kNotDone);
    return status;
  } catch (const nexctl::WrongUsage& usage) {
    return Fail(usage.what(), kWrongUsage);
  } catch (const nexctl::Failure& failure) {
    return Fail(failure.what(), kNotDone);
  } catch (const std::system_error& error) {
    return Fail(error.what(), kNotDone);
  }
}

}  // namespace

int main(int count, char** words) {
  platform::ReserveStandardStreams();
  nexctl::Options options;
  const std::string problem = nexctl::ParseOptions(std::vector<std::string>(words + 1, words + count), options);
  if (!problem.empty()) return Fail(problem.c_str(), kWrongUsage);
  if (options.help) return Print(nexctl::HelpText());
  if (!options.completion.empty()) return Print(nexctl::CompletionText(options.completion));
  if (options.manual) return Print(nexctl::ManualPage());
  if (options.version) return Print(platform::VersionLine("nexctl"));
  return RunCommand(options);
}
