// The library with real folders: scans, changes, and a second start.
#include "agent/library/FontLibrary.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "agent/fonts/FontRecord.h"
#include "agent/include/AgentProtocol.h"
#include "agent/server/Agent.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Clock.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "platform/PropertyList.h"
#include "support/DebianFonts.h"
#include "support/FullDisk.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace agent;
using agent_protocol::kAutoActivated;
using namespace debian_fonts;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double kMostSeconds = 60;
constexpr ClientID kClient = 1;

class FontLibraryTest : public testing::Test {
 protected:
  FontLibraryTest() {
    platform::Clock::SetDriven(1000);
    configuration_.stateFolder = state_.Path();
    configuration_.library = {fonts_.Path()};
    fs::create_directories(configuration_.DataFolder());
    UseFontConfig(configuration_.ActiveFolderPath());
  }
  ~FontLibraryTest() override {
    library_.reset();
    platform::SetPlaces({});
    platform::Clock::UseSystemTime();
  }

  void UseFontConfig(const std::string& folder) {
    platform::Places places;
    places.runtime = state_ / "run";
    places.fontConfigFile = state_.WriteFontsConf({folder});
    platform::SetPlaces(places);
  }

  // Starts the library again, as a second start of the agent does, and waits for its first scan.
  void Start() {
    library_.reset();
    LibraryEvents events;
    events.activated = [this](uint32_t id) { active_.insert(id); };
    events.deactivated = [this](uint32_t id) { active_.erase(id); };
    events.missing = [this](uint32_t id) { missing_.push_back(id); };
    events.scanProgress = [this](const ScanProgress& progress) { progress_.push_back(progress); };
    events.scanFinished = [this](bool hadProgress) {
      hadProgress_ = hadProgress;
      ++scans_;
    };
    events.fontsChanged = [this] { ++changes_; };
    events.report = [this](const std::string& line) { reports_.push_back(line); };
    active_.clear();
    library_ = std::make_unique<FontLibrary>(configuration_, loop_, events);
    library_->Start();
    AwaitScan();
  }
  void Rescan() {
    library_->Rescan();
    AwaitScan();
  }
  // For a scan that begins by itself.
  void AwaitScanWithin(double seconds) {
    const int before = scans_;
    loop_.RunFor(seconds);
    ASSERT_TRUE(loop_.RunUntil([&] { return scans_ > before; }, kMostSeconds));
  }
  void AwaitScan() {
    const int before = scans_;
    ASSERT_TRUE(loop_.RunUntil([&] { return scans_ > before; }, kMostSeconds));
  }

  uint32_t IDOf(const std::string& name) const {
    const auto fonts = library_->Table().WithPostScriptName(name);
    return fonts.empty() ? 0 : fonts.front()->id;
  }
  // "path below the library: message" of each problem, in the order of paths.
  std::vector<std::string> Problems() const {
    std::vector<std::string> lines;
    for (const ScanProblem& problem : library_->Scans().Report().problems) {
      const bool isBelow = problem.path.starts_with(fonts_.Path() + "/");
      lines.push_back((isBelow ? problem.path.substr(fonts_.Path().size() + 1) : problem.path) + ": " +
                      problem.message);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  }
  static bool IsListed(const std::string& name) { return platform::ActivePostScriptNames().contains(name); }

  test_support::TempFolder state_;
  test_support::TempFolder fonts_;
  platform::RunLoop loop_;
  Configuration configuration_;
  std::unique_ptr<FontLibrary> library_;
  std::set<uint32_t> active_;
  std::vector<uint32_t> missing_;
  std::vector<std::string> reports_;
  std::vector<ScanProgress> progress_;
  bool hadProgress_ = false;
  int scans_ = 0;
  int changes_ = 0;
};

const std::string kBold = kLiberation + "LiberationSerif-Bold.ttf";

TEST_F(FontLibraryTest, ScansWhatIsAFontAndListsWhatIsWrong) {
  fonts_.Write("a/LiberationSerif-Bold.ttf", Bytes(kBold));
  fonts_.Write("Let's Eat", Bytes(kOpenType + "NimbusSans-Bold.otf"));
  fonts_.Write("A & B/deep/er/pair.ttc",
               MakeCollection({Bytes(kOpenType + "D050000L.otf"), Bytes(kDejaVu + "DejaVuSans.ttf")}));
  fonts_.Write("type1/NimbusSans-Bold.t1", Bytes(kType1 + "NimbusSans-Bold.t1"));
  fonts_.Write("type1/NimbusSans-Bold.afm", "StartFontMetrics 2.0");
  fonts_.Write("broken.otf", Bytes(kOpenType + "Z003-MediumItalic.otf").substr(0, 5000));
  fonts_.Write("empty.ttf", "");
  fonts_.Write(".hidden/LiberationMono-Bold.ttf", Bytes(kLiberation + "LiberationMono-Bold.ttf"));
  fs::create_symlink("nowhere.ttf", fonts_ / "dangling.ttf");
  fs::create_symlink("..", fonts_ / "a/loop");
  fs::create_symlink("a/LiberationSerif-Bold.ttf", fonts_ / "z-alias.ttf");
  configuration_.library = {fonts_.Path(), fonts_ / "a", fonts_ / "gone", fonts_ / "empty.ttf"};
  Start();
  EXPECT_THAT(Problems(),
              ElementsAre(HasSubstr("broken.otf: table '"), HasSubstr("dangling.ttf: the link leads nowhere"),
                          "empty.ttf: is empty", "empty.ttf: is not a folder", HasSubstr("gone: No such file")));
  EXPECT_EQ(library_->Scans().Report().files, 4u);
  EXPECT_EQ(library_->Scans().Report().faces, 5u);
  EXPECT_EQ(library_->Table().Count(), 5u);
  EXPECT_EQ(library_->Table().WithPostScriptName("NimbusSans-Bold").size(), 2u);
  // The same lines are in a file, for programs without a connection.
  EXPECT_THAT(Bytes(state_ / "agent/scan.log"), HasSubstr("dangling.ttf: the link leads nowhere"));
}

TEST_F(FontLibraryTest, AChangeIsFoundByItselfAndAVanishedFolderCostsNothingElse) {
  fonts_.Write("LiberationSerif-Bold.ttf", Bytes(kBold));
  fonts_.Write("other/NimbusSans-Bold.otf", Bytes(kOpenType + "NimbusSans-Bold.otf"));
  Start();
  const uint32_t bold = IDOf("LiberationSerif-Bold"), nimbus = IDOf("NimbusSans-Bold");
  library_->Active().Activate(kClient, {bold, nimbus}, kAutoActivated);
  ASSERT_THAT(active_, testing::SizeIs(2));

  fs::remove_all(fonts_ / "other");
  fonts_.Write("new/DejaVuSans.ttf", Bytes(kDejaVu + "DejaVuSans.ttf"));
  AwaitScanWithin(3 * LibraryWatch::kQuietTime);
  EXPECT_NE(IDOf("DejaVuSans"), 0u);
  EXPECT_THAT(missing_, ElementsAre(nimbus));
  EXPECT_THAT(active_, ElementsAre(bold));
  EXPECT_FALSE(IsListed("NimbusSans-Bold"));
  EXPECT_TRUE(IsListed("LiberationSerif-Bold"));

  fs::remove_all(fonts_.Path());
  Rescan();
  EXPECT_EQ(library_->Table().Count(), 0u);
  EXPECT_THAT(Problems(), ElementsAre(HasSubstr("No such file")));
}

TEST_F(FontLibraryTest, AnUnchangedFileIsNotReadAgainAndAChangedOneIs) {
  const std::string path = fonts_.Write("font.ttf", Bytes(kBold));
  Start();
  const uint32_t id = IDOf("LiberationSerif-Bold");
  // Other bytes with the same inode, size and time: only a library that trusts the index still sees the old name.
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  std::string other = Bytes(kLiberation + "LiberationMono-Bold.ttf");
  other.resize(static_cast<size_t>(info.st_size), '\0');
  fonts_.Write("font.ttf", other);
  const timespec times[2] = {info.st_atim, info.st_mtim};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  Start();
  EXPECT_EQ(IDOf("LiberationSerif-Bold"), id);

  const timespec later[2] = {info.st_atim, {info.st_mtim.tv_sec + 1, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), later, 0), 0);
  Start();
  EXPECT_EQ(IDOf("LiberationSerif-Bold"), 0u);
  EXPECT_NE(IDOf("LiberationMono-Bold"), id);

  // Panels read their lists again when they are told of other fonts, and only then.
  changes_ = 0;
  Rescan();
  EXPECT_EQ(changes_, 0);
  fs::remove(path);
  Rescan();
  EXPECT_EQ(changes_, 1);
}

TEST_F(FontLibraryTest, AFullDiskIsToldAndCostsNothingOnceThereIsRoomAgain) {
  fonts_.Write("a.ttf", Bytes(kBold));
  Start();
  fonts_.Write("b.otf", Bytes(kOpenType + "NimbusSans-Bold.otf"));
  {
    const test_support::FullDisk full(0);
    Rescan();
  }
  EXPECT_THAT(Problems(), ElementsAre(HasSubstr("user.db: ")));
  EXPECT_NE(IDOf("LiberationSerif-Bold"), 0u);
  const uint32_t fresh = IDOf("NimbusSans-Bold");
  EXPECT_NE(fresh, 0u);
  library_->User().CreateSet("Made in memory", kFontLibraryID, {fresh});
  Rescan();
  EXPECT_THAT(Problems(), IsEmpty());
  EXPECT_EQ(library_->User().Unwritable(), "");
  Start();
  EXPECT_EQ(IDOf("NimbusSans-Bold"), fresh);
  EXPECT_THAT(library_->User().Sets(), testing::SizeIs(1));
}

// After a failure everything is as before.
TEST_F(FontLibraryTest, WhatCanNotBeStoredIsNotDone) {
  fonts_.Write("a.ttf", Bytes(kBold));
  fonts_.Write("b.otf", Bytes(kOpenType + "NimbusSans-Bold.otf"));
  Start();
  const uint32_t bold = IDOf("LiberationSerif-Bold"), nimbus = IDOf("NimbusSans-Bold");
  Activations& active = library_->Active();
  active.Activate(kClient, {nimbus}, kAutoActivated);
  {
    const test_support::FullDisk full(0);
    EXPECT_THROW(active.Activate(kClient, {bold, nimbus}, agent_protocol::kActivated), StoreError);
    EXPECT_THROW(active.KeepClient(kClient), StoreError);
  }
  EXPECT_THAT(active_, ElementsAre(nimbus));
  EXPECT_FALSE(IsListed("LiberationSerif-Bold"));
  EXPECT_EQ(active.StateOf(*library_->Table().Find(nimbus)), kAutoActivated);
  active.Activate(kClient, {bold, nimbus}, agent_protocol::kActivated);
  {
    const test_support::FullDisk full(0);
    EXPECT_THROW(active.Deactivate(kClient, {bold, nimbus}, true), StoreError);
  }
  EXPECT_THAT(active_, testing::SizeIs(2));
  EXPECT_TRUE(IsListed("LiberationSerif-Bold"));
}

TEST_F(FontLibraryTest, AStoredActivationWaitsForItsFile) {
  const std::string path = fonts_.Write("a.ttf", Bytes(kBold));
  Start();
  library_->Active().Activate(kClient, {IDOf("LiberationSerif-Bold")}, agent_protocol::kActivated);
  fs::rename(path, fonts_ / ".aside");
  Start();
  EXPECT_FALSE(IsListed("LiberationSerif-Bold"));
  fs::rename(fonts_ / ".aside", fonts_ / "moved.ttf");
  Rescan();
  EXPECT_TRUE(IsListed("LiberationSerif-Bold"));
}

// While the document is open, an update deletes and rewrites the file, or a drive is removed and comes back.
TEST_F(FontLibraryTest, AFontThatComesBackIsActiveForWhoAskedForIt) {
  configuration_.library = {fonts_ / "drive"};
  Start();
  EXPECT_THAT(Problems(), ElementsAre(HasSubstr("No such file")));
  uint32_t bold = 0;
  for (int round = 0; round < 2; ++round) {
    fonts_.Write("drive/a.ttf", Bytes(kBold));
    AwaitScanWithin(2 * LibraryWatch::kLookInterval);
    ASSERT_NE(IDOf("LiberationSerif-Bold"), 0u);
    if (round == 0) library_->Active().Activate(kClient, {bold = IDOf("LiberationSerif-Bold")}, kAutoActivated);
    EXPECT_THAT(active_, ElementsAre(bold));
    EXPECT_TRUE(IsListed("LiberationSerif-Bold"));
    fs::remove_all(fonts_ / "drive");
    AwaitScanWithin(2 * LibraryWatch::kLookInterval);
    EXPECT_THAT(active_, IsEmpty());
  }
  library_->Active().ReleaseClient(kClient);
  fonts_.Write("drive/a.ttf", Bytes(kBold));
  AwaitScanWithin(2 * LibraryWatch::kLookInterval);
  EXPECT_THAT(active_, IsEmpty());
}

TEST(LibraryWatch, WhatTheSystemDoesNotWatchIsReportedAndLookedThroughFromTimeToTime) {
  platform::Clock::SetDriven(1000);
  const test_support::TempFolder folder;
  platform::RunLoop loop;
  int changes = 0;
  std::vector<std::string> reports;
  LibraryWatch watch(loop, {folder.Path()},
                     {[&] {
                        ++changes;
                        watch.BeginScan();
                        watch.Add(folder.Path());
                      },
                      [&](const std::string& line) { reports.push_back(line); }});
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none{0, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  watch.BeginScan();
  watch.Add(folder.Path());
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_THAT(reports, ElementsAre(HasSubstr("can't be watched for changes: Too many open files")));
  loop.RunFor(3 * LibraryWatch::kUnwatchedInterval);
  EXPECT_EQ(changes, 1);  // can be watched
  // Continuous changes do not delay the scan forever.
  for (int i = 0; i < 30; ++i) {
    folder.Write("log.txt", "line");
    loop.RunFor(LibraryWatch::kQuietTime / 2);
  }
  EXPECT_EQ(changes, 2);
  EXPECT_THAT(reports, testing::SizeIs(1));
  platform::Clock::UseSystemTime();
}

TEST_F(FontLibraryTest, AReplacedFileIsLinkedAnewAndABrokenOneLetGo) {
  configuration_.desktop = true;
  const test_support::TempFolder home;
  setenv("XDG_DATA_HOME", home.Path().c_str(), 1);
  UseFontConfig(configuration_.ActiveFolderPath());
  const std::string path = fonts_.Write("a.ttf", Bytes(kBold));
  Start();
  const uint32_t bold = IDOf("LiberationSerif-Bold");
  library_->Active().Activate(kClient, {bold}, kAutoActivated);
  const std::string link = configuration_.ActiveFolderPath() + "/" + std::string(1, "0123456789abcdef"[bold % 16]) +
                           "/" + std::to_string(bold) + ".ttf";
  EXPECT_FALSE(fs::is_symlink(link));
  EXPECT_TRUE(fs::equivalent(link, path));

  // Replaced by renaming, as a package manager does: the hard link still has the old file.
  fs::rename(fonts_.Write("new", Bytes(kLiberation + "LiberationSerif-Bold.ttf") + "tail"), path);
  Rescan();
  EXPECT_TRUE(fs::equivalent(link, path));
  EXPECT_THAT(active_, ElementsAre(bold));
  fs::rename(fonts_.Write("new", "no font any more"), path);
  Rescan();
  EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
  EXPECT_THAT(active_, IsEmpty());
  unsetenv("XDG_DATA_HOME");
}

TEST_F(FontLibraryTest, AFontThatIsUpdatedInItsPlaceStaysActiveUnderItsNewID) {
  const std::string path = fonts_.Write("a.ttf", Bytes(kBold));
  Start();
  const uint32_t old = IDOf("LiberationSerif-Bold");
  library_->Active().Activate(kClient, {old}, kAutoActivated);

  fonts_.Write("a.ttf", UpdatedSerifBold());
  Rescan();
  const uint32_t now = IDOf("LiberationSerif-Bold");
  EXPECT_NE(now, old);
  EXPECT_THAT(library_->Table().Find(now)->face.version, testing::StartsWith("3"));
  EXPECT_THAT(active_, ElementsAre(now));
  EXPECT_TRUE(IsListed("LiberationSerif-Bold"));
  EXPECT_TRUE(library_->Active().IsHeldBy(kClient, old)) << "the client knows no other ID";
  library_->Active().Deactivate(kClient, {old}, false);
  EXPECT_THAT(active_, IsEmpty());
  EXPECT_FALSE(IsListed("LiberationSerif-Bold"));

  library_->Active().Activate(kClient, {now}, kAutoActivated);
  fonts_.Write("a.ttf", Bytes(kLiberation + "LiberationMono-Bold.ttf"));
  Rescan();
  EXPECT_THAT(active_, IsEmpty()) << "another font in its place";
  EXPECT_FALSE(library_->Active().IsHeldBy(kClient, IDOf("LiberationMono-Bold")));
}

// Names and paths may contain anything. The font is listed, with a record that can be written as XML.
TEST_F(FontLibraryTest, AFontWithControlCharactersInItsNamesIsServed) {
  std::string font = Bytes(kType1 + "NimbusSans-Bold.t1");
  const std::string name = "/FontName /NimbusSans-Bold";
  font.replace(font.find(name), name.size(), "/FontName /Nim\1\x1B-Sans-Bold");
  fonts_.Write("odd\1\n\x1B[31m.t1", font);
  Start();
  const uint32_t id = IDOf("Nim-Sans-Bold");
  ASSERT_NE(id, 0u);
  EXPECT_THAT(library_->Active().Activate(kClient, {id}, kAutoActivated).activated, ElementsAre(id));
  platform::Dictionary record = platform::Dictionary::Create();
  for (const auto& [key, text] :
       MakeFontRecord(*library_->Table().Find(id), library_->Groups().front(), kAutoActivated))
    record.Set(key, text);
  EXPECT_THAT(platform::CreateXMLPropertyList(record), HasSubstr("odd\uFFFD\uFFFD\uFFFD[31m.t1"));
}

// A library folder may contain the folder of links, as a home folder does. The links are not listed.
TEST_F(FontLibraryTest, LinksAreNeverPartOfTheLibrary) {
  const test_support::TempFolder elsewhere;
  elsewhere.Write("b.otf", Bytes(kOpenType + "NimbusSans-Bold.otf"));
  configuration_.library = {state_.Path(), elsewhere.Path()};
  Start();
  const uint32_t id = IDOf("NimbusSans-Bold");
  library_->Active().Activate(kClient, {id}, kAutoActivated);
  Rescan();
  ASSERT_NE(library_->Table().Find(id), nullptr);
  EXPECT_EQ(library_->Table().Find(id)->path, elsewhere / "b.otf");
  EXPECT_EQ(library_->Table().Count(), 1u);
}

TEST_F(FontLibraryTest, AScanThatTakesItsTimeSaysHowFarItIs) {
  Start();
  EXPECT_THAT(progress_, IsEmpty());  // no time passed
  EXPECT_FALSE(hadProgress_);
  for (const std::string& folder : {kDejaVu, kLiberation, kOpenType}) {
    for (const auto& entry : fs::directory_iterator(folder)) fs::copy(entry, fonts_.Path());
  }
  library_->Rescan();
  std::function<void()> tick = [&] {
    platform::Clock::SetDriven(platform::Clock::Now() + 0.2);
    if (library_->Scans().IsRunning()) loop_.Post(tick);
  };
  loop_.Post(tick);
  AwaitScan();
  EXPECT_TRUE(hadProgress_);
  ASSERT_GT(progress_.size(), 3u) << "of " << library_->Scans().Report().files;
  for (size_t i = 0; i < progress_.size(); ++i) {
    EXPECT_LE(progress_[i].step, progress_[i].steps);
    EXPECT_GE(progress_[i].step, progress_[i > 0 ? i - 1 : 0].step);
  }
  EXPECT_EQ(progress_.back().steps, library_->Scans().Report().files);
  EXPECT_THAT(progress_.back().text, testing::StartsWith(fonts_.Path()));
}

TEST_F(FontLibraryTest, TheAgentTellsItsClientsHowFarAScanIs) {
  for (const auto& entry : fs::directory_iterator(kDejaVu)) fs::copy(entry, fonts_.Path());
  InstanceLock lock;
  std::error_code error;
  ASSERT_EQ(lock.Take(configuration_.RuntimeFolder(), agent_protocol::kAgentSocketName, error),
            InstanceLock::Result::kTaken);
  Agent agent(configuration_, lock, loop_);
  ASSERT_FALSE(agent.Start());
  const platform::Descriptor client =
      platform::ConnectLocal(configuration_.RuntimeFolder(), agent_protocol::kAgentSocketName, error);
  ASSERT_FALSE(platform::SendMessage(
      client.Get(), Json{{"id", 1},
                         {"call", "Hello"},
                         {"arguments", {{"notifications", true}, {"protocol", agent_protocol::kProtocolVersion}}}}
                        .dump()));
  std::vector<Json> heard;
  loop_.WatchDescriptor(client.Get(), [&] {
    std::string text;
    ASSERT_FALSE(platform::ReceiveMessage(client.Get(), text));
    heard.push_back(Json::parse(text));
  });
  const auto isOver = [&] {
    return !heard.empty() && heard.back()["notify"] == PluginInterface::kBulkReplicationStopped;
  };
  std::function<void()> tick = [&] {
    platform::Clock::SetDriven(platform::Clock::Now() + 0.2);
    if (!isOver()) loop_.Post(tick);
  };
  loop_.Post(tick);
  EXPECT_TRUE(loop_.RunUntil(isOver, kMostSeconds));
  loop_.UnwatchDescriptor(client.Get());
  ASSERT_GT(heard.size(), 3u);
  const Json& last = heard[heard.size() - 2];
  EXPECT_EQ(last["notify"], PluginInterface::kBulkReplicationProgress);
  EXPECT_EQ(last["payload"]["stepIndex"], last["payload"]["numSteps"]);
  EXPECT_THAT(last["payload"]["text"], testing::StartsWith(fonts_.Path()));
}

// The fonts that the operating system has active are the system's workgroup, except files of the library.
TEST_F(FontLibraryTest, KnowsTheSystemsFontsFromItsOwn) {
  const test_support::TempFolder system;
  const std::string shared = fonts_.Write("shared.ttf", Bytes(kBold));
  fs::create_hard_link(shared, system / "same file.ttf");
  system.Write("DejaVuSans.ttf", Bytes(kDejaVu + "DejaVuSans.ttf"));
  UseFontConfig(system.Path());
  Start();
  const Font& bold = *library_->Table().Find(IDOf("LiberationSerif-Bold"));
  EXPECT_EQ(bold.workgroupID, kFontLibraryID);
  EXPECT_EQ(library_->Active().StateOf(bold), agent_protocol::kActiveInPlace);
  const Font& dejavu = *library_->Table().Find(IDOf("DejaVuSans"));
  EXPECT_EQ(dejavu.workgroupID, kSystemFontsID);
  EXPECT_EQ(library_->Scans().Report().faces, 1u);

  fs::remove(system / "DejaVuSans.ttf");
  library_->FreshenSystemFonts(true);
  EXPECT_EQ(IDOf("DejaVuSans"), 0u);
  EXPECT_NE(IDOf("LiberationSerif-Bold"), 0u);
}

}  // namespace
