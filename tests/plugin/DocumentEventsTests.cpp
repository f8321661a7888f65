// What is done, in which order, when a document is opened, made, saved or closed.
#include "Readers/XMPFontMetadata.h"
#include "photoshop/MissingFontsWindow.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "plugin/HostFixture.h"

using fakes::NamesOf;
using platform::Array;

namespace {

using Lines = std::vector<std::string>;

class DocumentEventsFixture : public HostFixture {
 protected:
  DocumentEventsFixture() {
    agent.Add({.id = 1, .postScriptName = "Alpha"});
    agent.Add({.id = 2, .postScriptName = "Beta"});
    ui->preferences["CloseFontsOnDocClose"] = ui->preferences["CloseFontsOnHostAppQuit"] = 1;
  }
  ~DocumentEventsFixture() override { ResetMissingFontsWindowForTesting(); }

  std::string SlugOf(const std::string& path) {
    const Array slug = Array::Create();
    ReadXMPGlyphsureSlugFromFile(path, slug);
    return NamesOf(slug);
  }
};
using DocumentEvents = DocumentEventsFixture;

TEST_F(DocumentEvents, AnOpenEventTracksTheDocumentAndActivatesItsFonts) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha", "Beta", "Alpha"});
  const int id = app.Add(path);
  SendOpen(path);
  EXPECT_EQ(Held(), (std::vector<uint32_t>{1, 2}));
  EXPECT_EQ(Tracked(), Lines{"a.psd " + std::to_string(id)});
  EXPECT_EQ(AllTrackedDocuments::GetDocumentList()[0]->GetTimeOpenEventWasHandled(), static_cast<long>(kNow));
  EXPECT_EQ(gOpenDocumentCallCounter, 0);
  EXPECT_TRUE(ui->TakeShown().empty());
}

TEST_F(DocumentEvents, NothingHappensUnlessReady) {
  const std::string path = WriteDocument("a.psd", {"Alpha"});
  app.Add(path);
  const auto sendAll = [&] { SendOpen(path), SendMake(), SendSave(), SendSave(), SendClose(); };
  sendAll();
  MakeReady();
  for (const auto& takeBack : std::vector<std::function<void()>>{
           [&] { ui->preferences["EnablePlugin"] = 0; },
           [&] { ui->preferences["EnablePlugin"] = 1, MarquineGlobals::SetLoggedIn(false); },
           [&] { MarquineGlobals::SetLoggedIn(true), MarquineGlobals::SetPluginServicesEnabled(false); }}) {
    takeBack();
    sendAll();
  }
  EXPECT_TRUE(Tracked().empty());
  EXPECT_TRUE(Held().empty());
}

TEST_F(DocumentEvents, ADocumentIsTakenWhereTheHostIsInTheMiddleOfAnotherOpen) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha"});
  app.Add(path);
  gOpenDocumentCallCounter = 1;
  SendOpen(path);
  DetectAndHandleNewlyOpenedDocuments(false);
  EXPECT_TRUE(Tracked().empty());
  gOpenDocumentCallCounter = 0;
  DetectAndHandleNewlyOpenedDocuments(false);
  EXPECT_TRUE(Traced("Newly opened document detected: '" + path + "'"));
  EXPECT_EQ(Held(), std::vector<uint32_t>{1});
  EXPECT_EQ(AllTrackedDocuments::GetDocumentList()[0]->GetTimeOpenEventWasHandled(), 0);
  // The open event that follows has nothing left to do but to note its time.
  SendOpen(path);
  EXPECT_EQ(agent.Count("ActivateFonts"), 1u);
  EXPECT_NE(AllTrackedDocuments::GetDocumentList()[0]->GetTimeOpenEventWasHandled(), 0);
}

TEST_F(DocumentEvents, UnresolvedFontsAreTriedAgainByTheOpenEventUnderAnIdentifierOfItsOwn) {
  ui->preferences["PickBestMatch"] = 1;
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha", "Absent"});
  const int id = app.Add(path);
  DetectAndHandleNewlyOpenedDocuments(false);
  SendOpen(path);
  EXPECT_EQ(ui->TakeShown(), (Lines{"box SomeLayersMissingFontsMessage", "box SomeLayersMissingFontsMessage"}));
  EXPECT_EQ(Tracked(), Lines{"a.psd " + std::to_string(id)});
  // The second run's count is given back at the quit only.
  app.Remove(id);
  SendClose();
  EXPECT_TRUE(Tracked().empty());
  EXPECT_EQ(Held(), std::vector<uint32_t>{1});
  FontManagerInterface::OnHostAppShuttingDown(false);
  EXPECT_TRUE(Held().empty());
}

TEST_F(DocumentEvents, AFailedQueryLeavesThePathEmpty) {
  MakeReady();
  app.Add("");
  SendMake();
  SendOpen("");
  EXPECT_EQ(Tracked(), Lines{"- 101"});
  SendMake(host_sdk::Code("Lyr "));
  EXPECT_TRUE(Traced("MakeEvent received for DescriptorClassID  ryL"));
}

TEST_F(DocumentEvents, ASecondUntitledDocumentIsTrackedFromItsSave) {
  MakeReady();
  const int first = app.Add("");
  SendMake();
  const int second = app.Add("");
  SendMake();
  EXPECT_EQ(Tracked(), Lines{"- " + std::to_string(first)});
  const std::time_t made = AllTrackedDocuments::GetDocumentList()[0]->GetTimeOpenEventWasHandled();
  // The first save of the first one brings its path; the second one stays untracked.
  platform::Clock::SetDriven(kNow + 60);
  app.front = first;
  app.Find(first)->path = WriteDocument("first.psd", {});
  SendSave();
  SendSave();
  EXPECT_EQ(Tracked(), Lines{"first.psd " + std::to_string(first)});
  EXPECT_EQ(AllTrackedDocuments::GetDocumentList()[0]->GetTimeOpenEventWasHandled(), made);
  app.front = second;
  app.Find(second)->path = WriteDocument("second.psd", {});
  SendSave();
  EXPECT_TRUE(Traced("WARNING: no documentID 0x00000066 found in AllTrackedDocuments. '" + app.Find(second)->path +
                     "' is untracked"));
}

TEST_F(DocumentEvents, OnlyTheSecondSaveNotificationWritesTheSlug) {
  MakeReady();
  agent.Add({.id = 3, .postScriptName = "NimbusSans-Regular"});
  const std::string path = Sample("poster.psd");
  app.Add(path);
  SendOpen(path);
  const Lines expected = {"", "NimbusSans-Regular"};
  for (int i = 0; i < 2; ++i) {
    SendSave();
    EXPECT_EQ(SlugOf(path), expected[static_cast<size_t>(i)]);
  }
  EXPECT_TRUE(Traced("Doing nothing because this is a pre-save event."));
  // Without the document's ID a notification comes after the save, whatever its number.
  agent.Add({.id = 4, .postScriptName = "NimbusSans-Bold", .ownState = 4});
  SendSave(false);
  EXPECT_EQ(SlugOf(path), "NimbusSans-Regular NimbusSans-Bold");
}

TEST_F(DocumentEvents, ASaveWithoutIdentificationLeavesTheSlugAsItIs) {
  MakeReady();
  agent.Add({.id = 3, .postScriptName = "NimbusSans-Regular"});
  const std::string path = Sample("poster.psd");
  app.Add(path);
  SendOpen(path);
  SendSave(false);
  ui->preferences["EnableGlyphsure"] = 0;
  SendSave(false);
  EXPECT_EQ(SlugOf(path), "NimbusSans-Regular");
}

TEST_F(DocumentEvents, ASaveUnderANewNameMovesTheRecordAndKeepsItsFonts) {
  MakeReady();
  const std::string path = WriteDocument("old.psd", {"Alpha"});
  const int id = app.Add(path);
  SendOpen(path);
  const std::string identifier = AllTrackedDocuments::GetDocumentList()[0]->GetIdentifier();
  app.Find(id)->path = WriteDocument("new.psd", {"Alpha"});
  SendSave();
  EXPECT_EQ(Tracked(), Lines{"new.psd " + std::to_string(id)});
  EXPECT_EQ(AllTrackedDocuments::GetDocumentList()[0]->GetIdentifier(), identifier);
  EXPECT_EQ(AllTrackedDocuments::GetDocumentList()[0]->GetTimeSaveEventWasHandled(), static_cast<long>(kNow));
  app.Remove(id);
  SendClose();
  EXPECT_TRUE(Held().empty());
}

TEST_F(DocumentEvents, AllDocumentsThatHaveGoneAreClosedInOneEvent) {
  MakeReady();
  const std::string paths[] = {WriteDocument("a.psd", {"Alpha"}), WriteDocument("b.psd", {"Alpha", "Beta"}),
                               WriteDocument("c.psd", {"Beta"})};
  for (const std::string& path : paths) {
    app.Add(path);
    SendOpen(path);
  }
  app.Remove(101);
  app.Remove(103);
  SendClose();
  EXPECT_EQ(Tracked(), Lines{"b.psd 102"});
  EXPECT_EQ(Held(), (std::vector<uint32_t>{1, 2}));
  app.Remove(102);
  SendClose();
  EXPECT_TRUE(Held().empty());
}

TEST_F(DocumentEvents, AFailedQueryProtectsADocumentAndAMissingHandleDoesNot) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha"});
  const int id = app.Add(path);
  SendOpen(path);
  app.Remove(id);
  app.failingProperties = {host_sdk::Code("NmbD")};
  SendClose();
  EXPECT_EQ(Tracked().size(), 1u);
  AllTrackedDocuments::GetDocumentList()[0]->SetDocumentHandle(0);
  SendClose();
  EXPECT_TRUE(Tracked().empty());
}

// The activation runs the event loop, and the host closes the very document in it.
TEST_F(DocumentEvents, ADocumentClosedWhileItIsActivatedIsLetGoWhenTheWorkIsDone) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha"});
  const int id = app.Add(path);
  agent.onCall = [&](fakes::AgentFunction function) {
    if (function != fakes::AgentFunction::ActivateFonts) return;
    agent.onCall = nullptr;
    app.Remove(id);
    SendClose();
  };
  SendOpen(path);
  EXPECT_TRUE(Tracked().empty());
  EXPECT_TRUE(Traced("WARNING: HandleOpenedDocument() failed to add '" + path + "' to AllTrackedDocuments."));
  EXPECT_EQ(gOpenDocumentCallCounter, 0);
}

TEST_F(DocumentEvents, AnExceptionLeavesTheCounterRaised) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha"});
  app.Add(path);
  agent.onCall = [](fakes::AgentFunction function) {
    if (function == fakes::AgentFunction::ActivateFonts) throw std::runtime_error("the agent's library failed");
  };
  EXPECT_THROW(SendOpen(path), std::runtime_error);
  EXPECT_EQ(gOpenDocumentCallCounter, 1);
}

}  // namespace
