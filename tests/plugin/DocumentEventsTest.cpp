// What the plug-in does, in which order, when a document is opened, created, saved or closed.
#include "Readers/XMPFontMetadata.h"
#include "photoshop/MissingFontsWindow.h"
#include "plugin/HostFixture.h"

namespace {

class DocumentEventsFixture : public HostFixture {
 protected:
  DocumentEventsFixture() {
    agent.Add({.id = 1, .postScriptName = "Alpha"});
    agent.Add({.id = 2, .postScriptName = "Beta"});
    agent.Add({.id = 3, .postScriptName = "NimbusSans-Regular"});
    ui->preferences["CloseFontsOnDocClose"] = ui->preferences["CloseFontsOnHostAppQuit"] = 1;
  }
  ~DocumentEventsFixture() override { ResetMissingFontsWindowForTesting(); }

  std::string OpenSample() {
    std::string path = Sample("poster.psd");
    app.Add(path);
    SendOpen(path);
    return path;
  }
  static std::string SlugOf(const std::string& path) {
    const platform::Array slug = platform::Array::Create();
    ReadXMPGlyphsureSlugFromFile(path, slug);
    return fakes::NamesOf(slug);
  }
};
using DocumentEvents = DocumentEventsFixture;

TEST_F(DocumentEvents, AnOpenEventTracksTheDocumentAndActivatesItsFonts) {
  MakeReady();
  Open("a.psd", {"Alpha", "Beta", "Alpha"});
  EXPECT_EQ(Held(), "1 2");
  EXPECT_EQ(Tracked(), "a.psd 1");
  EXPECT_EQ(FirstTracked().GetTimeOpenEventWasHandled(), static_cast<long>(kNow));
  EXPECT_EQ(gOpenDocumentCallCounter, 0);
  EXPECT_EQ(Shown(), "");
}

TEST_F(DocumentEvents, ADocumentThatIsNotInFrontIsTrackedByItsOwnID) {
  MakeReady();
  const std::string path = WriteDocument("behind.psd", {"Alpha"});
  app.Add(path);
  app.Add(WriteDocument("front.psd", {"Beta"}));
  SendOpen(path);
  EXPECT_EQ(Tracked(), "behind.psd 1");
  EXPECT_EQ(Held(), "1");
}

TEST_F(DocumentEvents, ASaveWithAFailedLookUpKeepsTheSlug) {
  MakeReady();
  const std::string path = OpenSample();
  SendSave();
  SendSave();
  const std::string before = SlugOf(path);
  ASSERT_NE(before, "");
  FontDataPreviouslyGottenFromDatabase::DeleteAll();
  for (const auto function : {fakes::AgentFunction::GetFontsByPostscriptName, fakes::AgentFunction::GetFontInfoByID,
                              fakes::AgentFunction::GetFontIsActivated}) {
    SCOPED_TRACE(fakes::AgentAnswers::NameOf(function));
    agent.FailNext(function, PluginInterface::kServiceUnavailableCode);
    SendSave();
    SendSave();
    EXPECT_EQ(SlugOf(path), before);
    FontDataPreviouslyGottenFromDatabase::DeleteAll();
  }
  // If all lookups succeed, the slug has the active fonts, which may be fewer.
  for (auto& [id, font] : agent.fonts) font.isHeld = false;
  SendSave();
  SendSave();
  EXPECT_EQ(SlugOf(path), "");
}

TEST_F(DocumentEvents, NothingHappensUnlessReady) {
  const auto sendAll = [&] { Open("a.psd", {"Alpha"}), SendMake(), SendSave(), SendSave(), SendClose(); };
  sendAll();
  MakeReady();
  for (const auto& takeBack : std::vector<std::function<void()>>{
           [&] { ui->preferences["EnablePlugin"] = 0; },
           [&] { ui->preferences["EnablePlugin"] = 1, MarquineGlobals::SetLoggedIn(false); },
           [&] { MarquineGlobals::SetLoggedIn(true), MarquineGlobals::SetPluginServicesEnabled(false); }}) {
    takeBack();
    sendAll();
  }
  EXPECT_EQ(Tracked() + Held(), "");
}

TEST_F(DocumentEvents, ADocumentIsTakenWhereTheHostIsInTheMiddleOfAnotherOpen) {
  MakeReady();
  gOpenDocumentCallCounter = 1;
  const std::string path = Open("a.psd", {"Alpha"});
  DetectAndHandleNewlyOpenedDocuments(false);
  EXPECT_EQ(Tracked(), "");
  gOpenDocumentCallCounter = 0;
  DetectAndHandleNewlyOpenedDocuments(false);
  EXPECT_TRUE(Traced("Newly opened document detected: '" + path + "'"));
  EXPECT_EQ(Held(), "1");
  EXPECT_EQ(FirstTracked().GetTimeOpenEventWasHandled(), 0);
  // The open event that follows only records its time.
  SendOpen(path);
  EXPECT_EQ(agent.Count("ActivateFonts"), 1u);
  EXPECT_NE(FirstTracked().GetTimeOpenEventWasHandled(), 0);
}

TEST_F(DocumentEvents, UnresolvedFontsAreTriedAgainByTheOpenEventUnderAnIdentifierOfItsOwn) {
  ui->preferences["PickBestMatch"] = 1;
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Alpha", "Absent"});
  const int id = app.Add(path);
  DetectAndHandleNewlyOpenedDocuments(false);
  SendOpen(path);
  EXPECT_EQ(Shown(), "box SomeLayersMissingFontsMessage, box SomeLayersMissingFontsMessage");
  EXPECT_EQ(Tracked(), "a.psd 1");
  // The count of the second run is released at the quit only.
  app.documents.Remove(id);
  SendClose();
  EXPECT_EQ(Tracked(), "");
  EXPECT_EQ(Held(), "1");
  FontManagerInterface::OnHostAppShuttingDown(false);
  EXPECT_EQ(Held(), "");
}

TEST_F(DocumentEvents, AnEventWithoutAPathMeansTheUntitledDocument) {
  MakeReady();
  app.Add("");
  SendMake();
  SendOpen("");
  EXPECT_EQ(Tracked(), "- 1");
  SendMake(host_sdk::Code("Lyr "));
  EXPECT_TRUE(Traced("MakeEvent received for DescriptorClassID  ryL"));
}

TEST_F(DocumentEvents, ASecondUntitledDocumentIsTrackedFromItsSave) {
  MakeReady();
  const int first = app.Add("");
  SendMake();
  const int second = app.Add("");
  SendMake();
  EXPECT_EQ(Tracked(), "- 1");
  // The first save of the first document brings its path; the second document stays untracked.
  platform::Clock::SetDriven(kNow + 60);
  app.documents.BringToFront(first);
  app.documents.Find(first)->path = WriteDocument("first.psd", {});
  SendSave();
  SendSave();
  EXPECT_EQ(Tracked(), "first.psd 1");
  EXPECT_EQ(FirstTracked().GetTimeOpenEventWasHandled(), static_cast<long>(kNow));
  app.documents.BringToFront(second);
  app.documents.Find(second)->path = WriteDocument("second.psd", {});
  SendSave();
  EXPECT_TRUE(Traced("WARNING: no documentID 0x00000002 found in AllTrackedDocuments. '" +
                     app.documents.Find(second)->path + "' is untracked"));
}

TEST_F(DocumentEvents, OnlyTheSecondSaveNotificationWritesTheSlug) {
  MakeReady();
  const std::string path = OpenSample();
  SendSave();
  EXPECT_EQ(SlugOf(path), "");
  EXPECT_TRUE(Traced("Doing nothing because this is a pre-save event."));
  SendSave();
  EXPECT_EQ(SlugOf(path), "NimbusSans-Regular");
  // A notification without the document's ID comes after the save, whatever its number.
  agent.Add({.id = 4, .postScriptName = "NimbusSans-Bold", .ownState = 4});
  SendSave(false);
  EXPECT_EQ(SlugOf(path), "NimbusSans-Regular NimbusSans-Bold");
  // Without identification the slug stays as it is.
  agent.Font(4).ownState = 1;
  ui->preferences["EnableGlyphsure"] = 0;
  SendSave(false);
  EXPECT_EQ(SlugOf(path), "NimbusSans-Regular NimbusSans-Bold");
}

TEST_F(DocumentEvents, ASaveUnderANewNameMovesTheRecordAndKeepsItsFonts) {
  MakeReady();
  Open("old.psd", {"Alpha"});
  const std::string identifier = FirstTracked().GetIdentifier();
  app.documents.Find(1)->path = WriteDocument("new.psd", {"Alpha"});
  SendSave();
  EXPECT_EQ(Tracked(), "new.psd 1");
  EXPECT_EQ(FirstTracked().GetIdentifier(), identifier);
  EXPECT_EQ(FirstTracked().GetTimeSaveEventWasHandled(), static_cast<long>(kNow));
  app.documents.Remove(1);
  SendClose();
  EXPECT_EQ(Held(), "");
}

TEST_F(DocumentEvents, AllDocumentsThatHaveGoneAreClosedInOneEvent) {
  MakeReady();
  Open("a.psd", {"Alpha"}), Open("b.psd", {"Alpha", "Beta"}), Open("c.psd", {"Beta"});
  app.documents.Remove(1);
  app.documents.Remove(3);
  SendClose();
  EXPECT_EQ(Tracked(), "b.psd 2");
  EXPECT_EQ(Held(), "1 2");
  app.documents.Remove(2);
  SendClose();
  EXPECT_EQ(Held(), "");
}

TEST_F(DocumentEvents, AFailedQueryProtectsADocumentAndAMissingHandleDoesNot) {
  MakeReady();
  Open("a.psd", {"Alpha"});
  app.documents.Remove(1);
  app.failingProperties = {host_sdk::Code("NmbD")};
  SendClose();
  EXPECT_EQ(Tracked(), "a.psd 1");
  FirstTracked().SetDocumentHandle(0);
  SendClose();
  EXPECT_EQ(Tracked(), "");
}

// The activation runs the event loop, and the host closes the very document in it.
TEST_F(DocumentEvents, ADocumentClosedWhileItIsActivatedIsLetGoWhenTheWorkIsDone) {
  MakeReady();
  agent.onCall = [&](fakes::AgentFunction function) {
    if (function != fakes::AgentFunction::ActivateFonts) return;
    agent.onCall = nullptr;
    app.documents.Remove(1);
    SendClose();
  };
  const std::string path = Open("a.psd", {"Alpha"});
  EXPECT_EQ(Tracked(), "");
  EXPECT_TRUE(Traced("WARNING: HandleOpenedDocument() failed to add '" + path + "' to AllTrackedDocuments."));
  EXPECT_EQ(gOpenDocumentCallCounter, 0);
}

TEST_F(DocumentEvents, AnExceptionLeavesTheCounterRaised) {
  MakeReady();
  agent.onCall = [](fakes::AgentFunction function) {
    if (function == fakes::AgentFunction::ActivateFonts) throw std::runtime_error("the agent's library failed");
  };
  EXPECT_THROW(Open("a.psd", {"Alpha"}), std::runtime_error);
  EXPECT_EQ(gOpenDocumentCallCounter, 1);
}

}  // namespace
