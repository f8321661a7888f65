// The library in a process that is killed before each of its changes to the disk in turn. The next start finds what was
// stored, and nothing half done. The worker that draws names is killed before each of its calls; every name is drawn.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>

#include "agent/library/FontLibrary.h"
#include "agent/previews/PreviewCache.h"
#include "agent/previews/Previews.h"
#include "platform/Folders.h"
#include "support/DebianFonts.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace {

// How many changes the process may make before it is killed; below 0: any number.
std::atomic<int> changesLeft{-1};

void BeforeChange() {
  if (changesLeft < 0) return;
  if (changesLeft-- == 0) kill(getpid(), SIGKILL);
}

template <class... Arguments>
long Change(long number, Arguments... arguments) {
  BeforeChange();
  return syscall(number, arguments...);
}

}  // namespace

// Every library of the program calls these in place of those of the C library.
#define REPLACED extern "C" __attribute__((visibility("default")))

REPLACED ssize_t write(int file, const void* bytes, size_t size) { return Change(SYS_write, file, bytes, size); }
REPLACED ssize_t pwrite(int file, const void* bytes, size_t size, off_t at) {
  return Change(SYS_pwrite64, file, bytes, size, at);
}
REPLACED ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t at) {
  return Change(SYS_pwrite64, file, bytes, size, at);
}
REPLACED int ftruncate(int file, off_t size) noexcept { return static_cast<int>(Change(SYS_ftruncate, file, size)); }
REPLACED int ftruncate64(int file, off64_t size) noexcept {
  return static_cast<int>(Change(SYS_ftruncate, file, size));
}
REPLACED int rename(const char* from, const char* to) noexcept {
  return static_cast<int>(Change(SYS_rename, from, to));
}
REPLACED int symlink(const char* target, const char* link) noexcept {
  return static_cast<int>(Change(SYS_symlink, target, link));
}
REPLACED int unlink(const char* path) noexcept { return static_cast<int>(Change(SYS_unlink, path)); }
REPLACED int mkdir(const char* path, mode_t mode) noexcept { return static_cast<int>(Change(SYS_mkdir, path, mode)); }
// What a killed process has written is there without these.
REPLACED int fsync(int) { return 0; }
REPLACED int fdatasync(int) { return 0; }
REPLACED int utimensat(int folder, const char* path, const timespec times[2], int flags) noexcept {
  return static_cast<int>(Change(SYS_utimensat, folder, path, times, flags));
}

namespace {

namespace fs = std::filesystem;
using namespace agent;
using namespace debian_fonts;

constexpr ClientID kClient = 1;
constexpr double kMostSeconds = 60;
constexpr int kMostChanges = 2000;

// What the process says it has done, in a byte each.
enum Done : char { kActivatedBold = 'A', kDeactivatedSans = 'D', kMadeSet = 'S' };

class KillTest : public testing::Test {
 protected:
  KillTest() {
    configuration_.stateFolder = place_ / "state";
    configuration_.library = {place_ / "fonts"};
    platform::Places places;
    places.runtime = place_ / "run";
    places.fontConfigFile = place_.WriteFontsConf({configuration_.ActiveFolderPath()});
    platform::SetPlaces(places);
    place_.Write("fonts/bold.ttf", Bytes(kLiberation + "LiberationSerif-Bold.ttf"));
    place_.Write("fonts/sans.otf", Bytes(kOpenType + "NimbusSans-Bold.otf"));
  }
  ~KillTest() override { platform::SetPlaces({}); }

  // Runs on a loop of its own until its first scan has ended.
  std::unique_ptr<FontLibrary> Start(platform::RunLoop& loop) const {
    fs::create_directories(configuration_.DataFolder());
    bool isScanned = false;
    LibraryEvents events;
    events.activated = events.deactivated = events.missing = [](uint32_t) {};
    events.scanProgress = [](const ScanProgress&) {};
    events.scanFinished = [&](bool) { isScanned = true; };
    events.fontsChanged = [] {};
    events.report = [](const std::string& line) { ADD_FAILURE() << line; };
    auto library = std::make_unique<FontLibrary>(configuration_, loop, events);
    library->Start();
    EXPECT_TRUE(loop.RunUntil([&] { return isScanned; }, kMostSeconds));
    return library;
  }
  static uint32_t IDOf(const FontLibrary& library, const char* name) {
    const auto fonts = library.Table().WithPostScriptName(name);
    return fonts.size() == 1 ? fonts.front()->id : 0;
  }

  // The state with both fonts, of which one is active by the user. It is put back before each run.
  void MakeTemplate() {
    {
      platform::RunLoop loop;
      const auto library = Start(loop);
      bold_ = IDOf(*library, "LiberationSerif-Bold");
      sans_ = IDOf(*library, "NimbusSans-Bold");
      library->Active().Activate(kClient, {sans_}, agent_protocol::kActivated);
    }
    fs::copy(configuration_.stateFolder, place_ / "template", kWithLinks);
  }
  void PutBack() const {
    fs::remove_all(configuration_.stateFolder);
    fs::create_directories(configuration_.stateFolder);
    if (fs::exists(place_ / "template")) fs::copy(place_ / "template", configuration_.stateFolder, kWithLinks);
  }

  // Kills a process that does the work before each of its changes in turn, and looks at what each leaves.
  void KillAtEachChange(const std::function<void(int done)>& work, const std::function<void(std::string done)>& look) {
    for (int change = 0; change < kMostChanges; ++change) {
      SCOPED_TRACE(change);
      PutBack();
      int ends[2];
      ASSERT_EQ(pipe(ends), 0);
      const pid_t process = fork();
      if (process == 0) {
        changesLeft = change;
        work(ends[1]);
        _exit(HasFailure() ? 1 : 0);
      }
      close(ends[1]);
      std::string done(16, '\0');
      done.resize(static_cast<size_t>(std::max<ssize_t>(0, ReadAll(ends[0], done))));
      close(ends[0]);
      int status = 0;
      ASSERT_EQ(waitpid(process, &status, 0), process);
      look(done);
      if (WIFEXITED(status)) {
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_GT(change, 10) << "most changes were not noticed";
        return;
      }
      ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
      if (HasFailure()) return;
    }
    FAIL() << "the work does not end";
  }
  static ssize_t ReadAll(int file, std::string& bytes) {
    size_t size = 0;
    for (ssize_t count = 1; count > 0 && size < bytes.size(); size += static_cast<size_t>(count)) {
      count = read(file, bytes.data() + size, bytes.size() - size);
    }
    return static_cast<ssize_t>(size);
  }
  static void Say(int file, Done done) { ASSERT_EQ(write(file, &done, 1), 1); }

  // The links on disk are those of lasting activations, and nothing else is beside them.
  void ExpectCleanLinks(FontLibrary& library) const {
    std::set<std::string> names, expected;
    for (const auto& folder : fs::directory_iterator(configuration_.ActiveFolderPath())) {
      for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().stem());
    }
    for (const auto& [id, state] : library.User().Activations()) {
      if (library.Table().Find(id)) expected.insert(std::to_string(id));
    }
    EXPECT_EQ(names, expected);
  }

  static constexpr auto kWithLinks = fs::copy_options::recursive | fs::copy_options::copy_symlinks;
  const test_support::TempFolder place_;
  Configuration configuration_;
  uint32_t bold_ = 0, sans_ = 0;
};

TEST_F(KillTest, DuringAFirstScan) {
  {
    platform::RunLoop loop;
    Start(loop);  // what a process makes once is there before it is copied
  }
  KillAtEachChange(
      [this](int) {
        platform::RunLoop loop;
        Start(loop);
      },
      [this](const std::string&) {
        platform::RunLoop loop;
        const auto library = Start(loop);
        EXPECT_THAT(library->Scans().Report().problems, testing::IsEmpty());
        const uint32_t bold = IDOf(*library, "LiberationSerif-Bold"), sans = IDOf(*library, "NimbusSans-Bold");
        EXPECT_TRUE(bold != 0 && sans != 0 && bold != sans);
        ExpectCleanLinks(*library);
      });
}

TEST_F(KillTest, DuringAScanOfWhatHasChanged) {
  MakeTemplate();
  fs::rename(place_ / "fonts/sans.otf", place_ / "fonts/moved.otf");
  place_.Write("fonts/new.ttf", Bytes(kDejaVu + "DejaVuSans.ttf"));
  place_.Write("fonts/bold.ttf", Bytes(kLiberation + "LiberationMono-Bold.ttf"));
  KillAtEachChange(
      [this](int) {
        platform::RunLoop loop;
        Start(loop);
      },
      [this](const std::string&) {
        platform::RunLoop loop;
        const auto library = Start(loop);
        EXPECT_THAT(library->Scans().Report().problems, testing::IsEmpty());
        EXPECT_EQ(library->Table().Count(), 3u);
        EXPECT_EQ(IDOf(*library, "NimbusSans-Bold"), sans_);
        EXPECT_NE(IDOf(*library, "LiberationMono-Bold"), bold_);
        EXPECT_NE(IDOf(*library, "DejaVuSans"), 0u);
        EXPECT_TRUE(library->Active().IsActive(*library->Table().Find(sans_)));
        ExpectCleanLinks(*library);
      });
}

TEST_F(KillTest, WhileFontsAreLinkedAndTheUsersWishesStored) {
  MakeTemplate();
  KillAtEachChange(
      [this](int done) {
        platform::RunLoop loop;
        const int allowed = changesLeft.exchange(-1);
        const auto library = Start(loop);
        changesLeft = allowed;
        library->Active().Activate(kClient, {bold_}, agent_protocol::kActivated);
        Say(done, kActivatedBold);
        library->Active().Deactivate(kClient, {sans_}, true);
        Say(done, kDeactivatedSans);
        library->User().CreateSet("Mine", kFontLibraryID, {bold_, sans_});
        Say(done, kMadeSet);
      },
      [this](const std::string& done) {
        platform::RunLoop loop;
        const auto library = Start(loop);
        ExpectCleanLinks(*library);
        const auto activations = library->User().Activations();
        const auto isDone = [&](Done what) { return done.find(what) != std::string::npos; };
        EXPECT_TRUE(activations.contains(bold_) || !isDone(kActivatedBold));
        EXPECT_TRUE(activations.contains(sans_) || isDone(kActivatedBold)) << "ended before it was asked for";
        EXPECT_FALSE(activations.contains(sans_) && isDone(kDeactivatedSans));
        EXPECT_TRUE(!isDone(kMadeSet) || library->User().Sets().at(0).fontIDs.size() == 2);
      });
}

TEST_F(KillTest, WhileAPictureIsKept) {
  constexpr uint64_t kMostBytes = 1 << 20;
  const std::string picture(5000, 'p');
  KillAtEachChange(
      [&](int) {
        PreviewCache cache(configuration_.stateFolder + "/previews", kMostBytes);
        PreviewFiles files;
        for (const char* key : {"one", "two", "three", "four"}) cache.Put(key, picture, picture, files);
      },
      [&](const std::string&) {
        PreviewCache cache(configuration_.stateFolder + "/previews", kMostBytes);
        for (const char* key : {"one", "two", "three", "four"}) {
          const auto files = cache.Find(key);
          EXPECT_TRUE(!files || files->png + Bytes(files->path2x) == picture + picture) << key;
        }
      });
}

// What came for each font.
class Drawing {
 public:
  explicit Drawing(const std::string& cache) : previews_(cache, KILLED_PREVIEW_WORKER, loop_, Events()) {}

  const std::map<uint32_t, PreviewFiles>& Draw(const std::vector<PreviewFont>& fonts) {
    came_.clear();
    previews_.Render(kClient, fonts, {14, 400, 30}, true);
    EXPECT_TRUE(loop_.RunUntil([&] { return came_.size() == fonts.size(); }, kMostSeconds));
    return came_;
  }

 private:
  PreviewEvents Events() {
    PreviewEvents events;
    events.rendered = [this](uint32_t, const std::vector<Preview>& previews) {
      for (const Preview& preview : previews) came_[preview.fontID] = preview.files;
    };
    events.canTake = [](uint32_t) { return true; };
    events.report = [](const std::string&) {};
    return events;
  }

  platform::RunLoop loop_;
  std::map<uint32_t, PreviewFiles> came_;
  Previews previews_;
};

TEST_F(KillTest, WorkerBeforeEachOfItsCalls) {
  const test_support::ScopedVariable fallback("FONTCONFIG_FILE", place_.WriteFontsConf({kDejaVu}));
  const std::string killAt = place_ / "kill-at";
  const test_support::ScopedVariable variable("KILL_AT", killAt);
  const std::vector<PreviewFont> fonts = {{1, place_ / "fonts/bold.ttf", 0, 1, "Bo"},
                                          {2, place_ / "fonts/sans.otf", 0, 2, "Sa"}};
  std::map<uint32_t, std::string> drawn;
  bool isKilled = true;
  int call = 0;
  for (; isKilled && call < kMostChanges && !HasFailure(); ++call) {
    SCOPED_TRACE(call);
    const std::string cache = place_ / ("previews" + std::to_string(call));
    place_.Write("kill-at", std::to_string(call));
    Drawing drawing(cache);
    // The name over which the worker was killed is drawn in another font, and that picture is not kept.
    size_t kept = 0;
    for (const auto& [id, files] : drawing.Draw(fonts)) {
      EXPECT_FALSE(files.png.empty()) << id;
      if (!files.path.empty()) ++kept;
    }
    EXPECT_GE(kept, fonts.size() - 1);
    // The worker may be killed after its last answer, so that this is what finds it gone.
    if (drawing.Draw(fonts).at(1).path.empty()) drawing.Draw({fonts[0]});
    for (const auto& [id, files] : drawing.Draw(fonts)) {
      EXPECT_TRUE(!files.path.empty() && Bytes(files.path) == files.png && !Bytes(files.path2x).empty()) << id;
      EXPECT_EQ(drawn.emplace(id, files.png).first->second, files.png) << id;
    }
    isKilled = fs::remove(killAt + ".killed");
  }
  EXPECT_FALSE(isKilled);
  EXPECT_GT(call, 20) << "most calls were not noticed";
}

}  // namespace
