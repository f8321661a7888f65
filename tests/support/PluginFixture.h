// The plug-in's inside with a fake agent, a user interface of preferences and counted boxes, and no host: everything that
// is kept in statics is at its first state before and after each test. The operating system has no font active until
// UseSystemFonts names a folder.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Bridge/CoreAgentInterface.h"
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Bridge/HostAppInterface.h"
#include "Services/MarquineGlobals.h"
#include "platform/Folders.h"
#include "platform/Trace.h"
#include "support/FakeAgent.h"

namespace fakes {

class CountingHost : public HostAppInterface {
 public:
  void RebuildWorkgroupsMenu() override {}
  void SetMissingFontsDialogNeeded() override { ++missingFontsDialogs; }
  int missingFontsDialogs = 0;
};

// Preferences in memory; boxes are counted by their message key and answered with the button.
class CountingUI {
 public:
  CountingUI() {
    sCurrent = this;
    auto table = std::make_unique<VPFFunctionTable>();
    table->bundle = platform::Bundle::Main();
    table->pfVPFGetPreferenceForKey = [](const char* key) { return static_cast<int8_t>(sCurrent->preferences[key]); };
    table->pfVPFSetPreferenceForKey = [](const char* key, int8_t value) { sCurrent->preferences[key] = value; };
    table->pfVPFGetLongPreferenceForKey = [](const char* key) { return static_cast<int32_t>(sCurrent->preferences[key]); };
    table->pfVPFSetLongPreferenceForKey = [](const char* key, int32_t value) { sCurrent->preferences[key] = value; };
    table->pfVPFShowMessageBox = [](const char*, const char* message, int32_t) {
      sCurrent->boxes.emplace_back(message);
      return static_cast<int32_t>(sCurrent->button);
    };
    table->pfVPFAskForOneString = [](const char*, const char*, const char*, platform::ValueRef* out) {
      *out = platform::String::FromUTF8(sCurrent->typed).Release();
      return int32_t{1};
    };
    table->pfVPFShowProgress = [](platform::ValueRef) { sCurrent->progress.emplace_back("show"); };
    table->pfVPFUpdateProgress = [](platform::ValueRef) { sCurrent->progress.emplace_back("update"); };
    table->pfVPFHideProgress = [] { sCurrent->progress.emplace_back("hide"); };
    interface = std::make_unique<VPFInterface>(std::move(table));
    MarquineGlobals::SetSharedVPFInterfaceForTesting(interface.get());
  }
  ~CountingUI() { sCurrent = nullptr; }
  CountingUI(const CountingUI&) = delete;
  CountingUI& operator=(const CountingUI&) = delete;

  std::map<std::string, int> preferences{{"EnablePlugin", 1}, {"CloseFontsOnHostAppQuit", 1}};
  std::vector<std::string> boxes;
  std::vector<std::string> progress;
  std::string typed;
  int button = 1;
  std::unique_ptr<VPFInterface> interface;

 private:
  inline static CountingUI* sCurrent = nullptr;
};

class PluginFixture : public ::testing::Test {
 protected:
  PluginFixture() : folder(std::filesystem::path(::testing::TempDir()) / ("plugin-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(folder);
    Reset();
    UseSystemFonts("");
    ui = std::make_unique<CountingUI>();
    HostAppInterface::SetForTesting(&host);
    platform::SetTraceSink(
        [](void* lines, int, std::string_view line) {
          static_cast<std::vector<std::string>*>(lines)->emplace_back(line);
        },
        &trace);
  }
  ~PluginFixture() override {
    platform::SetTraceSink(nullptr, nullptr);
    Reset();
    HostAppInterface::SetForTesting(nullptr);
    std::filesystem::remove_all(folder);
  }

  // Makes the manager, which connects to the fake agent.
  CoreAgentInterface& Connect() {
    FontManagerInterface::sm_pFontManager = std::make_unique<CoreAgentInterface>();
    MarquineGlobals::SetUserHasWorkgroups(true);
    return static_cast<CoreAgentInterface&>(*FontManagerInterface::sm_pFontManager);
  }

  // The folder of fonts that the operating system has active; empty for none.
  void UseSystemFonts(const std::string& fontFolder) {
    const std::string file = (folder / "fonts.conf").string();
    std::ofstream(file) << "<fontconfig>"
                        << (fontFolder.empty() ? "" : "<dir>" + fontFolder + "</dir>") << "<cachedir>"
                        << (folder / "cache").string() << "</cachedir></fontconfig>";
    platform::Places places;
    places.fileSystemRoot = places.home = places.runtime = folder.string();
    places.fontConfigFile = file;
    platform::SetPlaces(places);
  }

  bool Traced(std::string_view line) const { return std::find(trace.begin(), trace.end(), line) != trace.end(); }
  // The lines that start so.
  std::vector<std::string> TracedLines(std::string_view start) const {
    std::vector<std::string> lines;
    std::copy_if(trace.begin(), trace.end(), std::back_inserter(lines),
                 [&](const std::string& line) { return line.starts_with(start); });
    return lines;
  }

  std::filesystem::path folder;
  std::vector<std::string> trace;
  FakeAgent agent;
  CountingHost host;
  std::unique_ptr<CountingUI> ui;

 private:
  static void Reset() {
    FontManagerInterface::ResetForTesting();
    CoreAgentInterface::ResetForTesting();
    FontDataPreviouslyGottenFromDatabase::DeleteAll();
    MarquineGlobals::ResetForTesting();
  }
};

}  // namespace fakes
