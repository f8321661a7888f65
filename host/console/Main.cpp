#include "host/console/Main.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

#include "host/console/Boxes.h"
#include "host/console/Commands.h"
#include "host/console/Options.h"
#include "host/console/PanelSession.h"
#include "host/console/Report.h"
#include "host/console/Sandbox.h"
#include "host/console/Session.h"
#include "host/console/Signals.h"
#include "host/console/Terminal.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/PlainText.h"

namespace console {

namespace {

// Longer than the time after which the plug-in closes and reopens a document.
constexpr double kUntilReopened = 6;  // seconds
constexpr size_t kLongestPipedScript = 1u << 20;
constexpr const char* kCloseGivesBack = "CloseFontsOnDocClose";

int Refuse(const std::string& line) {
  std::fprintf(stderr, "%s\n", platform::OneLine(line).c_str());
  return kStatusUnknown;
}

struct ScriptLine {
  Words words;
  size_t number = 0;
};

// Checks the whole script before any of it runs. Returns an empty text or one line.
std::string ReadScript(const std::string& path, const std::string& text, std::vector<ScriptLine>& script) {
  size_t number = 0;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    ScriptLine line{{}, ++number};
    std::string problem = SplitWords(text.substr(start, end - start), line.words);
    if (problem.empty()) problem = CheckCommand(line.words);
    if (!problem.empty()) return problem.insert(0, path + ":" + std::to_string(number) + ": ");
    if (!line.words.empty()) script.push_back(std::move(line));
    start = end + 1;
  }
  return "";
}

// The objects of one run of the program.
struct Run {
  Signals& signals;
  const Sandbox& sandbox;
  Session& session;
  Report& report;

  // True if it makes no sense to continue: a signal requests the end, the state folder is gone, or nobody reads the
  // report any more.
  bool Ends() const { return signals.EndAsked() != 0 || session.IsLost() || std::ferror(stdout) != 0; }
};

void RunScript(const Run& run, const std::vector<ScriptLine>& script, CommandContext& context) {
  for (const ScriptLine& line : script) {
    RunCommand(context, line.words);
    if (context.quits || run.Ends()) return;
  }
}

// Returns false if a line was not understood and no user could read that. `panel` is null without a font panel.
bool RunConsole(const Run& run, CommandContext& context, Boxes& boxes, PanelSession* panel) {
  Terminal terminal(run.signals, [&context] { return context.session.DocumentNames(); });
  run.signals.SetUser(terminal.HasUser());
  if (terminal.HasUser()) {
    boxes.SetTerminal([&](host::ModalSession& box, const std::string& prompt, std::string& answer) {
      return terminal.Ask(box, prompt, answer);
    });
  }
  std::string line;
  bool isUnderstood = true;
  const auto readCommand = [&] {
    const PanelSession::AgentWatch watch(panel);
    return terminal.ReadCommand(line);
  };
  while (!context.quits && readCommand()) {
    Words words;
    std::string problem = SplitWords(line, words);
    if (problem.empty()) problem = CheckCommand(words);
    if (problem.empty()) {
      RunCommand(context, words);
    } else {
      std::fprintf(stderr, "%s\n", platform::OneLine(problem).c_str());
      isUnderstood = terminal.HasUser();
    }
  }
  boxes.SetTerminal(nullptr);
  run.signals.SetUser(false);
  return isUnderstood;
}

// The default run: takes each document through its whole life and saves a copy, so that the document itself does not
// change. Fonts are deactivated at the close, whatever the user's preferences are.
void Demonstrate(const Run& run, const std::vector<std::string>& files) {
  run.session.OverridePreference(kCloseGivesBack, true);
  for (const std::string& file : files) {
    if (run.Ends()) return;
    RunReported(run.report, file, [&] {
      if (!run.session.Open(file)) return;
      run.session.Wait(kUntilReopened);
      if (run.Ends()) return;
      run.session.SaveCopyInSandbox();
      run.session.CloseAll();
    });
  }
}

// Returns the documents of a folder, sorted by name, without the pages that describe them.
std::vector<std::string> DocumentsIn(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    std::error_code unknown;
    if (entry.is_regular_file(unknown) && entry.path().extension() != ".md") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void DescribeLibrary(const Sandbox& sandbox, const LibrarySummary& library) {
  std::fprintf(stderr, "library: %zu %s in %zu %s of\n", library.faces, library.faces == 1 ? "font" : "fonts",
               library.files, library.files == 1 ? "file" : "files");
  for (const std::string& folder : sandbox.Library()) std::fprintf(stderr, "  %s\n", platform::OneLine(folder).c_str());
}

std::unique_ptr<Report> MakeReport(const Options& options) {
  return options.json ? MakeJsonReport() : MakeTextReport();
}

// Does what the options say in a started session. Returns false like RunConsole.
bool Work(const Run& run, const Options& options, const std::vector<ScriptLine>& script, AnswerQueue& answers,
          Boxes& boxes) {
  CommandContext context{run.session, answers, run.report};
  if (!options.script.empty()) {
    RunScript(run, script, context);
  } else if (options.interactive) {
    for (const std::string& file : options.files) {
      RunReported(run.report, file, [&] { run.session.Open(file); });
    }
    std::optional<PanelSession> panel;
    if (options.panel) {
      RunReported(run.report, "panel", [&] {
        panel.emplace(run.sandbox, run.session);
        run.report.Listing({"panel: " + panel->Address()});
      });
    }
    return RunConsole(run, context, boxes, panel ? &*panel : nullptr);
  } else {
    Demonstrate(run, options.files);
  }
  return true;
}

// Returns the exit status, or kStatusSignal plus the number of the signal that ended the run.
int RunHost(const Options& options, const std::vector<ScriptLine>& script) {
  Signals signals;
  const std::unique_ptr<Report> report = MakeReport(options);
  Sandbox sandbox;
  const std::string problem = sandbox.Prepare({options.state, options.library, options.desktop});
  if (!problem.empty()) {
    report->Error(sandbox.Folder(),
                  problem.starts_with(sandbox.Folder() + ": ") ? problem.substr(sandbox.Folder().size() + 2) : problem);
    return kStatusWrong;
  }
  if (!options.interactive) platform::Clock::SetDriven(platform::Clock::Now());
  AnswerQueue answers;
  Boxes boxes(answers);
  Session session(sandbox, *report);
  LibrarySummary library;
  bool isUnderstood = true;
  if (session.Start(&library)) {
    if (library.isKnown) DescribeLibrary(sandbox, library);
    isUnderstood = Work({signals, sandbox, session, *report}, options, script, answers, boxes);
  }
  RunReported(*report, sandbox.Folder(), [&] { session.Quit(); });
  if (signals.EndAsked() != 0) {
    std::fprintf(stderr, "ended by a signal: %s\n", strsignal(signals.EndAsked()));
  } else if (answers.Count() > 0) {
    std::fprintf(stderr, "%zu answers were not used\n", answers.Count());
  }
  report->Finish();
  if (signals.EndAsked() != 0) return kStatusSignal + signals.EndAsked();
  if (!isUnderstood) return kStatusUnknown;
  return report->Errors() == 0 ? kStatusWell : kStatusWrong;
}

// Also reads a pipe, for example from the shell's process substitution.
std::error_code ReadScriptFile(const std::string& path, std::string& text) {
  const std::error_code error = platform::ReadFile(path, text);
  if (error != std::errc::not_supported) return error;
  std::ifstream pipe(path, std::ios::binary);
  std::array<char, 4096> piece;
  while (pipe.read(piece.data(), piece.size()) || pipe.gcount() > 0) {
    text.append(piece.data(), static_cast<size_t>(pipe.gcount()));
    if (text.size() > kLongestPipedScript) return std::make_error_code(std::errc::file_too_large);
  }
  return pipe.eof() ? std::error_code() : std::make_error_code(std::errc::io_error);
}

// What the program says about itself; empty if it has to do its work.
std::string TextAskedFor(const Options& options) {
  if (options.help) return HelpText();
  if (options.manual) return ManualPage();
  if (options.version) return VersionText();
  return options.completion.empty() ? "" : CompletionText(options.completion);
}

}  // namespace

int Main(const std::vector<std::string>& arguments) {
  Options options;
  std::string problem = ParseOptions(arguments, options);
  if (!problem.empty()) return Refuse(problem);
  if (const std::string text = TextAskedFor(options); !text.empty()) {
    std::fputs(text.c_str(), stdout);
    return kStatusWell;
  }
  std::vector<ScriptLine> script;
  if (!options.script.empty()) {
    std::string text;
    if (const std::error_code error = ReadScriptFile(options.script, text)) {
      MakeReport(options)->Error(options.script, platform::DescribeError(error));
      return kStatusWrong;
    }
    problem = ReadScript(options.script, text, script);
    if (!problem.empty()) return Refuse(problem);
  } else if (!options.interactive) {
    if (options.files.empty() && !options.samples.empty()) options.files = DocumentsIn(options.samples);
    if (options.files.empty()) return Refuse("no documents named; see --help");
  }
  const int status = RunHost(options, script);
  if (status > kStatusSignal) {
    std::fflush(stdout);
    EndBySignal(status - kStatusSignal);
  }
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  std::fputs("standard output can't be written\n", stderr);
  return kStatusWrong;
}

}  // namespace console
