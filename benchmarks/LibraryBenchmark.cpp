// The agent with libraries of 1,000 and 100,000 faces: look-ups against a bare round trip, memory, a warm start, the
// first index of real fonts against FreeType, and activations against what their links cost.
#include <ft2build.h>
#include FT_FREETYPE_H
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "Floor.h"
#include "agent/activation/ActiveFolder.h"
#include "agent/client/AgentConnection.h"
#include "agent/fonts/Checksums.h"
#include "agent/fonts/SfntTables.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "platform/LocalSocket.h"
#include "platform/RunLoop.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/TinyFonts.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using test_support::TempFolder;

constexpr size_t kFew = 1000, kMany = 100'000;
constexpr size_t kRealFaces = 1800;
constexpr int kRounds = 2000;
constexpr size_t kDocumentFonts = 200;

std::string AgentProgram() {
  return (fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "app/agent/Nexcore").string();
}

// An agent with one library folder, in a state folder that outlives it.
class RunningAgent {
 public:
  RunningAgent(const TempFolder& state, const std::string& library) : runtime_(state / "run") {
    state.Write(agent_protocol::kConfigurationName, Json{{"library", {library}}}.dump());
    state.WriteFontsConf({state / agent_protocol::kActiveFolderName});
    const std::string program = AgentProgram();
    process_ = fork();
    if (process_ != 0) return;
    execl(program.c_str(), program.c_str(), state.Path().c_str(), nullptr);
    _exit(127);
  }
  ~RunningAgent() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
  }
  RunningAgent(const RunningAgent&) = delete;
  RunningAgent& operator=(const RunningAgent&) = delete;

  // Returns when the agent answers calls for fonts, which is after its first scan.
  void AwaitFonts() {
    constexpr int kMostTries = 100'000, kTryMilliseconds = 2;
    for (int i = 0; i < kMostTries && !socket_; ++i) {
      socket_ = agent_client::ReachAgent(runtime_);
      if (!socket_) poll(nullptr, 0, kTryMilliseconds);
    }
    if (!socket_) benchmark::Fail("the agent does not start");
    Ask(Request("GetScanReport"));
  }
  static std::string Request(const std::string& call, const Json& arguments = Json::object()) {
    return Json{{"id", 1}, {"call", call}, {"arguments", arguments}}.dump();
  }
  std::string Ask(const std::string& request) {
    std::string reply;
    if (platform::SendMessage(socket_.Get(), request) || platform::ReceiveMessage(socket_.Get(), reply)) {
      benchmark::Fail("the agent does not answer " + request.substr(0, 100));
    }
    return reply;
  }
  Json Result(const std::string& call, const Json& arguments) {
    Json reply = Json::parse(Ask(Request(call, arguments)));
    if (reply["code"] != 0) benchmark::Fail(call + ": " + reply.dump());
    return reply["result"];
  }
  size_t ResidentBytes() const {
    const std::string text = TempFolder::Content("/proc/" + std::to_string(process_) + "/statm");
    return std::stoul(text.substr(text.find(' ') + 1)) * static_cast<size_t>(sysconf(_SC_PAGESIZE));
  }

 private:
  const std::string runtime_;
  pid_t process_ = 0;
  platform::Descriptor socket_;
};

// Asks each request in turn, kRounds times in all.
void CompareCalls(const std::string& name, double limit, RunningAgent& agent,
                  const std::vector<std::string>& requests) {
  const std::string bare = RunningAgent::Request("GetIsOnline");
  const auto ask = [&](const std::vector<std::string>& asked, int count) {
    for (int i = 0; i < count; ++i) agent.Ask(asked[static_cast<size_t>(i) % asked.size()]);
  };
  benchmark::Compare(
      name.c_str(), limit, 7, [&] { ask(requests, kRounds); }, [&] { ask({bare}, kRounds); });
}

void CompareLookUps(RunningAgent& agent, size_t faces) {
  const std::string title = ", " + std::to_string(faces) + " faces";
  std::vector<std::string> lookUps, records, names;
  for (size_t i = 0; i < kDocumentFonts; ++i) {
    const std::string name = tiny_fonts::FaceOf(i * (faces / kDocumentFonts)).PostScriptName();
    const Json arguments = {{"name", name}, {"workgroupIDs", Json::array({0})}};
    names.push_back(name);
    lookUps.push_back(RunningAgent::Request("GetFontsByPostscriptName", arguments));
    const Json found = agent.Result("GetFontsByPostscriptName", arguments);
    if (found["fontIDs"].size() != 1) benchmark::Fail(name + ": " + found.dump());
    records.push_back(RunningAgent::Request("GetFontInfoByID", {{"fontID", found["fontIDs"][0]}}));
  }
  CompareCalls("look-up by name" + title, 1.5, agent, lookUps);
  // Against as many bare round trips.
  const std::string all = RunningAgent::Request(
      "LookUpFonts", {{"names", names}, {"byFamily", false}, {"workgroupIDs", Json::array()}, {"recordsOfEach", 0}});
  const std::string bare = RunningAgent::Request("GetIsOnline");
  const auto askBare = [&] {
    for (size_t i = 0; i < kDocumentFonts; ++i) agent.Ask(bare);
  };
  benchmark::Compare(("200 names in a call" + title).c_str(), 0.25, 20, [&] { agent.Ask(all); }, askBare);
  CompareCalls("record" + title, 1.5, agent, records);
}

// Compares the time from the agent's start until it answers with that of the floor. The state folder is a new one for
// each start, unless one is given.
void CompareStarts(const std::string& name, double limit, const TempFolder* given, const std::string& library,
                   const std::function<void()>& floor) {
  std::unique_ptr<TempFolder> fresh;
  std::unique_ptr<RunningAgent> agent;  // its end is not measured
  benchmark::Compare(
      name.c_str(), limit, 5,
      [&] {
        agent = std::make_unique<RunningAgent>(given ? *given : *fresh, library);
        agent->AwaitFonts();
      },
      floor,
      [&] {
        agent.reset();
        fresh = std::make_unique<TempFolder>();
      });
}

// Reads the agent's databases and asks for the state of every file in the library.
void ReadWhatAStartReads(const TempFolder& state, const std::string& library) {
  size_t bytes = 0;
  for (const char* name : {"agent/index.db", "agent/user.db"}) bytes += TempFolder::Content(state / name).size();
  for (const auto& entry : fs::recursive_directory_iterator(library)) {
    if (entry.is_regular_file()) bytes += entry.file_size();
  }
  if (bytes == 0) benchmark::Fail("there is nothing to read");
}

void MeasureScale() {
  size_t bytes[2] = {};
  size_t place = 0;
  for (const size_t faces : {kFew, kMany}) {
    const TempFolder library, state;
    tiny_fonts::FillLibrary(library, faces);
    {
      RunningAgent first(state, library.Path());
      std::printf("first index of %zu faces: %.2f s\n", faces, benchmark::Measure([&] { first.AwaitFonts(); }));
      CompareLookUps(first, faces);
    }
    {
      RunningAgent agent(state, library.Path());
      agent.AwaitFonts();
      bytes[place++] = agent.ResidentBytes();
    }
    if (faces == kFew) continue;
    CompareStarts("warm start, 100000 faces", 3, &state, library.Path(),
                  [&] { ReadWhatAStartReads(state, library.Path()); });
  }
  const double perFace = static_cast<double>(bytes[1] - bytes[0]) / static_cast<double>(kMany - kFew);
  benchmark::Report("memory of a face", perFace, 250, 1, "B");
}

// Copies of this machine's fonts, as many as a large family of families has.
size_t FillWithRealFonts(const TempFolder& library) {
  size_t files = 0;
  while (files < kRealFaces) {
    const size_t before = files;
    for (const auto& entry : fs::recursive_directory_iterator("/usr/share/fonts")) {
      const std::string extension = entry.path().extension();
      static const std::set<std::string> kExtensions = {".ttf", ".otf", ".ttc"};
      if (!entry.is_regular_file() || !kExtensions.contains(extension)) continue;
      fs::copy_file(entry.path(), library / (std::to_string(files++) + extension));
    }
    if (files == before) benchmark::Fail("there are no fonts in /usr/share/fonts");
  }
  return files;
}

uint32_t OpenFaces(FT_Library freeType, const std::string& bytes) {
  std::string problem;
  uint32_t sum = 0;
  const auto offsets = agent::SfntTables::FaceOffsets(bytes, problem);
  for (size_t i = 0; offsets && i < offsets->size(); ++i) {
    FT_Face face = nullptr;
    if (FT_New_Memory_Face(freeType, reinterpret_cast<const FT_Byte*>(bytes.data()), static_cast<FT_Long>(bytes.size()),
                           static_cast<FT_Long>(i), &face) == 0) {
      FT_Done_Face(face);
    }
    const auto tables = agent::SfntTables::Parse(bytes, (*offsets)[i], problem);
    if (!tables || i > 0) continue;  // the faces of a collection share their outlines
    uint32_t crc = 0, fnv = agent::kFnvStart;
    for (const char* tag : {"CFF ", "CFF2", "glyf", "loca"}) {
      crc = agent::Crc32(tables->Table(tag), crc);
      fnv = agent::Fnv1a(tables->Table(tag), fnv);
    }
    sum += crc + fnv + agent::Crc32(tables->Table("GPOS"));
  }
  return sum;
}

void OpenAllWithFreeType(const std::string& library) {
  FT_Library freeType = nullptr;
  if (FT_Init_FreeType(&freeType) != 0) benchmark::Fail("FreeType does not start");
  uint32_t sum = 0;
  for (const auto& entry : fs::recursive_directory_iterator(library)) {
    std::string bytes;
    if (!platform::ReadFile(entry.path(), bytes)) sum += OpenFaces(freeType, bytes);
  }
  FT_Done_FreeType(freeType);
  if (sum == 0) benchmark::Fail("the checksums are 0");
}

void MeasureFirstIndex() {
  const TempFolder library;
  const size_t files = FillWithRealFonts(library);
  const std::string name = "first index of " + std::to_string(files) + " font files";
  CompareStarts(name, 1.5, nullptr, library.Path(), [&] { OpenAllWithFreeType(library.Path()); });
}

void UseFontsOf(const TempFolder& state, const std::string& folder) {
  platform::Places places;
  places.fontConfigFile = state.WriteFontsConf({folder});
  platform::SetPlaces(places);
}

// Files of the library, one face each.
std::vector<std::string> FilesOf(const TempFolder& library) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(library.Path())) {
    if (entry.path().extension() == ".ttf") files.push_back(entry.path());
  }
  return files;
}

void LookForDocumentFonts() {
  if (platform::ActiveFonts().size() != kDocumentFonts) benchmark::Fail("fontconfig does not list the links");
}

void LinkFlatAndLook(const std::vector<std::string>& files, const std::string& folder) {
  for (const std::string& file : files) fs::create_symlink(file, fs::path(folder) / fs::path(file).filename());
  LookForDocumentFonts();
}

// As the agent links: in 16 folders, for each of which fontconfig writes a cache, and each link gets its name when it
// is complete.
void LinkSpreadAndLook(const std::vector<std::string>& files, const std::string& folder) {
  platform::RunLoop loop;
  agent::ActiveFolder spread(folder, agent::LinkKind::kSymbolic, loop);
  if (spread.Prepare()) benchmark::Fail("the folder of links can't be made");
  {
    const agent::ActiveFolder::Batch batch(spread);
    for (uint32_t id = 1; id <= kDocumentFonts; ++id) spread.Link(id, files[id - 1]);
  }
  LookForDocumentFonts();
}

// In memory: on a disk with ext4 a link costs up to a hundred times more while files that were deleted in the last five
// seconds are near it, in the one folder and not in the other.
void MeasureActivation() {
  const test_support::ScopedVariable memory("TMPDIR",
                                            access("/dev/shm", W_OK) == 0 ? "/dev/shm" : fs::temp_directory_path());
  const TempFolder library, state, links;
  tiny_fonts::FillLibrary(library, kFew);
  RunningAgent agent(state, library.Path());
  agent.AwaitFonts();
  Json ids = Json::array();
  std::vector<std::string> files = FilesOf(library);
  files.resize(kDocumentFonts);
  for (const std::string& file : files) {
    const std::string name = fs::path(file).stem();
    ids.push_back(
        agent.Result("GetFontsByPostscriptName", {{"name", name}, {"workgroupIDs", Json::array()}})["fontIDs"][0]);
  }
  UseFontsOf(links, links / "active");
  const auto clear = [&] {
    fs::remove_all(links / "active");
    fs::remove_all(links / "cache");
    fs::create_directories(links / "active");
    agent.Result("DeactivateFonts", {{"fontIDs", ids}, {"alsoUser", false}});
    fs::remove_all(state / "cache");
    // The agent's own view of the system is not older than that, as long after a change.
    constexpr int kUntilTimesTellChangesApart = 100;  // milliseconds
    poll(nullptr, 0, kUntilTimesTellChangesApart);
    agent.Result("GetFontConflicts", {{"fontIDs", ids}});
  };
  const auto activate = [&] {
    const Json result = agent.Result("ActivateFonts", {{"fontIDs", ids}, {"kind", agent_protocol::kAutoActivated}});
    if (result["activated"].size() != kDocumentFonts) benchmark::Fail(result.dump().substr(0, 200));
  };
  double best = HUGE_VAL, bestFloor = HUGE_VAL, bestFlat = HUGE_VAL;
  constexpr int kTurns = 25;
  for (int i = 0; i < kTurns; ++i) {
    clear();
    bestFloor = std::min(bestFloor, benchmark::Measure([&] { LinkSpreadAndLook(files, links / "active"); }));
    best = std::min(best, benchmark::Measure(activate));
    clear();
    bestFlat = std::min(bestFlat, benchmark::Measure([&] { LinkFlatAndLook(files, links / "active"); }));
  }
  benchmark::Report("200 faces active, to links and a query", best * 1000, bestFloor * 1000, 1.2, "ms");
  // 16 folders cost fontconfig 15 caches more. MeasureOneChange shows what they are good for.
  benchmark::Report("200 faces active, to links in one folder", best * 1000, bestFlat * 1000, 1.4, "ms");
}

// What another program pays when it looks for fonts after one of 1000 active ones has changed.
void MeasureOneChange() {
  constexpr size_t kActive = 1000;
  const TempFolder library, spreadState, flatState;
  tiny_fonts::FillLibrary(library, 2 * kActive);
  std::vector<std::string> files = FilesOf(library);
  files.resize(kActive + 1);
  platform::RunLoop loop;
  agent::ActiveFolder spread(spreadState / "active", agent::LinkKind::kSymbolic, loop);
  if (spread.Prepare()) benchmark::Fail("the folder of links can't be made");
  fs::create_directories(flatState / "active");
  const auto linkFlat = [&](uint32_t id) {
    fs::create_symlink(files[id], flatState / ("active/" + std::to_string(id) + ".ttf"));
  };
  for (uint32_t id = 1; id <= kActive; ++id) {
    spread.Link(id, files[id]);
    linkFlat(id);
  }
  const auto look = [&](const TempFolder& state, size_t expected) {
    UseFontsOf(state, state / "active");
    if (platform::ActiveFonts().size() != expected) benchmark::Fail("fontconfig does not list the links");
  };
  constexpr uint32_t kChanged = 7;
  // fontconfig sees a change only in another second than its last look.
  const auto change = [&](const TempFolder& state, const std::string& folder, const std::function<void()>& work) {
    look(state, kActive);
    work();
    const auto later = fs::file_time_type::clock::now() + std::chrono::seconds(2);
    fs::last_write_time(folder, later);
  };
  double best = HUGE_VAL, bestFlat = HUGE_VAL;
  for (int i = 0; i < 5; ++i) {
    change(flatState, flatState / "active",
           [&] { fs::remove(flatState / ("active/" + std::to_string(kChanged) + ".ttf")); });
    bestFlat = std::min(bestFlat, benchmark::Measure([&] { look(flatState, kActive - 1); }));
    linkFlat(kChanged);
    change(spreadState, spreadState / "active/7", [&] { spread.Unlink(kChanged); });
    best = std::min(best, benchmark::Measure([&] { look(spreadState, kActive - 1); }));
    spread.Link(kChanged, files[kChanged]);
  }
  benchmark::Report("look after a change, to one folder of links", best * 1000, bestFlat * 1000, 0.25, "ms");
}

void MeasureAll() {
  MeasureActivation();

  MeasureOneChange();
  MeasureFirstIndex();
  MeasureScale();
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
