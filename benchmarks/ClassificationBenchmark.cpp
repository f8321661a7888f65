// Classifies a document's 200 fonts, each with five candidates, with the real agent: the time spent in the plug-in
// against the time of its agent calls.
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "Bridge/CoreAgentInterface.h"
#include "Bridge/VPILoader.h"
#include "Floor.h"
#include "Identification/FontClassification.h"
#include "Identification/FontMerging.h"
#include "Services/MarquineGlobals.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Folders.h"
#include "platform/LocalSocket.h"
#include "platform/Process.h"
#include "support/TempFolder.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;

namespace {

namespace fs = std::filesystem;

constexpr int kRuns = 5;
constexpr size_t kDocumentFonts = 200;
constexpr size_t kCandidates = 5;
constexpr const char* kFonts = "/usr/share/fonts/opentype/urw-base35";

enum class Function {
#define ENUMERATOR(name, result, parameters) name,
  PLUGIN_INTERFACE_FUNCTIONS(ENUMERATOR)
#undef ENUMERATOR
};

double agentSeconds = 0;
size_t agentCalls = 0;

// A function of the table, with the sum of its times.
template <Function name, class Signature>
struct Timed;

template <Function name, class Result, class... Arguments>
struct Timed<name, Result(Arguments...)> {
  inline static Result (*function)(Arguments...) = nullptr;
  static Result Call(Arguments... arguments) {
    Result result{};
    agentSeconds += benchmark::Measure([&] { result = function(arguments...); });
    ++agentCalls;
    return result;
  }
};

template <Function name, class Signature>
void TimeMember(Signature*& member) {
  Timed<name, Signature>::function = member;
  member = &Timed<name, Signature>::Call;
}

void TimeTheTable() {
  VPILoader* const table = VPILoader::GetSharedInstance();
#define TIME(name, result, parameters) TimeMember<Function::name, result parameters>(table->pf##name);
  PLUGIN_INTERFACE_FUNCTIONS(TIME)
#undef TIME
}

// The agent, found and started as the plug-in does, with its own state folder and library. Ends with the object.
class AgentForABenchmark {
 public:
  AgentForABenchmark() {
    for (size_t copy = 0; copy < kCandidates; ++copy) {
      const std::string folder = library_ / std::to_string(copy);
      fs::create_directories(folder);
      for (const fs::directory_entry& font : fs::directory_iterator(kFonts)) {
        if (font.path().extension() != ".otf") continue;
        fs::copy_file(font.path(), fs::path(folder) / font.path().filename());
        // Each file has the name of its font.
        if (copy == 0) names_.push_back(font.path().stem().string());
      }
    }
    state_.Write(agent_protocol::kConfigurationName, "{\"library\": [\"" + library_.Path() + "\"]}");
    const fs::path self = fs::read_symlink("/proc/self/exe");
    const std::string agent = (self.parent_path().parent_path() / "app/agent/Nexcore").string();
    state_.Write("Library/Velorant/com.velorant.Nexcore-LaunchInfo.conf",
                 "nexcore.path=" + agent + "\nnexcore.args=" + state_.Path() + "\n");
    platform::Places places;
    places.fileSystemRoot = places.home = state_.Path();
    places.runtime = state_ / "run";
    places.fontConfigFile = state_.Write("fonts.conf", "<fontconfig></fontconfig>");
    platform::SetPlaces(places);
  }
  ~AgentForABenchmark() {
    // Only this benchmark uses the runtime folder, so a process there was started here.
    for (const platform::RunningApplication& application : platform::RunningApplications()) {
      const platform::Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, application.processID, 0)));
      if (!process || kill(application.processID, SIGTERM) != 0) continue;
      pollfd ended{process.Get(), POLLIN, 0};
      poll(&ended, 1, -1);
    }
  }
  AgentForABenchmark(const AgentForABenchmark&) = delete;
  AgentForABenchmark& operator=(const AgentForABenchmark&) = delete;

  // Repeats the names of the library's fonts, because the classification caches nothing.
  Array DocumentFonts() const {
    std::vector<std::string> names;
    for (size_t i = 0; i < kDocumentFonts; ++i) names.push_back(names_[i % names_.size()]);
    return CreateFontArrayFromVectorOfPostscriptNames(names);
  }

 private:
  const test_support::TempFolder state_;
  const test_support::TempFolder library_;
  std::vector<std::string> names_;
};

// Returns false and prints a line if the classification has not found all fonts.
bool Classify(const AgentForABenchmark& agent, double& seconds) {
  const Array fonts = agent.DocumentFonts(), matched = Array::Create(), problems = Array::Create();
  seconds = benchmark::Measure([&] {
    ProcessDocumentFontsForAutoActivation(fonts, matched, problems, true, false, FontManagerInterface::kAllWorkgroupsID,
                                          nullptr);
  });
  // If a record has only a name and several inactive candidates, the user chooses.
  for (size_t i = 0; i < kDocumentFonts; ++i) {
    const Dictionary problem(problems.At(i));
    if (problem.GetArray(kGS_PossibleReplacementsKey).Count() == kCandidates) continue;
    std::printf("font %zu of %zu has no %zu candidates\n", i, kDocumentFonts, kCandidates);
    return false;
  }
  return true;
}

}  // namespace

int main() {
  benchmark::Begin();
  const AgentForABenchmark agent;
  static VPFInterface noInterface;
  MarquineGlobals::SetSharedVPFInterfaceForTesting(&noInterface);
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.benchmark");
  bool isRunning = false;
  const TModuleErrorCode code = FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning);
  if (code != CoreErrorCodes::kSuccess || !isRunning) {
    std::printf("there is no agent to measure with: 0x%08x\n", code);
    return 1;
  }
  TimeTheTable();
  double bestPlugin = std::numeric_limits<double>::infinity(), bestAgent = bestPlugin;
  for (int i = 0; i < kRuns; ++i) {
    agentSeconds = 0;
    agentCalls = 0;
    double seconds = 0;
    if (!Classify(agent, seconds)) return 1;
    bestPlugin = std::min(bestPlugin, seconds - agentSeconds);
    bestAgent = std::min(bestAgent, agentSeconds);
  }
  std::printf("%zu agent calls for %zu fonts\n", agentCalls, kDocumentFonts);
  benchmark::Report("classify 200 fonts, plug-in to agent calls", bestPlugin * 1000, bestAgent * 1000, 1, "ms");
  FontManagerInterface::sm_pFontManager->DisconnectFromFontManager();
  FontManagerInterface::ResetForTesting();
  return benchmark::Finish();
}
