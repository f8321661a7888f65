// The command box and the commands behind its buttons.
#include "photoshop/PluginCommands.h"

#include "photoshop/MissingFontsWindow.h"
#include "platform/Presenter.h"
#include "platform/RunLoop.h"
#include "plugin/HostFixture.h"

using host_sdk::Code;
using platform::Dictionary;

namespace {

class CommandFixture : public HostFixture {
 protected:
  CommandFixture() {
    agent.Add({.id = 1, .postScriptName = "Active", .ownState = 4});
    agent.Add({.id = 2, .postScriptName = "Idle"});
    agent.workgroups = {{5, "Library", "3"}, {6, "Other", "1"}, {7, "Untyped", ""}};
  }
  ~CommandFixture() override {
    ResetMissingFontsWindowForTesting();
    platform::SetPresenter(nullptr);
  }
  // Shows the box with one answer.
  void Choose(int code, int workgroup) {
    ui->commands = {{code, workgroup}};
    EXPECT_EQ(HandleCommandBoxAction(), 0);
  }
};
using Command = CommandFixture;

TEST_F(Command, TellsWhatStandsInTheWay) {
  EXPECT_EQ(HandleCommandBoxAction(), static_cast<host_sdk::SPErr>(Code("fbar")));
  MakeReady();
  MarquineGlobals::SetPluginServicesEnabled(false);
  EXPECT_EQ(HandleCommandBoxAction(), 0);
  EXPECT_EQ(Shown(), "box FontManagerNotFoundMessage");
  agent.isStandalone = false;
  MakeReady();
  agent.workgroups.clear();
  HandleCommandBoxAction();
  EXPECT_EQ(Shown(), "box NoWorkgroupsMessage");
  agent.isLoggedIn = false;
  HandleCommandBoxAction();
  EXPECT_EQ(Shown(), "box NotLoggedInPluginDisabledMessage");
}

TEST_F(Command, BoxIsFilledFromTheManager) {
  MakeReady();
  ui->preferences["CurrentWorkgroup"] = 6;
  Choose(-1, 5);
  EXPECT_EQ(ui->commandBox.GetInteger("CurrentWorkgroupID"), 6);
  EXPECT_EQ(ui->commandBox.GetInteger("ButtonsEnabled"), 0) << "no document is tracked";
  EXPECT_EQ(ui->commandBox.GetInteger("IsOnline"), 1);
  const platform::Array workgroups = ui->commandBox.GetArray("Workgroups");
  ASSERT_GE(workgroups.Count(), 3u);
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const Dictionary workgroup(workgroups.At(i));
    const bool isLocal = workgroup.GetString("WorkgroupType").View() == "3";
    EXPECT_EQ(workgroup.GetInteger("IsLocalPersonal", -1), isLocal ? 1 : 0) << i;
  }
  EXPECT_EQ(ui->preferences["CurrentWorkgroup"], 6) << "a cancel stores nothing";
  AllTrackedDocuments::AddDocument(nullptr, "/a.psd");
  Choose(-1, 5);
  EXPECT_EQ(ui->commandBox.GetInteger("ButtonsEnabled"), 1);
  ui->preferences["EnablePlugin"] = 0;
  Choose(-1, 5);
  EXPECT_EQ(ui->commandBox.GetInteger("ButtonsEnabled"), 0);
}

TEST_F(Command, BoxComesBackAfterAboutAndPreferences) {
  MakeReady();
  ui->commands = {{2, 5}, {3, 6}};
  HandleCommandBoxAction();
  EXPECT_EQ(Shown(), "command, about, command, preferences, command");
  EXPECT_EQ(ui->preferences["CurrentWorkgroup"], 6);
  Choose(99, 5);
  EXPECT_EQ(Shown(), "command");
  EXPECT_EQ(ui->preferences["CurrentWorkgroup"], 5);
}

TEST_F(Command, ChecksTheFontsOfTheDocumentAgain) {
  ui->preferences["PickBestMatch"] = 1;
  agent.Font(2).workgroupID = 99;  // not yet in the library
  MakeReady();
  const std::string path = Open("a.psd", {"Active"});
  Choose(6, -2);
  platform::RunLoop::Main().RunFor(10);
  EXPECT_TRUE(app.played.empty()) << "nothing new was needed";
  WriteDocument("a.psd", {"Active", "Idle"});
  Choose(6, -2);
  EXPECT_EQ(Held(), "2");
  platform::RunLoop::Main().RunFor(10);
  EXPECT_EQ(Joined(app.played), "select 1, close 1, open " + path);
  // A document that is not tracked is not touched.
  app.Add(WriteDocument("b.psd", {"Idle"}));
  const size_t calls = agent.Count("ActivateFonts");
  Choose(6, -2);
  EXPECT_EQ(agent.Count("ActivateFonts"), calls);
}

TEST_F(Command, MakesASetInOneWorkgroupOnly) {
  MakeReady();
  Open("a.psd", {"Active"});
  ui->typed = "a.psd";
  Choose(5, -2);
  EXPECT_EQ(Shown(), "command, box CreateDocSetNotAvailableMessage");
  EXPECT_TRUE(agent.sets.empty());
  Choose(5, 5);
  EXPECT_EQ(Shown(), "command, ask");
  EXPECT_EQ(agent.sets.size(), 1u);
}

TEST_F(Command, CollectsWhatMayBeExported) {
  static std::string sFolder;
  sFolder = folder / "collected";
  static const platform::Presenter sPresenter = {nullptr, [](void*, platform::ValueRef) -> platform::ValueRef {
                                                   Dictionary answer = Dictionary::Create();
                                                   answer.Set("Button", platform::Number::FromInteger(1));
                                                   answer.Set("Text", sFolder);
                                                   return answer.Release();
                                                 }};
  platform::SetPresenter(&sPresenter);
  const struct {
    const char* rule;
    bool isStandalone, mayExport, isTracked;
    const char *fonts, *shown;
    std::vector<uint32_t> exported;
  } kRows[] = {
      {"all is there", true, true, true, "Active", "", {1}},
      {"alone the right does not count", true, false, true, "Active", "", {1}},
      {"with a server it does", false, false, true, "Active", "box CannotExportMessage", {}},
      {"the rest is collected", true, true, true, "Active Absent", "box MissingFontsExportMessage", {1}},
      {"an untracked document", true, true, false, "Active", "box CannotExportMessage", {}},
  };
  for (const auto& row : kRows) {
    AllTrackedDocuments::ResetForTesting();
    app.RemoveAll();
    agent.exported.clear();
    agent.isStandalone = row.isStandalone;
    agent.mayExport = row.mayExport;
    MakeReady();
    ui->preferences["PickBestMatch"] = 0;
    const std::string path = WriteDocument("a.psd", Words(row.fonts));
    app.Add(path);
    if (row.isTracked) AllTrackedDocuments::AddDocument(nullptr, path);
    DoCollectForOutput();
    EXPECT_EQ(Shown(), row.shown) << row.rule;
    EXPECT_EQ(agent.exported, row.exported) << row.rule;
  }
}

}  // namespace
