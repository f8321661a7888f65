// The program as a user starts it, with the real agent, which it starts by itself.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "support/DebianFonts.h"
#include "support/ProgramRun.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace {

using Json = nlohmann::json;
using test_support::Outcome;
using test_support::TempFolder;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class Nexctl : public testing::Test {
 protected:
  Nexctl() {
    std::filesystem::create_directory(folder_ / "fonts");
    for (const char* name : {"LiberationSerif-Bold.ttf", "LiberationMono-Bold.ttf"}) {
      std::filesystem::copy_file(debian_fonts::kLiberation + name, folder_ / "fonts/" + name);
    }
    std::filesystem::copy_file(debian_fonts::kLiberation + "LiberationMono-Bold.ttf", folder_ / "fonts/copy.ttf");
    folder_.Write("fonts/broken.otf", "not a font");
    std::filesystem::create_directory(folder_ / "fonts/client");
    folder_.Write("state/nexcore.json", R"({"library": ["../fonts"], "exitWithLastClient": true})");
    folder_.Write("state/fonts.conf", "<fontconfig><dir>" + folder_ / "state/active" + "</dir><cachedir>" +
                                          folder_ / "state/cache" + "</cachedir></fontconfig>");
  }

  // With words as a shell takes them.
  Outcome Run(const std::string& words) const {
    return test_support::RunLine("'" APP_DIR "/nexctl/nexctl' --state '" + folder_ / "state" + "' " + words, folder_);
  }

  TempFolder folder_;
};

struct Row {
  const char* words;
  int status;
  const char* output;  // a part of it
};

// One after the other; the agent keeps what earlier commands changed.
const Row kSession[] = {
    {"fonts 'design = serif'", 0, "LiberationSerif-Bold"},  // waits for the scan, as status does not
    {"status", 0, "fonts          3"},
    {"--columns name,weight,added fonts name = LiberationSerif-Bold", 0, "LiberationSerif-Bold  700"},
    {"--columns name,clicks fonts name = LiberationSerif-Bold", 0, "LiberationSerif-Bold  0"},
    {"show LiberationSerif-Bold", 0, "languages"},
    {"activate LiberationSerif-Bold", 0, "activated"},
    {"--json fonts active", 0, "\"state\":\"active\""},
    {"duplicates", 0, "copy.ttf"},
    {"check", 1, "broken.otf"},
    {"set create Titles LiberationSerif-Bold", 0, "id\n1\n"},
    {"set add 1 LiberationSerif-Bold", 0, ""},
    {"set list", 0, "Titles"},
    {"set rename 1 Headlines", 0, ""},
    {"set list", 0, "1   Headlines  "},
    {"set remove 1 LiberationSerif-Bold", 0, ""},
    {"set list", 0, "1   Headlines  \n"},
    {"set add 1 LiberationSerif-Bold", 0, ""},
    {"set create Short", 0, "id\n2\n"},
    {"set delete 2", 0, ""},
    {"smartset create 'Bold ones' weight = 700", 0, "id\n1\n"},
    {"smartset change 1 Bold weight '>=' 700", 0, ""},
    {"smartset list", 0, "weight >= 700"},
    {"smartlist create Mine set:1 smartset:1", 0, "id\n101\n"},
    {"smartlist show 101", 0, "smartset 1 \"Bold\": weight >= 700"},
    {"smartlist show 101", 0, "LiberationSerif-Bold"},
    {"smartlist rename 101 Ours", 0, ""},
    {"smartlist change 101 workgroup:1", 0, ""},
    {"smartlist list", 0, "101  Ours"},
    {"smartlist delete 101", 0, ""},
    {"smartset delete 1", 0, ""},
    {"deactivate LiberationSerif-Bold", 0, "inactive"},
    {"export /proc/nowhere LiberationSerif-Bold", 1, ""},
    {"library rescan", 0, ""},
    {"library remove fonts", 1, ""},
    {"library remove \"$FONTS\"", 0, ""},
    {"status", 0, "fonts          0"},  // the command waits for the scan
    {"library list", 0, ""},
    {"library add \"$FONTS/\"", 0, ""},
    {"status", 0, "fonts          3"},
    {"library list", 0, "/fonts"},
    {"fonts name = LiberationSerif-Bold", 0, "LiberationSerif-Bold.ttf"},
    {"workgroup create Client \"$FONTS/client\"", 0, "id\n11\n"},
    {"library list", 0, "11         Client"},
    {"--workgroup 11 set create Titles", 0, "id\n3\n"},
    {"--workgroup 11 library remove \"$FONTS/client\"", 0, ""},
    {"--workgroup 11 library add \"$FONTS/client\"", 0, ""},
    {"workgroup rename 11 Customer", 0, ""},
    {"workgroup list", 0, "11  library  Customer"},
    {"rights deny export 11", 0, ""},
    {"rights list", 0, "export           11         denied"},
    {"rights allow export", 0, ""},
    {"rights list", 0, "export           all        allowed"},
    {"workgroup delete 11", 0, ""},
    {"webfonts folder \"$FONTS/client\"", 0, ""},
    {"webfonts enable", 0, ""},
    {"webfonts status", 0, "web fonts  enabled"},
    {"webfonts disable", 0, ""},
    {"log", 0, ""},
};

TEST_F(Nexctl, ManagesALibrary) {
  const test_support::ScopedVariable fonts("FONTS", (folder_ / "fonts").c_str());
  for (const Row& row : kSession) {
    const Outcome outcome = Run(row.words);
    EXPECT_EQ(outcome.status, row.status) << row.words << "\n" << outcome.output << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr(row.output)) << row.words << "\n" << outcome.errors;
  }
  EXPECT_EQ(Run("export '" + folder_ / "" + "' LiberationSerif-Bold").status, 0);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "LiberationSerif-Bold.ttf"));
}

TEST_F(Nexctl, MistakesAreExplained) {
  const Row rows[] = {
      {"", 2, "no command"},
      {"dance", 2, "no command 'dance'"},
      {"set", 2, "needs a second word"},
      {"show", 2, "takes FONT"},
      {"--what", 2, "unknown option"},
      {"fonts weight", 2, "operator is expected"},
      {"--columns name,age fonts", 2, "no column 'age'"},
      {"smartset create X weight", 2, "operator is expected"},
      {"smartlist create X kind:3", 2, "workgroup:ID"},
      {"smartlist rename 2 X", 1, "refuses"},
      {"set delete 500", 1, "no such"},
      {"smartlist delete 500", 1, "no such"},
      {"show Nonesuch", 1, "no font Nonesuch"},
      {"show 999999", 1, "no font 999999"},
      {"activate LiberationMono-Bold", 1, "in several files"},
      {"workgroup delete 1", 1, "no library 1"},
      {"workgroup rename 1 Mine", 1, "can't be renamed"},
      {"--workgroup 50 library add .", 1, "no library 50"},
      {"webfonts enable", 1, "no folder of web fonts"},
      {"rights deny sleep", 2, "export or activate-across"},
      {"--state /nonexistent/folder status", 1, "no state folder"},
  };
  for (const Row& row : rows) {
    const Outcome outcome = Run(row.words);
    EXPECT_EQ(outcome.status, row.status) << row.words << "\n" << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr(row.output)) << row.words;
    EXPECT_THAT(outcome.output, IsEmpty()) << row.words;
  }
}

// A new user has no font manager yet, and needs none before the first question.
TEST_F(Nexctl, SetsUpTheDesktopOfANewUser) {
  const std::string asUser = "env -u XDG_STATE_HOME HOME='" + folder_ / "home" + "' '" APP_DIR "/nexctl/nexctl' ";
  std::filesystem::create_directory(folder_ / "home");
  const Outcome outcome = test_support::RunLine(asUser + "status", folder_);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_THAT(outcome.output, HasSubstr("home/.local/state/velorant/desktop\n"));
  EXPECT_THAT(outcome.output, HasSubstr("home/Fonts\n"));
  EXPECT_THAT(outcome.output, HasSubstr("for all programs"));
  const Outcome healthy = test_support::RunLine(asUser + "doctor", folder_);
  EXPECT_EQ(healthy.status, 0) << "a new user has no fonts yet";
  EXPECT_THAT(healthy.output, testing::ContainsRegex("nothing is wrong\n.*home/Fonts: is not there yet"));
}

// There a link can only be symbolic.
TEST_F(Nexctl, DoctorNamesFontsOnAnotherDisk) {
  if (!std::filesystem::exists("/dev/shm")) GTEST_SKIP() << "this machine has no second disk";
  const test_support::ScopedVariable memory("TMPDIR", "/dev/shm");
  const TempFolder other;
  struct stat here, there;
  ASSERT_EQ(stat(folder_.Path().c_str(), &here) | stat(other.Path().c_str(), &there), 0);
  if (here.st_dev == there.st_dev) GTEST_SKIP() << "this machine has no second disk";
  std::filesystem::copy_file(folder_ / "fonts/LiberationSerif-Bold.ttf", other / "far.ttf");
  folder_.Write("state/nexcore.json",
                R"({"library": [")" + other.Path() + R"("], "desktop": true, "exitWithLastClient": true})");
  const test_support::ScopedVariable data("XDG_DATA_HOME", folder_ / "data");
  const test_support::ScopedVariable conf("FONTCONFIG_FILE", folder_.WriteFontsConf({folder_ / "data/fonts"}));
  EXPECT_EQ(Run("doctor").output, "nothing is wrong\n");
  EXPECT_EQ(Run("activate LiberationSerif-Bold").status, 0);
  const Outcome outcome = Run("doctor");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output, HasSubstr("a symbolic link, which sandboxed programs cannot follow"));
}

TEST_F(Nexctl, ServesANewUserWhoseDiskCanNotBeWritten) {
  const std::string asUser = "env XDG_STATE_HOME=/proc/nowhere XDG_RUNTIME_DIR='" + folder_.Path() + "' HOME='" +
                             folder_ / "home" + "' '" APP_DIR "/nexctl/nexctl' ";
  std::filesystem::create_directories(folder_ / "home");
  std::filesystem::rename(folder_ / "fonts", folder_ / "home/Fonts");
  const Outcome outcome = test_support::RunLine(asUser + "fonts 'path ~ home/Fonts'", folder_);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_THAT(outcome.output, HasSubstr("home/Fonts/LiberationSerif-Bold.ttf"));
  EXPECT_THAT(outcome.errors, HasSubstr("changes last only until the font manager ends"));
}

// Every command and option is in the help, the manual page and the completion.
TEST_F(Nexctl, OneTableDescribesIt) {
  const std::string help = Run("--help").output, manual = Run("--manual").output,
                    completion = Run("--completion bash").output;
  std::set<std::string> words;
  const std::regex line("\n  (-[^ ,]+|[a-z]+( [a-z]+)?)[ ,]");
  for (std::sregex_iterator match(help.begin(), help.end(), line), end; match != end; ++match)
    words.insert((*match)[1]);
  EXPECT_GT(words.size(), 20u);
  for (const std::string& word : words) {
    const std::string escaped = std::regex_replace(word, std::regex("-"), "\\-");
    EXPECT_THAT(manual, HasSubstr(escaped)) << word;
    EXPECT_THAT(completion, HasSubstr(word)) << word;
  }
}

TEST_F(Nexctl, DoctorNamesWhatIsWrongAndHowToMendIt) {
  EXPECT_EQ(Run("doctor").output, "nothing is wrong\n");
  ASSERT_EQ(Run("activate LiberationSerif-Bold").status, 0);
  const std::string conf = folder_ / "state/fonts.conf", active = folder_ / "state/active";
  const std::string rest = "<cachedir>" + folder_ / "state/cache" + "</cachedir></fontconfig>";
  const std::string reads = "<fontconfig><dir>" + active + "</dir>";
  const std::string rejects = "<selectfont><rejectfont><glob> " + active + "/*</glob></rejectfont></selectfont>";
  const std::string hides =
      "<selectfont><rejectfont><pattern><patelt name='family'><string>Liberation Serif</string></patelt></pattern>"
      "</rejectfont></selectfont>";
  const struct {
    std::string conf;
    const char* problem;
    const char* mend;
  } rows[] = {
      {"<fontconfig>" + rest, "does not read the folder of active fonts", "<dir>"},
      {reads + rejects + rest, "rejects", "remove that <rejectfont>"},
      {reads + hides + rest, "does not list an active font", "<selectfont>"},
      {"<fontconfig><dir>", "cannot read its configuration", "repair"},
  };
  for (const auto& row : rows) {
    folder_.Write("state/fonts.conf", row.conf);
    const Outcome outcome = Run("doctor");
    EXPECT_EQ(outcome.status, 1) << row.problem;
    EXPECT_THAT(outcome.output, HasSubstr(row.problem));
    EXPECT_THAT(outcome.output, HasSubstr(row.mend));
  }
  folder_.Write("state/fonts.conf", reads + rest);
  std::filesystem::rename(folder_ / "fonts", folder_ / "elsewhere");
  EXPECT_THAT(Run("--json doctor").output, HasSubstr("library remove"));
  EXPECT_THAT(Run("--state /nonexistent/folder doctor").output, HasSubstr("no state folder"));
}

TEST_F(Nexctl, NamesTheActiveFontThatStandsInTheWay) {
  std::vector<std::string> ids;
  std::istringstream lines(Run("--json fonts name = LiberationMono-Bold").output);
  for (std::string line; std::getline(lines, line);) ids.push_back(Json::parse(line)["fontID"].dump());
  ASSERT_EQ(ids.size(), 2u);
  EXPECT_EQ(Run("conflicts " + ids[1]).status, 0);
  EXPECT_EQ(Run("activate " + ids[0]).status, 0);
  const Outcome outcome = Run("--json conflicts " + ids[1]);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(Json::parse(outcome.output)["conflict"], ids[0]);
  EXPECT_EQ(Run("activate " + ids[1]).status, 1) << "it has the name of the other";
}

TEST_F(Nexctl, WatchPrintsWhatHappensUntilItIsInterrupted) {
  const std::string program = "'" APP_DIR "/nexctl/nexctl' --state '" + folder_ / "state" + "' ";
  folder_.Write("watch", program + "--json watch >'" + folder_ / "heard" +
                             "' & watch=$!\n"
                             "until grep -q FontActivated '" +
                             folder_ / "heard" + "'; do\n" + program + "activate LiberationSerif-Bold; " + program +
                             "deactivate LiberationSerif-Bold\ndone\n"
                             "kill $watch; wait $watch\n");
  EXPECT_EQ(test_support::RunLine("timeout 60 sh '" + folder_ / "watch" + "'", folder_).status, 0);
  const std::string heard = TempFolder::Content(folder_ / "heard");
  EXPECT_THAT(heard, HasSubstr(R"({"event":"FontActivated","fontID":)"));
}

// A machine of its own, so that its limits can be changed.
TEST_F(Nexctl, DoctorNamesWhatThisMachineLacks) {
  const std::string limit = "/proc/sys/user/max_inotify_watches";
  if (test_support::RunLine("unshare -r sh -c 'echo 0 >" + limit + "'", folder_).status != 0) {
    GTEST_SKIP() << "this machine has no limits of its own for a user";
  }
  const Outcome few =
      test_support::RunLine("unshare -r sh -c \"echo 0 >" + limit + "; exec '" APP_DIR "/nexctl/nexctl' --state '" +
                                folder_ / "state" + "' doctor\"",
                            folder_);
  EXPECT_EQ(few.status, 1);
  EXPECT_THAT(few.output, HasSubstr("can't be watched for changes"));
  EXPECT_THAT(few.output, HasSubstr("max_user_watches"));
}

// `script` gives the program a terminal, which answers with what is on its own input.
TEST_F(Nexctl, ShowsAPictureAsTheTerminalCan) {
  const test_support::ScopedVariable type("TERM", "xterm"), program("TERM_PROGRAM", ""),
      none("KITTY_WINDOW_ID", std::nullopt);
  ASSERT_EQ(Run("fonts").status, 0);
  const std::string show = "'" APP_DIR "/nexctl/nexctl' --state '" + folder_ / "state" + "' show LiberationSerif-Bold";
  const auto onTerminal = [&](const std::string& answer) {
    const std::string words = "printf '" + answer + "' | script -qec \"" + show + "\" /dev/null";
    return test_support::RunLine(words, folder_).output;
  };
  EXPECT_THAT(onTerminal(""), HasSubstr("\u2588"));
  EXPECT_THAT(onTerminal("\\033[?62;4;22c"), testing::AllOf(HasSubstr("\033Pq#"), testing::Not(HasSubstr("\u2588"))));
  {
    const test_support::ScopedVariable kitty("KITTY_WINDOW_ID", "1");
    EXPECT_THAT(onTerminal(""), HasSubstr("\033_Ga=T"));
  }
  EXPECT_THAT(Run("show LiberationSerif-Bold").output, testing::Not(HasSubstr("\u2588")));
}

TEST_F(Nexctl, WritesJSONALine) {
  const Outcome outcome = Run("--json fonts");
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  size_t lines = 0;
  for (size_t at = 0, end = 0; (end = outcome.output.find('\n', at)) != std::string::npos; at = end + 1, ++lines) {
    const Json font = Json::parse(outcome.output.substr(at, end - at));
    EXPECT_THAT(font["path"].get<std::string>(), HasSubstr("/fonts/"));
    EXPECT_THAT(font["added"].get<std::string>(), MatchesRegex("20[0-9-]{8}"));
  }
  EXPECT_EQ(lines, 3u);
  // A pipe that nobody reads is no success.
  EXPECT_EQ(Run("fonts >/dev/full; test $? = 1").status, 0);
}

TEST_F(Nexctl, ServesFontsFromAReadOnlyDiskForTheSession) {
  if (test_support::RunLine("unshare -rm true", folder_).status != 0) GTEST_SKIP() << "this machine mounts nothing";
  const test_support::ScopedVariable session("XDG_RUNTIME_DIR", folder_.Path());
  ASSERT_EQ(Run("activate LiberationSerif-Bold").status, 0);
  // The agent locks this file as long as it runs.
  ASSERT_EQ(test_support::RunLine("flock '" + folder_ / "state/run/nexcore.sock.lock" + "' true", folder_).status, 0);
  folder_.Write("readonly", "cd '" + folder_.Path() +
                                "'\n"
                                "mount --bind state state && mount -o remount,bind,ro state || exit 9\n"
                                "'" APP_DIR
                                "/nexctl/nexctl' --state state set create New LiberationSerif-Bold || exit 1\n"
                                "'" APP_DIR
                                "/nexctl/nexctl' --state state set list\n"
                                "FONTCONFIG_FILE=$(echo \"$PWD\"/velorant/*/fonts.conf) fc-list : file\n");
  const Outcome outcome = test_support::RunLine("unshare -rm sh '" + folder_ / "readonly" + "'", folder_);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_THAT(outcome.errors, HasSubstr("changes last only until the font manager ends"));
  EXPECT_THAT(outcome.output, HasSubstr("New"));
  EXPECT_THAT(outcome.output, testing::ContainsRegex("velorant/[0-9a-f]+/active/[0-9a-f]/[0-9]+.ttf"));
  EXPECT_THAT(outcome.output, testing::Not(HasSubstr("state/active")));
}

}  // namespace
