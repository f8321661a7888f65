// The folder of links: where links are, what fontconfig sees at each moment, and which files are not touched.
#include "agent/activation/ActiveFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "agent/activation/DesktopFolders.h"
#include "agent/include/AgentProtocol.h"
#include "agent/store/InstanceLock.h"
#include "agent/store/UserStore.h"
#include "platform/Clock.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using agent::ActiveFolder;
using agent::LinkKind;

class ActiveFolderTest : public testing::Test {
 protected:
  ActiveFolderTest() { platform::Clock::SetDriven(1000); }
  ~ActiveFolderTest() override { platform::Clock::UseSystemTime(); }

  std::string Root() const { return folder_ / "active"; }
  static int64_t TimeOf(const std::string& path) {
    struct stat info;
    EXPECT_EQ(stat(path.c_str(), &info), 0) << path;
    return int64_t{info.st_mtim.tv_sec} * 1000000000 + info.st_mtim.tv_nsec;
  }
  static void SetTimeOf(const std::string& path, int64_t seconds) {
    const timespec times[2] = {{0, UTIME_OMIT}, {static_cast<time_t>(seconds), 0}};
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }

  test_support::TempFolder folder_;
  platform::RunLoop loop_;
};

struct NameRow {
  uint32_t id;
  const char* file;
  const char* link;  // below the root
};

TEST_F(ActiveFolderTest, LinksAreSpreadByTheLastDigitAndNamedByTheID) {
  const NameRow rows[] = {
      {1, "A.ttf", "1/1.ttf"},
      {16, "B.otf", "0/16.otf"},
      {31, "C.t1", "f/31.t1"},
      {10, "Let's Eat", "a/10"},
      {12, "A & B.pfb", "c/12.pfb"},
      {13, "dots.in.name.TTC", "d/13.TTC"},
      {14, ".hidden", "e/14"},
      {15, "ends with.", "f/15"},
      {17, "odd.ex-t", "1/17"},
      {18, "long.extension", "2/18"},
      {2147483647, "M.ttf", "f/2147483647.ttf"},
  };
  ActiveFolder active(Root(), LinkKind::kSymbolic, loop_);
  ASSERT_FALSE(active.Prepare());
  for (const NameRow& row : rows) {
    const std::string file = folder_.Write(row.file, "font");
    const ActiveFolder::LinkResult result = active.Link(row.id, file);
    EXPECT_FALSE(result.error);
    const fs::path link = fs::path(Root()) / row.link;
    ASSERT_TRUE(fs::is_symlink(link)) << link;
    EXPECT_EQ(fs::read_symlink(link), file);
    EXPECT_TRUE(active.Holds(link));
  }
  EXPECT_FALSE(active.Holds(folder_ / "A.ttf"));
  EXPECT_EQ(active.LinkedIDs().size(), std::size(rows));
}

TEST_F(ActiveFolderTest, TakesStockOfItsOwnLinksAndClearsHalfMadeOnes) {
  for (const char* name : {"1/1.ttf", "1/.17.ttf", "1/33", "2/1.ttf", "1/notes.txt", "1/.fonts.conf", "1/0.ttf"}) {
    folder_.Write(std::string("active/") + name, "font");
  }
  ActiveFolder active(Root(), LinkKind::kSymbolic, loop_);
  ASSERT_FALSE(active.Prepare());
  EXPECT_THAT(active.LinkedIDs(), testing::ElementsAre(1, 33));
  EXPECT_FALSE(fs::exists(Root() + "/1/.17.ttf"));
  for (const char* kept : {"/1/notes.txt", "/1/.fonts.conf", "/2/1.ttf"})
    EXPECT_TRUE(fs::exists(Root() + kept)) << kept;
  EXPECT_FALSE(active.Unlink(33));
  EXPECT_FALSE(active.Unlink(33));  // a missing link is not an error
  EXPECT_THAT(active.LinkedIDs(), testing::ElementsAre(1));
  EXPECT_FALSE(fs::exists(Root() + "/1/33"));
}

TEST_F(ActiveFolderTest, ReplacingALinkLeavesOneWithTheNewName) {
  ActiveFolder active(Root(), LinkKind::kSymbolic, loop_);
  ASSERT_FALSE(active.Prepare());
  ASSERT_FALSE(active.Link(5, folder_.Write("old.ttf", "a")).error);
  ASSERT_FALSE(active.Link(5, folder_.Write("new.otf", "b")).error);
  EXPECT_FALSE(fs::exists(fs::symlink_status(Root() + "/5/5.ttf")));
  EXPECT_EQ(fs::read_symlink(Root() + "/5/5.otf"), folder_ / "new.otf");
}

// fontconfig compares whole seconds, so the folder's time must be in a later second than the change.
TEST_F(ActiveFolderTest, OnlyTheChangedFolderIsTouchedAgainAndOnlyOnce) {
  ActiveFolder active(Root(), LinkKind::kSymbolic, loop_);
  ASSERT_FALSE(active.Prepare());
  const std::string file = folder_.Write("A.ttf", "font");
  for (const char* name : {"/1", "/2"}) SetTimeOf(Root() + name, 100);
  ASSERT_FALSE(active.Link(1, file).error);
  ASSERT_FALSE(active.Link(17, file).error);
  EXPECT_GT(TimeOf(Root() + "/1"), 100 * int64_t{1000000000});
  EXPECT_EQ(TimeOf(Root() + "/2"), 100 * int64_t{1000000000});

  SetTimeOf(Root() + "/1", 200);
  loop_.RunFor(ActiveFolder::kSecondTouchDelay - 0.1);
  EXPECT_EQ(TimeOf(Root() + "/1"), 200 * int64_t{1000000000});
  loop_.RunFor(0.2);
  EXPECT_GT(TimeOf(Root() + "/1"), 200 * int64_t{1000000000});
  SetTimeOf(Root() + "/1", 300);
  loop_.RunFor(10);
  EXPECT_EQ(TimeOf(Root() + "/1"), 300 * int64_t{1000000000});
}

TEST_F(ActiveFolderTest, APendingTouchIsDatedAheadAtTheEnd) {
  ActiveFolder active(Root(), LinkKind::kSymbolic, loop_);
  ASSERT_FALSE(active.Prepare());
  ASSERT_FALSE(active.Link(1, folder_.Write("A.ttf", "font")).error);
  const int64_t first = TimeOf(Root() + "/1");
  SetTimeOf(Root() + "/2", 100);
  active.FinishTouches();
  EXPECT_GE(TimeOf(Root() + "/1") / 1000000000, first / 1000000000 + 1);
  EXPECT_EQ(TimeOf(Root() + "/2"), 100 * int64_t{1000000000});
}

TEST_F(ActiveFolderTest, AHardLinkIsOfTheFontsOwnFile) {
  ActiveFolder active(Root(), LinkKind::kHardPreferred, loop_);
  ASSERT_FALSE(active.Prepare());
  const std::string file = folder_.Write("library/A.ttf", "font");
  fs::create_symlink("A.ttf", folder_ / "library/alias.ttf");
  const ActiveFolder::LinkResult result = active.Link(7, folder_ / "library/alias.ttf");
  EXPECT_FALSE(result.error);
  EXPECT_FALSE(result.symbolic);
  EXPECT_FALSE(fs::is_symlink(Root() + "/7/7.ttf"));
  EXPECT_TRUE(fs::equivalent(Root() + "/7/7.ttf", file));
  // If a hard link is not possible, a symbolic one is made and the caller gets a message.
  EXPECT_TRUE(active.Link(8, folder_ / "gone.ttf").symbolic);
}

TEST_F(ActiveFolderTest, AFailureLeavesNothingHalfMade) {
  ActiveFolder active(Root(), LinkKind::kSymbolic, loop_);
  ASSERT_FALSE(active.Prepare());
  fs::create_directories(Root() + "/1/1.ttf/in the way");
  EXPECT_TRUE(active.Link(1, folder_.Write("A.ttf", "font")).error);
  EXPECT_FALSE(active.IsLinked(1));
  EXPECT_FALSE(fs::exists(fs::symlink_status(Root() + "/1/.1.ttf")));
}

// The user's font folder contains the links of several agents.
TEST_F(ActiveFolderTest, LinksOfAKilledAgentGoButForWhatItsUserAskedFor) {
  using namespace agent;
  const test_support::ScopedVariable data("XDG_DATA_HOME", folder_ / "data");
  const std::string font = folder_.Write("A.ttf", "font");
  Configuration killed, gone, living, own;
  for (const auto& [configuration, name] :
       {std::pair(&killed, "killed"), {&gone, "gone"}, {&living, "living"}, {&own, "own"}}) {
    configuration->stateFolder = folder_ / name;
    configuration->desktop = true;
    ASSERT_FALSE(ClaimDesktopFolder(configuration->ActiveFolderPath(), configuration->stateFolder));
    ActiveFolder active(configuration->ActiveFolderPath(), LinkKind::kHardPreferred, loop_);
    ASSERT_FALSE(active.Prepare());
    for (const uint32_t id : {1, 2}) ASSERT_FALSE(active.Link(id, font).error);
    EXPECT_TRUE(active.IsLinkOfAnyAgent(killed.ActiveFolderPath() + "/1/1.ttf"));
    EXPECT_EQ(active.Holds(killed.ActiveFolderPath() + "/1/1.ttf"), configuration == &killed);
    EXPECT_FALSE(active.IsLinkOfAnyAgent(font));
  }
  fs::create_directories(killed.DataFolder());
  UserStore store(killed.DataFolder() + "/user.db");
  store.SetActivations({store.FontID("/A.ttf", {}, {}).id}, agent_protocol::kActivated);
  std::error_code error;
  InstanceLock held;
  ASSERT_EQ(InstanceLock().Take(killed.RuntimeFolder(), agent_protocol::kAgentSocketName, error),
            InstanceLock::Result::kTaken);
  ASSERT_EQ(held.Take(living.RuntimeFolder(), agent_protocol::kAgentSocketName, error), InstanceLock::Result::kTaken);

  std::vector<std::string> lines;
  const auto report = [&](const std::string& line) { lines.push_back(line); };
  RemoveLinksOfDeadAgents(own, loop_, report);
  EXPECT_THAT(lines, testing::SizeIs(2));
  const auto links = [](const Configuration& configuration) {
    std::set<std::string> names;
    std::error_code none;
    for (const auto& entry : fs::recursive_directory_iterator(configuration.ActiveFolderPath(), none)) {
      if (!entry.is_directory()) names.insert(entry.path().filename());
    }
    return names;
  };
  EXPECT_THAT(links(killed), testing::ElementsAre(".owner", "1.ttf"));
  EXPECT_FALSE(fs::exists(gone.ActiveFolderPath()));
  for (const Configuration* kept : {&living, &own}) {
    EXPECT_THAT(links(*kept), testing::ElementsAre(".owner", "1.ttf", "2.ttf"));
  }
  // The same state folder without "desktop" does not need them either.
  own.desktop = false;
  RemoveLinksOfDeadAgents(own, loop_, report);
  own.desktop = true;
  EXPECT_FALSE(fs::exists(own.ActiveFolderPath()));
}

}  // namespace
