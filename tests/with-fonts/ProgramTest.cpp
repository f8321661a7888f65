// The program as a user starts it, with the real agent, which it starts by itself. The programs that it runs are
// scripts that ask fontconfig in a process of its own what is there.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>

#include "platform/Waiting.h"
#include "support/DebianFonts.h"
#include "support/PDFFile.h"
#include "support/ProgramRun.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace {

using Json = nlohmann::json;
using test_support::Outcome;
using test_support::ScopedVariable;
using test_support::TempFolder;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::chrono::seconds kPatience(90);
// The fonts of the poster that only the library has, as the scripts list them.
constexpr const char* kPosterFonts = "LiberationSerif-Bold\nNimbusSans-Bold\nNimbusSans-Regular\n";
constexpr const char* kList = "fc-list : postscriptname | sed 's/.*=//' | grep -v DejaVu | sort -u";

// A user with a home, a desktop of one font, and a library.
class WithFonts : public testing::Test {
 protected:
  WithFonts() {
    std::filesystem::create_directories(folder_ / "home/Fonts");
    for (const std::string& file :
         {debian_fonts::kLiberation + "LiberationSerif-Bold.ttf", debian_fonts::kOpenType + "NimbusSans-Regular.otf",
          debian_fonts::kOpenType + "NimbusSans-Bold.otf"}) {
      std::filesystem::copy(file, folder_ / "home/Fonts");
    }
    // Copies: the programs of other tests may have the samples open, and would count as users of the documents.
    std::filesystem::create_directory(folder_ / "samples");
    for (const char* sample :
         {"samples/poster.psd", "samples/brochure.psd", "samples/no-text.psd", "tests/docfonts/samples/text.odt",
          "tests/docfonts/samples/embedded.odt", "tests/docfonts/samples/drawing.svg"}) {
      std::filesystem::copy(std::string(SOURCE_DIR "/") + sample, folder_ / "samples");
    }
    folder_.Write("fonts.conf", "<fontconfig><dir>" + debian_fonts::kDejaVu +
                                    "</dir><dir prefix=\"xdg\">fonts</dir><cachedir>" + folder_ / "cache" +
                                    "</cachedir></fontconfig>");
    Script("list", std::string(kList) + "\n");
  }

  std::string Script(const std::string& name, const std::string& lines) const {
    std::string path = folder_.Write(name, "#!/bin/sh\n" + lines);
    chmod(path.c_str(), 0755);
    return path;
  }
  // With words as a shell takes them.
  Outcome Run(const std::string& words) const {
    return test_support::RunLine("cd '" + folder_.Path() + "' && '" APP_DIR "/with-fonts/with-fonts' " + words,
                                 folder_);
  }
  // What a program sees that starts now.
  std::string Listed() const { return test_support::RunLine(kList, folder_).output; }
  bool BecomesListed(const std::string& fonts) const {
    return platform::WaitUntil(kPatience, [&] { return Listed() == fonts; });
  }
  bool Appears(const std::string& name) const {
    return platform::WaitUntil(kPatience, [&] { return std::filesystem::exists(folder_ / name); });
  }
  void Pipe(const std::string& name) const { mkfifo((folder_ / name).c_str(), 0600); }

  const std::string kPoster = "samples/poster.psd";
  TempFolder folder_;
  ScopedVariable home_{"HOME", folder_ / "home"}, data_{"XDG_DATA_HOME", {}}, states_{"XDG_STATE_HOME", {}},
      others_{"XDG_DATA_DIRS", folder_ / "nothing"}, conf_{"FONTCONFIG_FILE", folder_ / "fonts.conf"};
};

TEST_F(WithFonts, TheProgramSeesTheFontsOfItsDocumentsAndTheyAreGoneAtItsEnd) {
  struct Row {
    const char* words;
    const char* listed;
    const char* line;  // a part of it
  };
  const Row kRows[] = {
      {"./list @/poster.psd", kPosterFonts, "4 fonts, 1 already active, 3 activated"},
      {"./list file://@/poster%2epsd", kPosterFonts, "3 activated"},
      // Documents that name families and styles.
      {"./list @/text.odt", "LiberationSerif-Bold\nNimbusSans-Bold\n", "3 activated"},
      {"./list @/embedded.odt", "", "1 font, 1 in the document"},
      {"./list @/drawing.svg @/no-text.psd", "NimbusSans-Regular\n", "no fonts"},
      {"--private ./list @/poster.psd", kPosterFonts, "3 activated"},
      {"--quiet ./list @/poster.psd", kPosterFonts, ""},
      {"--json ./list @/poster.psd", kPosterFonts, "\"use\":\"activated\""},
      // No document: nothing is started.
      {"./list list nothing.psd --psd", "", ""},
  };
  for (const Row& row : kRows) {
    const Outcome run = Run(std::regex_replace(row.words, std::regex("@"), folder_ / "samples"));
    EXPECT_EQ(run.status, 0) << row.words << run.errors;
    EXPECT_EQ(run.output, row.listed) << row.words;
    EXPECT_THAT(run.errors, HasSubstr(row.line)) << row.words;
    EXPECT_EQ(run.errors.empty(), !*row.line) << row.words << run.errors;
    EXPECT_EQ(Listed(), "") << row.words;
  }
  EXPECT_THAT(folder_.Names("home/.local/state/velorant/desktop/private"), IsEmpty());
  // Streams that are closed do not get in the way.
  Script("closed", "exec '" APP_DIR "/with-fonts/with-fonts' ./list $1 <&- 2>&-\n");
  EXPECT_EQ(test_support::RunLine("cd '" + folder_.Path() + "' && ./closed " + kPoster, folder_).output, kPosterFonts);
}

TEST_F(WithFonts, PassesOnArgumentsInputStatusAndSignals) {
  Script("show", "printf '<%s>' \"$@\"; cat; exit 7\n");
  Outcome run = Run("./show 'a  b' '' -- --json </dev/null");
  EXPECT_EQ(run.output, "<a  b><><--><--json>");
  EXPECT_EQ(run.status, 7);
  EXPECT_EQ(Run("./show <fonts.conf").output.size(), std::filesystem::file_size(folder_ / "fonts.conf") + 2);
  // The program asks for the signal of its parent, which passes it on.
  Script("trap", "trap 'echo caught; exit 3' TERM; kill -TERM $PPID; while :; do :; done\n");
  run = Run("./trap");
  EXPECT_EQ(run.output, "caught\n");
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(Run("sh -c 'kill -KILL $$'; test $? = 137 && echo killed").output, "killed\n");
  // One that a whole group of processes gets leaves the fonts until the program ends.
  Script("group", "trap 'trap \"\" TERM; ./list; exit 3' TERM; kill -TERM 0; while :; do :; done\n");
  run = Run("--quiet true && setsid -w '" APP_DIR "/with-fonts/with-fonts' --quiet ./group " + kPoster);
  EXPECT_EQ(run.output, kPosterFonts);
  EXPECT_EQ(run.errors, "");
  run = Run("./nowhere");
  EXPECT_EQ(run.status, 127);
  EXPECT_THAT(run.errors, HasSubstr("./nowhere: there is no such program"));
  run = Run("./fonts.conf");
  EXPECT_EQ(run.status, 126);
  for (const char* words : {"", "--unknown true", "--private --keep true", "--no-run"}) EXPECT_EQ(Run(words).status, 2);
}

TEST_F(WithFonts, FontsThatSeveralUseStayUntilTheLastEnds) {
  for (const std::string& name : {std::string("first"), std::string("second")}) {
    Pipe(name);
    Script("wait-" + name, "echo >" + name + "-started; read word <" + name + "\n");
    const std::string run = "'" APP_DIR "/with-fonts/with-fonts' ./wait-" + name + " " + kPoster + " 2>" + name +
                            "-errors; echo >" + name + "-ended";
    ASSERT_EQ(std::system(("cd '" + folder_.Path() + "' && { " + run + "; } &").c_str()), 0);
    ASSERT_TRUE(Appears(name + "-started"));
  }
  EXPECT_THAT(TempFolder::Content(folder_ / "first-errors"), HasSubstr("3 activated"));
  EXPECT_THAT(TempFolder::Content(folder_ / "second-errors"), HasSubstr("4 already active"));
  // The first gives back what it held, and the second still holds it.
  folder_.Write("first", "\n");
  ASSERT_TRUE(Appears("first-ended"));
  EXPECT_EQ(Listed(), kPosterFonts);
  folder_.Write("second", "\n");
  ASSERT_TRUE(Appears("second-ended"));
  EXPECT_EQ(Listed(), "");
}

TEST_F(WithFonts, RunsThatBeginTogetherDoNotTakeEachOthersFonts) {
  Pipe("ended");
  Script("longest", "read word <ended; " + std::string(kList) + "\n");
  // The others begin and end at any moment of the start of the one that is looked at.
  const std::string run = "'" APP_DIR "/with-fonts/with-fonts' --quiet ";
  Script("together", "{ for other in 1 2 3; do " + run + "true \"$1\" & done; wait; echo >ended; } &\n" + "exec " +
                         run + "./longest \"$1\"\n");
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(test_support::RunLine("cd '" + folder_.Path() + "' && ./together " + kPoster, folder_).output,
              kPosterFonts);
    EXPECT_EQ(Listed(), "");
  }
}

TEST_F(WithFonts, AnAgentOrKeeperThatEndsIsStartedAgainWithTheFonts) {
  // Only the agent has the state folder as an argument.
  Script("lose",
         "agent=$(grep -lzx \"$HOME/.local/state/velorant/deskto[p]\" /proc/[0-9]*/cmdline 2>/dev/null | tr -dc 0-9)\n"
         "kill -$1 $agent\nwhile kill -0 $agent 2>/dev/null; do :; done\n"
         "until [ \"$(./list | wc -l)\" = 3 ]; do :; done; echo back\n");
  // The process that holds the fonts is the other child of the one that runs the program.
  Script("lose-keeper",
         "keeper() { grep -l \"^PPid:.$1$\" /proc/[0-9]*/status 2>/dev/null | tr -dc '0-9\\n' | grep -vx $$; }\n"
         "old=$(keeper $PPID)\nkill -KILL $old\n"
         "until now=$(keeper $PPID) && [ \"$now\" != \"$old\" ]; do :; done\n"
         "until [ \"$(./list | wc -l)\" = 3 ]; do :; done; echo back\n");
  for (const std::string options : {"./lose KILL ", "./lose TERM ", "--private ./lose KILL ", "./lose-keeper "}) {
    const Outcome run = Run(options + kPoster);
    EXPECT_EQ(run.output, "back\n") << options;
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    EXPECT_EQ(Listed(), "") << options;
  }
}

TEST_F(WithFonts, AKilledRunLeavesNothingActive) {
  for (const char* option : {"", "--private"}) {
    // The program kills its parent and goes on.
    Script("murder", std::string(kList) + " >seen; kill -KILL $PPID\n");
    Run(std::string(option) + " ./murder " + kPoster);
    EXPECT_TRUE(platform::WaitUntil(kPatience, [&] { return TempFolder::Content(folder_ / "seen") == kPosterFonts; }));
    EXPECT_TRUE(BecomesListed("")) << option;
  }
  // The links of the killed private run are removed by the next one.
  EXPECT_EQ(Run("--private ./list " + kPoster).output, kPosterFonts);
  EXPECT_THAT(folder_.Names("home/.local/state/velorant/desktop/private"), IsEmpty());
}

TEST_F(WithFonts, AnInstanceThatGetsTheDocumentKeepsTheFontsUntilItEnds) {
  Pipe("queue");
  std::filesystem::create_directory(folder_ / "app");
  std::filesystem::copy("/bin/cat", folder_ / "app/application");
  Script("app/start", "exit 4\n");  // passes the document on and ends
  ASSERT_EQ(std::system(("cd '" + folder_.Path() + "' && app/application queue >/dev/null &").c_str()), 0);
  for (const char* option : {"", "--private"}) {
    const Outcome run = Run(std::string(option) + " app/start " + kPoster);
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.errors, HasSubstr("the fonts stay until"));
    EXPECT_EQ(Listed(), kPosterFonts);  // of the first, for both
  }
  EXPECT_EQ(folder_.Names("home/.local/state/velorant/desktop/private").size(), 1u);
  folder_.Write("queue", "");
  EXPECT_TRUE(BecomesListed(""));
  EXPECT_TRUE(platform::WaitUntil(kPatience,
                                  [&] { return folder_.Names("home/.local/state/velorant/desktop/private").empty(); }));
}

TEST_F(WithFonts, AProgramThatGoesOnInTheBackgroundKeepsTheFontsUntilItEnds) {
  Pipe("use");
  // It forks twice, and both parents are gone by the time it is looked for. Neither file nor document tells it.
  Script("leave", "(setsid sh -c 'read word; echo ended >ended' <use >/dev/null 2>&1 &)\n");
  EXPECT_THAT(Run("./leave " + kPoster).errors, HasSubstr("the fonts stay until"));
  EXPECT_EQ(Listed(), kPosterFonts);
  folder_.Write("use", "\n");
  EXPECT_TRUE(Appears("ended"));
  EXPECT_TRUE(BecomesListed(""));
}

TEST_F(WithFonts, WithoutAProgramFontsAreForeseenKeptAndGivenBack) {
  struct Row {
    std::string words;
    int status;
    const char* output;  // a part of it
    const char* listed;  // afterwards
  };
  const Row kRows[] = {
      {"--dry-run " + kPoster, 0, "3 would be activated: LiberationSerif-Bold, NimbusSans-Regular", ""},
      {"-n samples/brochure.psd", 1, "4 missing: C059-Bold", ""},
      // The nearest face is offered and not activated.
      {"-n samples/drawing.svg", 1, "Narrow (nearest: LiberationSerif-Bold)", ""},
      {"--no-run --keep " + kPoster, 0, "3 activated", kPosterFonts},
      {"--no-run --keep " + kPoster, 0, "4 already active", kPosterFonts},
      {"true " + kPoster, 0, "", kPosterFonts},
      {"--release", 0, "3 fonts given back", ""},
      {"--release", 0, "0 fonts given back", ""},
      {"--no-run --keep nothing.psd", 1, "", ""},
  };
  for (const Row& row : kRows) {
    const Outcome run = Run(row.words);
    EXPECT_EQ(run.status, row.status) << row.words << run.errors;
    EXPECT_THAT(run.output, HasSubstr(row.output)) << row.words;
    EXPECT_EQ(Listed(), row.listed) << row.words;
  }
  // Until Ctrl-C.
  Script("interrupt", "'" APP_DIR
                      "/with-fonts/with-fonts' --no-run $1 >said &\n"
                      "until [ -s said ]; do :; done; ./list; kill -INT $!; wait $!; echo $?; ./list\n");
  const Outcome interrupted = test_support::RunLine("cd '" + folder_.Path() + "' && ./interrupt " + kPoster, folder_);
  EXPECT_EQ(interrupted.output, std::string(kPosterFonts) + "0\n");
  const Outcome json = Run("--json -n " + kPoster);
  EXPECT_EQ(Json::parse(json.output)["fonts"][0]["use"], "found") << json.output;
}

TEST_F(WithFonts, TheNearestFontsAreOfTheFamilyOrItsAliasOrLookAsTheDocumentSays) {
  folder_.Write("fonts.conf", "<fontconfig><dir>" + debian_fonts::kDejaVu +
                                  "</dir><dir prefix=\"xdg\">fonts</dir><cachedir>" + folder_ / "cache" +
                                  "</cachedir><alias binding=\"same\"><family>Times New Roman</family>"
                                  "<accept><family>Liberation Serif</family></accept></alias></fontconfig>");
  const std::string letters =
      "/FirstChar 1 /Widths [556 556 500 556 556 278 556 556 222 222 500 222 833 556 556 556 556 333 500 278 556 500 722 "
      "500 500 500] /Encoding << /Differences [1 /a /b /c /d /e /f /g /h /i /j /k /l /m /n /o /p /q /r /s /t /u /v /w /x "
      "/y /z] >>";
  const struct {
    std::string font;
    const char* nearest;
  } kRows[] = {
      {"/BaseFont /NimbusSans-Light", "(nearest: NimbusSans-Regular, NimbusSans-Bold)"},
      {"/BaseFont /TimesNewRomanPS-BoldMT", "(nearest: LiberationSerif-Bold)"},
      {"/BaseFont /Garamond-Bold /FontDescriptor << /Flags 34 >>", "(nearest: LiberationSerif-Bold, DejaVuSerif-Bold"},
      {"/BaseFont /Garamond /FontDescriptor << /Flags 34 /FontWeight 700 >>",
       "(nearest: LiberationSerif-Bold, DejaVuSerif-Bold"},
      {"/BaseFont /Letters " + letters, "(nearest: NimbusSans-Regular, "},
      {"/BaseFont /Typing /FirstChar 105 /Widths [600 600 600]", "(nearest: DejaVuSansMono)"},
      {"/BaseFont /Unheard", "missing: Unheard\n"},
  };
  for (const auto& row : kRows) {
    folder_.Write("a.pdf", test_support::PDFFile()
                               .Add({{1, "<< /Type /Catalog /Pages 2 0 R >>"},
                                     {2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>"},
                                     {3, "<< /Type /Page /Parent 2 0 R /Resources << /Font << /A 4 0 R >> >> >>"},
                                     {4, "<< /Type /Font /Subtype /TrueType " + row.font + " >>"}})
                               .Bytes());
    EXPECT_THAT(Run("-n a.pdf").output, HasSubstr(row.nearest)) << row.font;
  }
}

TEST_F(WithFonts, AFontThatMustNotBeActivatedIsNamedAndTheDocumentGetsNone) {
  folder_.Write(
      "home/.local/state/velorant/desktop/nexcore.json",
      R"({"library": [")" + folder_ / "home/Fonts" + R"("], "desktop": true, "refused": ["NimbusSans-Bold"]})");
  for (const std::string option : {"", "--private "}) {
    const Outcome run = Run(option + "./list " + kPoster);
    EXPECT_EQ(run.output, "") << option;
    EXPECT_THAT(run.errors, HasSubstr("1 must not be activated: NimbusSans-Bold, 2 not activated\n")) << option;
  }
}

TEST_F(WithFonts, AFontThatASandboxCannotSeeIsNamed) {
  Script("flatpak/exports/bin/app", "");
  EXPECT_THAT(Run("flatpak/exports/bin/app " + kPoster).errors, testing::Not(HasSubstr("sandbox")));
  EXPECT_THAT(Run("--private flatpak/exports/bin/app " + kPoster).errors,
              HasSubstr("can't reach a program in a sandb"));
  // Fonts on another file system can only be linked symbolically. Some machines have none here.
  const bool hasOther = std::filesystem::exists("/dev/shm");
  const std::string other =
      (hasOther ? "/dev/shm/" : folder_ / "") + std::filesystem::path(folder_.Path()).filename().string();
  std::filesystem::copy(folder_ / "home/Fonts", other);
  struct stat here {
  }, there{};
  ASSERT_EQ(stat(folder_.Path().c_str(), &here) + stat(other.c_str(), &there), 0);
  const Outcome run = Run("--library " + other + " flatpak/exports/bin/app " + kPoster);
  std::filesystem::remove_all(other);
  const bool isNamed = run.errors.find("NimbusSans-Bold: the program's sandbox can't see it") != std::string::npos;
  EXPECT_EQ(isNamed, here.st_dev != there.st_dev) << run.errors;
  EXPECT_EQ(run.status, 0);
}

TEST_F(WithFonts, ASavedDocumentGetsIdentification) {
  const auto slugs = [this](const std::string& document) {
    return test_support::RunLine(
               "'" APP_DIR "/docfonts/docfonts' --json '" + folder_ / document + "' | grep -o Foundry", folder_)
        .output;
  };
  std::filesystem::copy(SOURCE_DIR "/samples/poster.psd", folder_.Path());
  std::filesystem::copy(SOURCE_DIR "/tests/docfonts/samples/drawing.svg", folder_.Path());
  // It saves by replacing the file, as most programs do. The second one keeps it open until its end.
  Script("save", "cp poster.psd new && touch -d 2020-02-02 new && mv new poster.psd\n");
  Script("hold", "exec 3>>drawing.svg; echo ' ' >&3\n");
  // The third one saves it, keeps it open for a while, and looks whether somebody else writes meanwhile.
  Script("keep",
         "exec 3<poster.psd; cp poster.psd new; cat new >poster.psd; saved=$(stat -c %i%z poster.psd)\n"
         "for look in 1 2 3 4 5 6 7 8 9; do ./list >seen; done; test \"$saved\" = \"$(stat -c %i%z poster.psd)\"\n");
  EXPECT_EQ(Run("./save poster.psd").status, 0);
  EXPECT_EQ(slugs("poster.psd"), "");
  const Outcome run = Run("--identify ./save poster.psd");
  EXPECT_THAT(run.errors, testing::Not(HasSubstr("with-fonts:")));
  EXPECT_EQ(slugs("poster.psd"), "Foundry\nFoundry\nFoundry\nFoundry\n");
  EXPECT_EQ(test_support::RunLine("date -r '" + folder_ / "poster.psd" + "' +%F", folder_).output, "2020-02-02\n");
  std::filesystem::copy(SOURCE_DIR "/samples/poster.psd", folder_.Path(),
                        std::filesystem::copy_options::overwrite_existing);
  EXPECT_EQ(Run("--identify ./keep poster.psd").status, 0);
  EXPECT_EQ(slugs("poster.psd"), "Foundry\nFoundry\nFoundry\nFoundry\n");
  EXPECT_THAT(Run("--identify ./hold drawing.svg").errors, HasSubstr("drawing.svg: its fonts are not identified"));
  EXPECT_EQ(Run("--identify true poster.psd").status, 0);  // nothing was saved
}

TEST_F(WithFonts, WithoutFontManagerOrDocumentTheProgramStillRuns) {
  folder_.Write("broken.psd", std::string("8BPS\0\1", 6));
  folder_.Write("state", "not a folder");
  const std::string start = "--state state ./list ";
  EXPECT_EQ(Run(start + kPoster).status, 0);
  EXPECT_THAT(Run(start + kPoster).errors, HasSubstr("state"));
  const Outcome run = Run("./list broken.psd " + kPoster);
  EXPECT_EQ(run.output, kPosterFonts);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 2) << run.errors;
}

TEST_F(WithFonts, AWatchedFolderServesWhateverProgramOpensADocument) {
  folder_.Write("documents/notes.txt", "no document");
  std::filesystem::copy(SOURCE_DIR "/samples/poster.psd", folder_ / "documents");
  Pipe("use");
  Script("watch",
         "'" APP_DIR "/with-fonts/with-fonts' --watch documents nowhere >watch-out 2>watch-errors; echo $? >status\n");
  Script("reader", "exec 3<documents/poster.psd; read word <use\n");
  Script("later", "until [ -e stop ]; do cat documents/new/poster.psd >seen; done\n");
  const auto start = [this](const std::string& script) {
    return std::system(("cd '" + folder_.Path() + "' && ./" + script + " >/dev/null 2>&1 &").c_str());
  };
  ASSERT_EQ(start("watch"), 0);
  ASSERT_TRUE(platform::WaitUntil(kPatience, [&] { return !TempFolder::Content(folder_ / "watch-out").empty(); }));
  ASSERT_EQ(start("reader"), 0);
  ASSERT_TRUE(BecomesListed(kPosterFonts));
  folder_.Write("use", "\n");
  ASSERT_TRUE(BecomesListed(""));
  // Another document in its place, which no program has opened by that.
  std::filesystem::rename(folder_ / "samples/text.odt", folder_ / "documents/poster.psd");
  ASSERT_EQ(start("reader"), 0);
  ASSERT_TRUE(BecomesListed("LiberationSerif-Bold\nNimbusSans-Bold\n"));
  folder_.Write("use", "\n");
  ASSERT_TRUE(BecomesListed(""));
  // A folder that is made later.
  std::filesystem::create_directories(folder_ / "documents/new");
  std::filesystem::copy(SOURCE_DIR "/samples/poster.psd", folder_ / "documents/new/poster.psd");
  ASSERT_EQ(start("later"), 0);
  ASSERT_TRUE(BecomesListed(kPosterFonts));
  folder_.Write("stop", "");
  std::filesystem::remove_all(folder_ / "documents");
  ASSERT_TRUE(platform::WaitUntil(kPatience, [&] { return TempFolder::Content(folder_ / "status") == "1\n"; }));
  EXPECT_EQ(Listed(), "");
  EXPECT_THAT(TempFolder::Content(folder_ / "watch-out"),
              HasSubstr("poster.psd: 4 fonts, 1 already active, 3 activated"));
  EXPECT_THAT(TempFolder::Content(folder_ / "watch-errors"), HasSubstr("nowhere: there is no such folder"));
  EXPECT_THAT(TempFolder::Content(folder_ / "watch-errors"), HasSubstr("documents: is gone"));
}

TEST_F(WithFonts, AWatchServesWhatIsOpenHoweverMuchWasOpened) {
  Script("watch", "'" APP_DIR "/with-fonts/with-fonts' --watch documents >watch-out 2>watch-errors; echo $? >status\n");
  Script("flood", "cat documents/*.txt >seen; exec 3<documents/poster.psd; read word <use\n");
  Pipe("use");
  std::filesystem::create_directories(folder_ / "documents");
  std::filesystem::copy(SOURCE_DIR "/samples/poster.psd", folder_ / "documents");
  for (int i = 0; i < 5000; ++i) folder_.Write("documents/" + std::to_string(i) + ".txt", "no document");
  const std::string start = "cd '" + folder_.Path() + "' && ./";
  ASSERT_EQ(std::system((start + "watch &").c_str()), 0);
  ASSERT_TRUE(platform::WaitUntil(kPatience, [&] { return !TempFolder::Content(folder_ / "watch-out").empty(); }));
  ASSERT_EQ(std::system((start + "flood &").c_str()), 0);
  EXPECT_TRUE(BecomesListed(kPosterFonts));
  folder_.Write("use", "\n");
  EXPECT_TRUE(BecomesListed(""));
  // Its documents have other paths now.
  std::filesystem::rename(folder_ / "documents", folder_ / "elsewhere");
  ASSERT_TRUE(platform::WaitUntil(kPatience, [&] { return TempFolder::Content(folder_ / "status") == "1\n"; }));
  EXPECT_THAT(TempFolder::Content(folder_ / "watch-errors"), HasSubstr("documents: was moved"));
}

}  // namespace
