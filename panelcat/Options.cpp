#include "panelcat/Options.h"

#include <charconv>

namespace panelcat {

namespace {

constexpr double kMostSeconds = 86'400;

template <class Number>
bool Read(const std::string& text, Number least, Number most, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end && number >= least && number <= most;
}

std::string ReadPort(const std::vector<std::string>& words, uint16_t& port) {
  if (words.size() != 1) return "names one port; see --help";
  const bool isPort = Read<uint16_t>(words[0], 1, UINT16_MAX, port);
  return isPort ? "" : "'" + words[0] + "' is no port: a number from 1 to 65535";
}

}  // namespace

std::vector<platform::Option> OptionTable(Options& options) {
  return {
      {"-w, --wait", "SECONDS", "after the end of the input, wait as long for more messages; 1 by default",
       &options.secondsText},
      {"-n, --count", "NUMBER", "end after this number of messages", &options.countText},
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
  if (!problem.empty() || isAboutItself) return problem;
  if (!options.secondsText.empty() && !Read(options.secondsText, 0.0, kMostSeconds, options.seconds)) {
    return "--wait takes a number of seconds, at most a day";
  }
  if (!options.countText.empty() && !Read<size_t>(options.countText, 1, SIZE_MAX, options.count)) {
    return "--count takes a number from 1";
  }
  return ReadPort(options.words, options.port);
}

std::string HelpText() {
  constexpr size_t kColumn = 22;
  Options none;
  return "usage: panelcat [OPTION ...] PORT\n"
         "Connects to the port of a font panel on this machine, sends each line of the input as a message, and prints each\n"
         "message that comes as a line. The host tells the port ('do-it 4'); it accepts one connection until it ends.\n\n" +
         platform::HelpLines(OptionTable(none), kColumn) +
         "\nExit status: 0 done, 1 no connection, or it ended early, 2 wrong usage.\n";
}

std::string CompletionText(const std::string& shell) {
  Options none;
  return platform::Completion(shell, "panelcat", OptionTable(none));
}

std::string ManualPage() {
  Options none;
  return ".TH PANELCAT 1\n.SH NAME\npanelcat \\- talks to the font panel's port\n.SH SYNOPSIS\n.B panelcat\n"
         "[OPTION ...] PORT\n.SH DESCRIPTION\nSends each line of the input as a message, and prints each message that "
         "comes as a line.\n.SH OPTIONS\n" +
         platform::ManualLines(OptionTable(none)) +
         ".SH EXIT STATUS\n0 done, 1 no connection, or it ended early, 2 wrong usage.\n";
}

}  // namespace panelcat
