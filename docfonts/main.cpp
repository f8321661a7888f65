// docfonts: lists the fonts of documents.
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "Identification/FontNames.h"
#include "Readers/XMPFontMetadata.h"
#include "agent/client/StateFolder.h"
#include "docfonts/FileWalk.h"
#include "docfonts/FontCollector.h"
#include "docfonts/Options.h"
#include "docfonts/ReaderPool.h"
#include "docfonts/Resolver.h"
#include "platform/Descriptor.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "platform/PlainText.h"

namespace docfonts {

namespace {

enum EStatus : int { kAllRead = 0, kNotAllRead = 1, kWrongUsage = 2 };

// Shows how many documents were read so far, on a terminal only.
class Progress {
 public:
  explicit Progress(bool isWanted) : isShown_(isWanted && isatty(STDERR_FILENO) != 0) {}
  ~Progress() { Clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Count(const std::string& path) {
    ++count_;
    const auto now = std::chrono::steady_clock::now();
    if (!isShown_ || now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    winsize size{};
    const size_t width = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : 80;
    const std::string line = platform::OneLine(std::to_string(count_) + "  " + path);
    std::fprintf(stderr, "\r\033[K%s", std::string(platform::FirstCharacters(line, width - 1)).c_str());
    isDrawn_ = true;
  }
  void Clear() {
    if (isDrawn_) std::fprintf(stderr, "\r\033[K");
    isDrawn_ = false;
  }

 private:
  const bool isShown_;
  bool isDrawn_ = false;
  size_t count_ = 0;
  std::chrono::steady_clock::time_point next_{};
};

// Nobody can supply a font that is internal to the application that wrote the document.
bool IsNotNeeded(const Font& font) {
  return !font.active && !font.embedded.value_or(false) && GlyphsureSupport::IsInternalToHost(font.name);
}

bool IsActive(const Font& font, const platform::FontSnapshot& system) {
  if (!font.style) return system.postScriptNames.contains(font.name);
  return FindFace(system, font.style->family, font.style->weight, font.style->isItalic, font.style->stretch) != nullptr;
}

class Program {
 public:
  explicit Program(const Options& options)
      : options_(options), walk_(options.files, options.recursive), progress_(options.recursive) {
    style_.hasColours = isatty(STDOUT_FILENO) != 0 && !std::getenv("NO_COLOR");
    style_.isResolved = options.resolve;
  }

  int Run();

 private:
  std::optional<std::string> NextPath();
  bool Take(Report report);
  bool Write(const Report& report);
  void Complain(const std::string& file, const std::string& problem);

  const Options& options_;
  FileWalk walk_;
  std::deque<bool> isNamed_;  // for the documents whose reports are pending
  std::shared_ptr<const platform::FontSnapshot> system_;
  Resolver resolver_;
  Progress progress_;
  TextStyle style_;
  bool isFirst_ = true;
  int status_ = kAllRead;
};

void Program::Complain(const std::string& file, const std::string& problem) {
  status_ = kNotAllRead;
  std::fflush(stdout);
  progress_.Clear();
  std::fprintf(stderr, "docfonts: %s: %s\n", platform::OneLine(file).c_str(), platform::OneLine(problem).c_str());
}

std::optional<std::string> Program::NextPath() {
  std::optional<FileWalk::File> file = walk_.Next();
  if (!file) return std::nullopt;
  isNamed_.push_back(file->isNamed);
  return std::move(file->path);
}

bool Program::Write(const Report& report) {
  std::string text;
  if (options_.json) {
    text = ToJson(report).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
  } else {
    text = (isFirst_ ? "" : "\n") + ToText(report, style_);
  }
  isFirst_ = false;
  progress_.Clear();
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return true;
  Complain("standard output", std::strerror(errno));
  return false;
}

bool Program::Take(Report report) {
  const bool isNamed = isNamed_.front();
  isNamed_.pop_front();
  progress_.Count(report.file);
  // Uses the fonts that are active at the start of the run.
  if (!system_) system_ = platform::GetFontSnapshot();
  for (Font& font : report.fonts) font.active = IsActive(font, *system_);
  std::erase_if(report.fonts, IsNotNeeded);
  if (options_.missing) std::erase_if(report.fonts, [](const Font& font) { return font.active; });
  if (options_.resolve) resolver_.Resolve(report);
  // Folders contain many files that are not documents.
  const bool isDocument = isNamed || !report.kind.empty();
  const bool isWorthALine = options_.missing ? !report.fonts.empty() : isDocument || !report.fonts.empty();
  if (!report.problems.empty()) status_ = kNotAllRead;
  if (options_.json) return (!isWorthALine && report.problems.empty()) || Write(report);
  for (const std::string& problem : report.problems) Complain(report.file, problem);
  const bool isOnlyProblem = report.fonts.empty() && !report.problems.empty();
  return !isWorthALine || isOnlyProblem || Write(report);
}

int Program::Run() {
  if (const std::string problem = options_.resolve ? resolver_.Connect() : ""; !problem.empty()) {
    Complain("--resolve", problem);
    return status_;
  }
  const bool isOne = options_.files.size() == 1 && !options_.recursive;
  const size_t processes = isOne ? 1 : std::max(1u, std::thread::hardware_concurrency());
  ReaderPool pool(processes, [](const std::string& path) {
    static const int sStarted = InitializeGlyphsureXMP();
    Report report = CollectFonts(path);
    if (sStarted != 0) report.problems.push_back("the XMP library can't be started");
    return report;
  });
  pool.Run([this] { return NextPath(); }, [this](Report report) { return Take(std::move(report)); });
  return status_;
}

int Print(const std::string& text) {
  return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? kAllRead : kNotAllRead;
}

int Main(const std::vector<std::string>& arguments) {
  Options options;
  if (const std::string problem = ParseOptions(arguments, options); !problem.empty()) {
    std::fprintf(stderr, "docfonts: %s\n", platform::OneLine(problem).c_str());
    return kWrongUsage;
  }
  if (options.help) return Print(HelpText());
  if (options.version) return Print(platform::VersionLine("docfonts"));
  if (!options.completion.empty()) return Print(CompletionText(options.completion));
  const bool isDesktop = options.state.empty();
  const std::string state = isDesktop ? platform::UserStateFolder() : std::filesystem::absolute(options.state).string();
  platform::SetPlaces(agent_client::PlacesOf(state, isDesktop));
  return Program(options).Run();
}

}  // namespace

}  // namespace docfonts

int main(int count, char** arguments) {
  platform::ReserveStandardStreams();
  return docfonts::Main({arguments + 1, arguments + count});
}
