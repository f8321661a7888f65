// What a user at a terminal sees, and what replaces it without a terminal.
#include <gmock/gmock.h>

#include <filesystem>

#include "road/RoadFixture.h"
#include "support/ScopedVariable.h"

using testing::HasSubstr;
using testing::Not;

namespace road {

namespace {

constexpr const char* kEndOfInput = "\x04";

class TerminalTest : public RoadTest {
 protected:
  // The host with an agent whose scan takes long.
  std::string LayOutScanning() const {
    std::string host = LayOut({"agent/Nexcore"});
    std::filesystem::copy_file(SCANNING_AGENT, folder_ / "app/agent/Nexcore");
    return host;
  }
  const test_support::ScopedVariable terminal_{"TERM", "xterm"};
};

}  // namespace

TEST_F(TerminalTest, ScanOfALargeLibraryIsShown) {
  const std::string host = LayOutScanning();
  const std::vector<std::string> arguments = {"--state", state_.Path(), "--script", folder_.Write("empty", "")};
  const HostResult plain = RunHost(arguments, host);
  EXPECT_THAT(plain.errors, HasSubstr("Scanning fonts\nScanning fonts: 200 of 400\nScanning fonts: 400 of 400\n"));
  state_.AwaitAgentsEnd();
  HostProcess drawn(arguments, host, Streams::kTerminal);
  EXPECT_THAT(drawn.Finish().output, HasSubstr("\r\033[KScanning fonts  0/400  /fonts/0.otf"
                                               "\r\033[KScanning fonts  200/400  /fonts/200.otf"
                                               "\r\033[KScanning fonts  400/400  /fonts/400.otf\r\033[K"));
}

TEST_F(TerminalTest, ConsoleCompletesPathsAndShowsABatch) {
  const std::string document = folder_ / "größer als/pö ster.psd";
  std::filesystem::create_directory(folder_ / "größer als");
  std::filesystem::copy_file(kPoster, document);
  std::filesystem::copy_file(kPoster, folder_ / "größer als/pü ster.psd");
  std::vector<std::string> arguments = Arguments({"--interactive"});
  arguments.erase(arguments.begin());  // the report for a reader
  HostProcess host(arguments, HostProcess::BuiltHost(), Streams::kTerminal);
  // Input while there is no prompt takes another path, through the terminal's own line.
  const std::pair<const char*, std::string> keys[] = {
      {"library:", "open " + folder_ / "grö\tp\tö\t\r"},
      {"missing ", "frob\r"},
      {"unknown command 'frob'", kEndOfInput},
  };
  for (const auto& [before, typed] : keys) {
    host.AwaitOutput(before);
    host.AwaitOutput("> ");
    host.Type(typed);
  }
  const HostResult result = host.Finish();
  EXPECT_THAT(result.output, HasSubstr(document + "\r\n  names       AdobeInvisFont, "));
  EXPECT_THAT(result.output, HasSubstr("\r\033[KActivating 3 fonts  0/3"));
  EXPECT_THAT(result.output, HasSubstr("\r\033[KActivating 3 fonts  3/3"));
  EXPECT_EQ(result.status, 0) << "who sits there has seen what was not understood";
}

TEST_F(TerminalTest, InterruptClearsTheLineAndKeepsTheDocuments) {
  folder_.Write("g\xf6.psd", "");
  HostProcess host(Arguments({"--interactive"}), HostProcess::BuiltHost(), Streams::kTerminal);
  host.AwaitOutput("> ");
  host.Type("make\r");
  host.AwaitOutput("made");
  host.AwaitOutput("> ");
  host.Type("open " + folder_ / "g\t");
  host.AwaitOutput("g\\xf6.psd");  // a name that the line cannot contain is only listed
  host.AwaitOutput("> open " + folder_ / "g");
  host.Signal(SIGCONT);  // as after "fg"
  host.AwaitOutput("> open " + folder_ / "g");
  host.Signal(SIGINT);
  host.AwaitOutput("^C\r\n> ");
  host.Type("show documents\r");
  host.AwaitOutput("* Untitled-1");
  host.AwaitOutput("> ");
  host.Signal(SIGTERM);
  EXPECT_EQ(host.Finish().status, 128 + SIGTERM);
}

TEST_F(TerminalTest, PromptsStayOutOfTheOutput) {
  HostProcess host(Arguments({"--interactive"}), HostProcess::BuiltHost(), Streams::kTerminalAndOutput);
  host.Send("open " + kNoText + "\nquit");
  const HostResult result = host.Finish();
  EXPECT_THAT(result.Events(), testing::SizeIs(2));
  EXPECT_THAT(result.errors, HasSubstr("> "));
}

TEST_F(TerminalTest, CommandsFromAPipeThatAreNotUnderstoodGiveTheirStatus) {
  HostProcess host(Arguments({"--interactive"}));
  host.Send("frob\nopen " + kNoText);
  const HostResult result = host.Finish();
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.errors, HasSubstr("unknown command 'frob'"));
  EXPECT_EQ(Events(result, "opened").size(), 1u);
}

TEST_F(TerminalTest, ScriptComesFromAPipeToo) {
  HostProcess host(Arguments({"--script", "/dev/stdin"}));
  host.Send("open " + kNoText + "\nclose");
  const HostResult result = host.Finish();
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_THAT(result.Events(), testing::SizeIs(2));
}

TEST_F(TerminalTest, OddNamesStayOnTheirLine) {
  const std::string odd = folder_ / "new\nline\033[31m.psd", noText = folder_ / "\xFF.psd";
  std::filesystem::copy_file(kNoText, odd);
  std::filesystem::copy_file(kPoster, noText);
  const HostResult result = RunHost({"--state", state_.Path(), odd, noText});
  EXPECT_THAT(result.output, HasSubstr(folder_ / "new\\nline\\x1b[31m.psd\n"));
  EXPECT_THAT(result.output + result.errors, Not(HasSubstr("\033")));
  EXPECT_THAT(result.errors,
              HasSubstr(folder_ / "\\xff.psd: the plug-in cannot open a file whose path is not valid UTF-8"));
  EXPECT_EQ(result.status, 1);
}

}  // namespace road
