// Which windows are dismissed, and when a document is closed and reopened.
#include "photoshop/MissingFontsWindow.h"

#include <sys/stat.h>
#include "Readers/CommonFunctionality.h"

#include "platform/Presenter.h"
#include "platform/RunLoop.h"
#include "plugin/HostFixture.h"
#include "support/ScopedVariable.h"

using platform::View;
using platform::Window;
using platform::WindowOrdering;

namespace {

const std::vector<View> kHostLayout = {{"NSTextField", ""}, {"NSTextField", ""}, {"NSButton", ""}, {"NSButton", ""}};

class MissingFontsFixture : public HostFixture {
 protected:
  MissingFontsFixture() {
    agent.Add({.id = 1, .postScriptName = "Alpha"});
    agent.Add({.id = 2, .postScriptName = "Alpha-Double"});
    agent.Add({.id = 3, .postScriptName = "Alpha-Double", .foundry = "Other"});
    SwizzleNSWindowOrderOverride();
    MarquineGlobals::SetSuppressingHostAppDialogs(true);
  }
  ~MissingFontsFixture() override { ResetMissingFontsWindowForTesting(); }

  // Returns the keys that a window got when it was ordered in. The window is shown in any case.
  int KeysOf(const std::string& title, const std::vector<View>& views) {
    int keys = 0;
    Window window(title, views, [&](Window& self, const platform::KeyEvent& event) {
      EXPECT_EQ(event.keyCode, 53);
      EXPECT_EQ(event.type, 10);
      EXPECT_EQ(event.characters, "\x1B");
      EXPECT_EQ(event.windowNumber, self.Number());
      ++keys;
    });
    window.OrderWindow(WindowOrdering::kAbove, 0);
    EXPECT_TRUE(window.IsVisible()) << title;
    return keys;
  }
  void Wait(double seconds) { platform::RunLoop::Main().RunFor(seconds); }
};
using MissingFontsWindow = MissingFontsFixture;
using ReplaceMissingFonts = MissingFontsFixture;

TEST_F(MissingFontsWindow, IsKnownByItsTitleAndLayout) {
  ui->preferences["PickBestMatch"] = 1;
  MakeReady();
  app.Add(WriteDocument("a.psd", {"Alpha"}));
  for (const char* title :
       {"Missing Fonts", "Missing fonts", "Fehlende Schriften", "Polices manquantes", "Fuentes no disponibles",
        "Fontes Ausentes", "Font mancanti", "見つからないフォント", "3 Missing Fonts in a.psd"}) {
    EXPECT_EQ(KeysOf(title, kHostLayout), 1) << title;
  }
  for (const char* title : {"MISSING FONTS", "Missing Profile", ""}) EXPECT_EQ(KeysOf(title, kHostLayout), 0) << title;
  EXPECT_EQ(KeysOf("Missing Fonts", {kHostLayout.begin(), kHostLayout.end() - 1}), 0) << "too few views";
  const View &text = kHostLayout[0], &button = kHostLayout[2];
  EXPECT_EQ(KeysOf("Missing Fonts", {text, button, text, button}), 0) << "no button in the third place";
}

TEST_F(MissingFontsWindow, StaysUnlessTheDocumentIsBeingOpenedAndSolved) {
  MakeReady();
  struct Case {
    const char* rule;
    Lines fonts;
    std::function<void()> change;
    int keys;
  };
  // Each row has its own document. The window is the first to see it.
  const std::vector<Case> kCases = {
      {"solved", {"Alpha"}, [] {}, 1},
      {"nothing was needed", {}, [] {}, 1},
      {"a font is missing", {"Alpha", "Absent"}, [] {}, 0},
      {"the user has yet to choose", {"Alpha-Double"}, [] {}, 0},
      {"preference off", {"Alpha"}, [&] { ui->preferences["EnablePlugin"] = 0; }, 0},
      {"services off", {"Alpha"}, [] { MarquineGlobals::SetPluginServicesEnabled(false); }, 0},
      {"no workgroups", {"Alpha"}, [] { MarquineGlobals::SetUserHasWorkgroups(false); }, 0},
      {"the plug-in has shut down", {"Alpha"}, [] { MarquineGlobals::SetSuppressingHostAppDialogs(false); }, 0},
      {"a suite is missing", {"Alpha"}, [&] { app.missingSuites = {host_sdk::kPSActionReferenceSuite}; }, 0},
      {"no document at all", {"Alpha"}, [&] { app.RemoveAll(); }, 0},
      {"an untracked document", {"Alpha"}, [&] { app.RemoveAll(), app.Add(""); }, 0},
      {"just opened", {"Alpha"}, [&] { KeysOf("Missing Fonts", kHostLayout), Wait(4.9); }, 1},
      {"opened long ago", {"Alpha"}, [&] { KeysOf("Missing Fonts", kHostLayout), Wait(5.1); }, 0},
  };
  for (const Case& row : kCases) {
    AllTrackedDocuments::ResetForTesting();
    ResetDocumentEventsForTesting();  // left in the middle of an open by the missing suite
    ui->preferences["EnablePlugin"] = 1;
    ui->preferences["RMF5"] = -1;
    MarquineGlobals::SetPluginServicesEnabled(true);
    MarquineGlobals::SetUserHasWorkgroups(true);
    MarquineGlobals::SetSuppressingHostAppDialogs(true);
    app.missingSuites.clear();
    app.Add(WriteDocument("a.psd", row.fonts));
    row.change();
    EXPECT_EQ(KeysOf("Missing Fonts", kHostLayout), row.keys) << row.rule;
    app.RemoveAll();
  }
  EXPECT_EQ(TracedLines("Ignoring window 'Missing Fonts' because no document appears to have been opened.").size(), 2u);
}

TEST_F(MissingFontsWindow, AnAlertIsAnsweredByItsText) {
  const auto answerTo = [](const char* text) { return platform::Alert(text).RunModal(); };
  struct Shown {
    int boxes = 0, within = -1;
  } shown;
  platform::Presenter presenter;
  presenter.context = &shown;
  presenter.runBox = [](void* context, platform::ValueRef) {
    auto* seen = static_cast<Shown*>(context);
    ++seen->boxes;
    seen->within = platform::Alert("Something else").RunModal();
    platform::Dictionary answer = platform::Dictionary::Create();
    answer.Set("Button", platform::Number::FromInteger(2));
    return answer.Release();
  };
  SwizzleNSAlertRunModal();
  platform::SetPresenter(&presenter);
  EXPECT_EQ(answerTo("PhotoshopMissingFonts"), 1001) << "not ready";
  MakeReady();
  EXPECT_EQ(answerTo("... PhotoshopMissingFonts ..."), 1000);
  EXPECT_EQ(answerTo("Something else"), 1001);
  platform::SetPresenter(nullptr);
  EXPECT_EQ(shown.boxes, 2);
  EXPECT_EQ(shown.within, 0) << "an alert within an alert is not shown";
  EXPECT_EQ(gShowingAlertCallCounter, 0);
}

TEST_F(ReplaceMissingFonts, ClosesAndOpensTheDocumentAfterItsDelay) {
  MakeReady();
  const std::string path = Open("a.psd", {"Alpha"});
  const int other = app.Add(WriteDocument("b.psd", {}));
  Wait(3.9);
  EXPECT_TRUE(app.played.empty());
  ui->TakeShown();
  Wait(0.2);
  EXPECT_EQ(Joined(app.played), "select 1, close 1, open " + path);
  EXPECT_EQ(Shown(), "show, update, hide");
  EXPECT_EQ(Tracked(), "a.psd 3");
  EXPECT_NE(app.documents.Find(other), nullptr);
  Wait(10);
  EXPECT_EQ(app.played.size(), 3u);
}

TEST_F(ReplaceMissingFonts, IsArmedOnlyIfAFontWasActivatedAndNoneIsMissing) {
  ui->preferences["PickBestMatch"] = 1;
  agent.Add({.id = 4, .postScriptName = "Active", .ownState = 4});
  MakeReady();
  Open("a.psd", {"Active"}), Open("b.psd", {"Alpha", "Absent"}), Open("c.psd", {});
  Wait(10);
  EXPECT_TRUE(app.played.empty());
}

TEST_F(ReplaceMissingFonts, TakesItsDelayFromThePreference) {
  MakeReady();
  const struct {
    int milliseconds, stored;
    double fires;  // in seconds; never if below 0
  } kRows[] = {{0, 4000, 4}, {-1, -1, -1}, {6000, 6000, 6}, {1, 1, 0.001}};
  for (const auto& row : kRows) {
    app.RemoveAll();
    app.played.clear();
    platform::Clock::SetDriven(kNow);
    ui->preferences["RMF5"] = row.milliseconds;
    DeferredReplaceMissingFonts(app.Add(WriteDocument("a.psd", {})));
    EXPECT_EQ(ui->preferences["RMF5"], row.stored);
    Wait(row.fires < 0 ? 20 : row.fires - 0.0005);
    EXPECT_TRUE(app.played.empty()) << row.milliseconds;
    Wait(0.002);
    EXPECT_EQ(app.played.empty(), row.fires < 0) << row.milliseconds;
  }
  MarquineGlobals::SetNoVPFInterfaceForTesting();
  app.played.clear();
  DeferredReplaceMissingFonts(1);
  Wait(20);
  EXPECT_TRUE(app.played.empty());
}

TEST_F(ReplaceMissingFonts, WaitsUntilTheWayIsClear) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {});
  DeferredReplaceMissingFonts(app.Add(path));
  for (int* counter : {&gOpenDocumentCallCounter, &gShowingAlertCallCounter}) {
    ++*counter;
    Wait(5);
    EXPECT_TRUE(app.played.empty());
    --*counter;
  }
  // Not in a modal loop, either.
  platform::RunLoop::Main().RunFor(5, platform::RunLoopMode::kModal);
  EXPECT_TRUE(app.played.empty());
  Wait(1);
  EXPECT_EQ(app.played.size(), 3u);
}

TEST_F(ReplaceMissingFonts, IsGivenUpForADirtyDocumentAModalWindowOrAPathThatCannotBeEncoded) {
  MakeReady();
  Window modal("Save?", {}, nullptr);
  struct Case {
    const char *rule, *file;
    std::function<void(host::Document&)> change;
  };
  const std::vector<Case> kCases = {
      {"dirty", "a.psd", [](host::Document& document) { document.isDirty = true; }},
      {"modal", "b.psd", [&](host::Document&) { Window::SetModal(&modal); }},
      {"not to be encoded", "日本.psd", [](host::Document&) {}},
  };
  for (const Case& row : kCases) {
    app.played.clear();
    const std::string path = WriteDocument(row.file, {});
    const int id = app.Add(path);
    AllTrackedDocuments::AddDocument(nullptr, path);
    row.change(*app.documents.Find(id));
    DeferredReplaceMissingFonts(id);
    Wait(10);
    EXPECT_EQ(app.played, Lines{"select " + std::to_string(id)}) << row.rule;
    EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath(path)->GetDocumentHandle(), id) << row.rule;
    Window::SetModal(nullptr);
  }
}

TEST_F(ReplaceMissingFonts, AFileIsOpenedWithTheProgramOfTheDesktop) {
  std::string path = "/documents/größer als.psd";
  const std::string opened = folder / "opened";
  {
    const test_support::ScopedVariable none("PATH", folder.Path());
    EXPECT_FALSE(SystemOpenFile(path));
    EXPECT_TRUE(Traced("SystemOpenFile('" + path + "') failed: xdg-open: No such file or directory"));
  }
  const std::string program = folder.Write("xdg-open", "#!/bin/sh\nprintf %s \"$1\" >" + opened + "\n");
  std::filesystem::permissions(program, std::filesystem::perms(0700));
  ASSERT_EQ(mkfifo(opened.c_str(), 0600), 0);  // which holds up the reader until the program has come
  const test_support::ScopedVariable first("PATH", folder.Path() + ":/usr/bin:/bin");
  const auto timer =
      platform::RunLoopTimer::After(0, 0, [&](platform::RunLoopTimer& fired) { timerCallback(fired, &path); });
  platform::RunLoop::Main().AddTimer(timer, platform::RunLoopMode::kDefault);
  Wait(0.1);
  EXPECT_EQ(test_support::TempFolder::Content(opened), path);
}

TEST_F(ReplaceMissingFonts, PendingOnesCanBeDelayed) {
  MakeReady();
  ui->preferences["RMF5"] = 10'000;
  DeferredReplaceMissingFonts(app.Add(WriteDocument("a.psd", {})));
  DelayReplaceMissingFontsTimers();
  Wait(0.9);
  EXPECT_TRUE(app.played.empty());
  Wait(0.2);
  EXPECT_EQ(app.played.size(), 3u);
}

}  // namespace
