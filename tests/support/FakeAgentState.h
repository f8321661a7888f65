// The agent behind the fake table of FakeAgent.h: its fonts and workgroups, the calls so far, and the calls that will
// fail.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Bridge/VPILoader.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace fakes {

enum class AgentFunction {
#define FAKE_ENUMERATOR(name, result, parameters) name,
  PLUGIN_INTERFACE_FUNCTIONS(FAKE_ENUMERATOR)
#undef FAKE_ENUMERATOR
};

struct FakeFont {
  uint32_t id = 0;
  std::string postScriptName;
  std::string family = "Family";
  std::string displayName{};  // empty for the PostScript name
  std::string kind = "OpenType - PS";
  std::string foundry = "Foundry";
  std::string version = "1.000";
  std::string checksum = "0";  // of version 1.2
  uint32_t familyID = 1;
  uint32_t workgroupID = 5;
  std::string workgroupType = "3";
  int ownState = 0;  // the agent's state for it without this client: 0 inactive, 4 by the user, 5 system
  bool isLocal = true;
  bool fails = false;      // its activation fails
  bool isRefused = false;  // its activation is refused as not compliant
  bool isHeld = false;     // activated for this client and not deactivated

  bool IsActive() const { return isHeld || ownState != 0; }
  bool IsSystem() const { return ownState == 5; }
};

struct FakeWorkgroup {
  uint32_t id;
  std::string name;
  std::string type;

  bool IsSpecial() const { return type == "4"; }  // the system's own fonts
};

// Installs the fake table in place of the agent's library.
void InstallFakeAgentTable();

// While an object exists, the plug-in uses it as its agent. One at a time.
class FakeAgent {
 public:
  static constexpr uint32_t kGone = PluginInterface::kAgentShutdownCode;

  FakeAgent() {
    sCurrent = this;
    InstallFakeAgentTable();
  }
  ~FakeAgent() {
    VPILoader::ResetForTesting();
    sCurrent = nullptr;
  }
  FakeAgent(const FakeAgent&) = delete;
  FakeAgent& operator=(const FakeAgent&) = delete;
  static FakeAgent& Current() { return *sCurrent; }

  FakeFont& Add(FakeFont font) { return fonts[font.id] = std::move(font); }
  FakeFont& Font(uint32_t id) { return fonts.at(id); }

  // The next call of the function returns this code and does nothing. Several codes are queued.
  void FailNext(AgentFunction function, uint32_t code) { failures_[function].push_back(code); }
  // Simulates a lost agent: every call fails until the plug-in gets a new facade handle after a relaunch. The client's
  // activations are lost, or restored with it.
  void Kill(bool restoresActivations) {
    isGone = true;
    if (restoresActivations) return;
    for (auto& [id, font] : fonts) font.isHeld = false;
  }

  size_t Count(std::string_view name) const {
    size_t count = 0;
    for (const std::string& call : calls) count += call == name;
    return count;
  }

  // Each function of the table calls this first. If the code is not 0, the function returns it.
  uint32_t Enter(AgentFunction function, const char* name, bool needsAgent) {
    calls.emplace_back(name);
    if (const auto hook = onCall) hook(function);  // a copy, because the function may remove itself
    if (isGone && needsAgent) return kGone;
    std::deque<uint32_t>& queue = failures_[function];
    if (queue.empty()) return 0;
    const uint32_t code = queue.front();
    queue.pop_front();
    return code;
  }

  std::map<uint32_t, FakeFont> fonts;
  std::vector<FakeWorkgroup> workgroups{{5, "Library", "1"}};
  bool isStandalone = true, isLoggedIn = true, isOnline = true, isGone = false, isWebFontsEnabled = false;
  bool areSchemasInSync = true, isProcessRunning = true;
  bool mayUseAllWorkgroups = true, mayExport = true;
  uint32_t initAppResult = 0, initThreadResult = 0;
  bool isReplicating = false;
  int32_t replicationMode = 0;
  std::map<uint32_t, uint32_t> conflicts;  // by font ID
  std::map<uint32_t, std::string> smartLists;
  std::string listTree;
  std::vector<platform::Dictionary> listedFonts;  // of every smart list
  // Runs before each call. An exception leaves the call.
  std::function<void(AgentFunction)> onCall;

  // The record of what happened.
  std::vector<std::string> calls;
  // The numeric arguments of the last call of a function that are not recorded elsewhere, in their order.
  std::map<AgentFunction, std::vector<uint32_t>> arguments;
  std::vector<std::string> asked;            // as FakePanelAnswers.h describes
  std::vector<uint32_t> wronglyDeactivated;  // the client did not hold them at that moment
  std::vector<uint32_t> exported;
  std::vector<std::string> sets;
  std::string log;
  PluginInterface::NotificationCallback callback = nullptr;
  PluginInterface::FacadeHandle facade = 100;

 private:
  inline static FakeAgent* sCurrent = nullptr;
  std::map<AgentFunction, std::deque<uint32_t>> failures_;
};

}  // namespace fakes
