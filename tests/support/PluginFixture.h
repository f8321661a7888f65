// The plug-in with a fake agent, a fake user interface and a minimal host. All statics are reset before and after each
// test. The operating system has no font active until UseSystemFonts names a folder.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Bridge/CoreAgentInterface.h"
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Bridge/HostAppInterface.h"
#include "Services/MarquineGlobals.h"
#include "platform/Folders.h"
#include "platform/Trace.h"
#include "support/FakeAgent.h"
#include "support/FakeUIFramework.h"
#include "support/TempFolder.h"

namespace fakes {

// Records the operations of the host as "FontActivated 7", a dictionary as the number of its entries.
class RecordingHost : public HostAppInterface {
 public:
  void RebuildWorkgroupsMenu() override { Note("RebuildWorkgroupsMenu", std::tuple()); }
  void SetCanExportFontsForDocument(bool can) override { Note("SetCanExportFontsForDocument", std::tuple(can)); }
  void SetMissingFontsDialogNeeded() override { ++missingFontsDialogs; }
  void SetLoggedInState(bool isLoggedIn, EServerType server) override {
    Note("SetLoggedInState", std::tuple(isLoggedIn, static_cast<int>(server)));
  }
  void SetPanelsEnabled(bool enabled) override { arePanelsEnabled = enabled; }
#define RECORD(operation, push, parameters, arguments) \
  void operation parameters override { Note(#operation, std::tuple(arguments)); }
  HOST_EVENTS(RECORD)
#undef RECORD
  // Returns the operations since the last call.
  std::vector<std::string> TakeHeard() { return std::exchange(heard, {}); }

  std::vector<std::string> heard;
  int missingFontsDialogs = 0;
  bool arePanelsEnabled = true;

 private:
  template <class Arguments>
  void Note(std::string line, const Arguments& arguments) {
    std::apply([&line](const auto&... each) { ((line += " " + Text(each)), ...); }, arguments);
    heard.push_back(std::move(line));
  }
  static std::string Text(const platform::Dictionary& dictionary) { return std::to_string(dictionary.Count()); }
  template <class Number>
  static std::string Text(Number number) {
    return std::to_string(number);
  }
};

class PluginFixture : public ::testing::Test {
 protected:
  PluginFixture() {
    Reset();
    UseSystemFonts("");
    ui = std::make_unique<FakeUIFramework>();
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
  }

  // Creates the manager, which connects to the fake agent.
  CoreAgentInterface& Connect() {
    FontManagerInterface::sm_pFontManager = std::make_unique<CoreAgentInterface>();
    MarquineGlobals::SetUserHasWorkgroups(true);
    return static_cast<CoreAgentInterface&>(*FontManagerInterface::sm_pFontManager);
  }

  // Makes the fonts of a folder active in the operating system. An empty path means none.
  void UseSystemFonts(const std::string& fontFolder) {
    platform::Places places;
    places.fileSystemRoot = places.home = places.runtime = folder.Path();
    places.fontConfigFile = fontFolder.empty() ? folder.WriteFontsConf({}) : folder.WriteFontsConf({fontFolder});
    platform::SetPlaces(places);
  }

  bool Traced(std::string_view line) const { return std::find(trace.begin(), trace.end(), line) != trace.end(); }
  // Returns the lines that start with this text.
  std::vector<std::string> TracedLines(std::string_view start) const {
    std::vector<std::string> lines;
    std::copy_if(trace.begin(), trace.end(), std::back_inserter(lines),
                 [&](const std::string& line) { return line.starts_with(start); });
    return lines;
  }

  const test_support::TempFolder folder;
  std::vector<std::string> trace;
  FakeAgent agent;
  RecordingHost host;
  std::unique_ptr<FakeUIFramework> ui;

 private:
  static void Reset() {
    FontManagerInterface::ResetForTesting();
    CoreAgentInterface::ResetForTesting();
    FontDataPreviouslyGottenFromDatabase::DeleteAll();
    MarquineGlobals::ResetForTesting();
  }
};

}  // namespace fakes
