// What a person waits for: a program that is started by with-fonts, against reading the document and listing the fonts
// in processes of their own; and a watched folder, from a program's opening of a document to its fonts being listed. The
// limits are 60 and 50 ms where the floor takes 18 ms.
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "Floor.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "platform/Waiting.h"
#include "support/DebianFonts.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr int kRuns = 15;
constexpr std::chrono::seconds kPatience(90);  // an unknown user of a document is given a minute
constexpr const char* kFont = "NimbusSans-Bold";
const std::string kProgram = APP_DIR "/with-fonts/with-fonts", kPoster = SOURCE_DIR "/samples/poster.psd";

void Run(const std::string& command) {
  if (std::system(("{ " + command + "; } >/dev/null 2>&1").c_str()) != 0) benchmark::Fail(command + " fails");
}

void AwaitListed(const std::string& name, bool isListed) {
  const auto isSo = [&] { return platform::IsPostScriptNameActive(name) == isListed; };
  if (!platform::WaitUntil(kPatience, isSo, std::chrono::milliseconds(1))) benchmark::Fail(name + " is not listed");
}

// A user with a library and a desktop of one font.
class Desktop {
 public:
  Desktop() {
    fs::create_directories(folder_ / "home/Fonts");
    for (const char* name : {"NimbusSans-Regular.otf", "NimbusSans-Bold.otf"}) {
      fs::copy(debian_fonts::kOpenType + name, folder_ / "home/Fonts");
    }
    const std::string active = folder_ / "home/.local/share/fonts";
    fs::create_directories(active);
    setenv("HOME", (folder_ / "home").c_str(), 1);
    setenv("XDG_DATA_DIRS", "/nonexistent", 1);
    for (const char* name : {"XDG_DATA_HOME", "XDG_STATE_HOME"}) unsetenv(name);
    platform::Places places;
    places.fontConfigFile = folder_.WriteFontsConf({debian_fonts::kDejaVu, active});
    setenv("FONTCONFIG_FILE", places.fontConfigFile.c_str(), 1);
    platform::SetPlaces(places);
    fs::create_directories(folder_ / "documents");
    fs::copy(kPoster, folder_ / "documents");
  }
  std::string Documents() const { return folder_ / "documents"; }

 private:
  test_support::TempFolder folder_;
};

// A program that runs until the object is destroyed.
class Background {
 public:
  // A line for the shell.
  explicit Background(const std::string& line) {
    process_ = fork();
    if (process_ == 0) {
      execl("/bin/sh", "sh", "-c", ("exec " + line + " >/dev/null 2>&1").c_str(), nullptr);
      _exit(127);
    }
  }
  ~Background() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
  }
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

 private:
  pid_t process_ = 0;
};

void MeasureAll() {
  const Desktop desktop;
  const std::string document = desktop.Documents() + "/poster.psd";
  const auto read = [&] { Run("'" APP_DIR "/docfonts/docfonts' '" + document + "' && fc-list"); };
  const Background watch("'" + kProgram + "' --watch '" + desktop.Documents() + "'");
  // An opening before the watch has started is not noticed.
  const bool isWatching = platform::WaitUntil(kPatience, [&] {
    Run("cat '" + document + "'");
    return platform::IsPostScriptNameActive(kFont);
  });
  if (!isWatching) benchmark::Fail("the folder is not watched");
  // The watch keeps the agent running.
  benchmark::Compare(
      "with-fonts true, against docfonts and fc-list", 3.3, kRuns,
      [&] { Run("'" + kProgram + "' true '" + kPoster + "'"); }, read);
  std::optional<Background> user;
  benchmark::Compare(
      "watched: from opening to listed, the same", 2.7, kRuns,
      [&] {
        user.emplace("tail -f '" + document + "'");
        AwaitListed(kFont, true);
      },
      read,
      [&] {
        user.reset();
        AwaitListed(kFont, false);
      });
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
