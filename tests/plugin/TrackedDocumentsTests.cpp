// The list of documents and its lookups.
#include "Tracking/FontActivationTracker.h"
#include "plugin/HostFixture.h"

using fakes::ArrayOf;
using fakes::Named;

namespace {

class TrackedDocuments : public HostFixture {
 protected:
  static OneTrackedDocument* Add(const std::string& identifier, const std::string& path, long handle) {
    const auto document = std::make_shared<OneTrackedDocument>();
    document->SetIdentifier(identifier);
    document->SetDocumentHandle(handle);
    AllTrackedDocuments::AddDocument(document, path);
    return document.get();
  }
};

TEST_F(TrackedDocuments, AreFoundByPathHandleAndIdentifier) {
  OneTrackedDocument* first = Add("id-1", "/a.psd", 7);
  OneTrackedDocument* untitled = Add("id-2", "", 0);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath("/a.psd"), first);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath("/A.psd"), nullptr);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath(""), untitled);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByIdentifier("id-2"), untitled);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(7), first);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(0), untitled);
  trace.clear();
  untitled->SetDocumentHandle(8);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(0), nullptr);
  EXPECT_TRUE(trace.empty());
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(9), nullptr);
  EXPECT_TRUE(Traced("WARNING: FindTrackedDocumentByHandle() could not find document 0x00000009"));
}

TEST_F(TrackedDocuments, APathIsTrackedOnce) {
  Add("id-1", "", 1);
  const auto second = std::make_shared<OneTrackedDocument>();
  second->SetDocumentFilePath("/own.psd");
  AllTrackedDocuments::AddDocument(second, "");
  EXPECT_EQ(Tracked(), std::vector<std::string>{"- 1"});
  EXPECT_EQ(second->GetDocumentFilePath(), "/own.psd");
  AllTrackedDocuments::AddDocument(nullptr, "/new.psd");
  EXPECT_EQ(Tracked(), (std::vector<std::string>{"- 1", "new.psd 0"}));
}

TEST_F(TrackedDocuments, TheCurrentOneIsThatWithTheStoredIdentifier) {
  EXPECT_EQ(AllTrackedDocuments::GetCurrentDocument(), nullptr);
  OneTrackedDocument* document = Add("id-1", "/a.psd", 7);
  EXPECT_EQ(AllTrackedDocuments::GetCurrentDocument(), nullptr);
  AllTrackedDocuments::SetCurrentDocument("id-1");
  EXPECT_EQ(AllTrackedDocuments::GetCurrentDocument(), document);
}

TEST_F(TrackedDocuments, TheMostRecentIsTheFirstWithTheGreatestOpenTime) {
  Add("never opened", "/0.psd", 1);
  EXPECT_EQ(AllTrackedDocuments::GetMostRecentlyOpenedDocument(), nullptr);
  OneTrackedDocument* first = Add("1", "/1.psd", 2);
  first->SetTimeOpenEventWasHandled();
  Add("2", "/2.psd", 3)->SetTimeOpenEventWasHandled();
  EXPECT_EQ(AllTrackedDocuments::GetMostRecentlyOpenedDocument(), first);
  platform::Clock::SetDriven(kNow + 1);
  OneTrackedDocument* last = Add("3", "/3.psd", 4);
  last->SetTimeOpenEventWasHandled();
  EXPECT_EQ(AllTrackedDocuments::GetMostRecentlyOpenedDocument(), last);
}

TEST_F(TrackedDocuments, UnresolvedFontsAreMissingOnlyWithoutReplacements) {
  OneTrackedDocument* document = Add("1", "/1.psd", 1);
  EXPECT_FALSE(document->GetHasMissingFonts());
  platform::Dictionary replaceable = Named("Replaceable");
  replaceable.Set("PossibleReplacements", ArrayOf({Named("Other")}));
  document->SetUnresolvedFonts(ArrayOf({replaceable}));
  EXPECT_FALSE(document->GetHasMissingFonts());
  EXPECT_TRUE(document->GetUnresolvedFonts());
  document->SetUnresolvedFonts(ArrayOf({replaceable, Named("Missing")}));
  EXPECT_TRUE(document->GetHasMissingFonts());
  document->SetUnresolvedFonts(document->GetUnresolvedFonts());
  EXPECT_EQ(document->GetUnresolvedFonts().Count(), 2u);
  document->SetUnresolvedFonts(platform::Array());
  EXPECT_FALSE(document->GetHasMissingFonts());
  EXPECT_FALSE(document->GetUnresolvedFonts());
}

TEST_F(TrackedDocuments, RemovingClosesTheFontsOfThatDocumentAlone) {
  agent.Add({.id = 1, .postScriptName = "One"});
  MakeReady();
  ui->preferences["CloseFontsOnDocClose"] = 1;
  OneTrackedDocument* first = Add("id-1", "/1.psd", 1);
  OneTrackedDocument* second = Add("id-2", "/2.psd", 2);
  FontActivationTracker* tracker = MarquineGlobals::GetSharedFontActivationTracker();
  platform::Dictionary font = Named("One");
  font.Set("MatchedFont", fakes::AgentAnswers::MakeRecord(agent.Font(1)));
  for (const char* identifier : {"id-1", "id-2"}) {
    tracker->OpenFontsForIdentifier(ArrayOf({font}), identifier, false, platform::Array(), platform::Array());
  }
  const auto* list = &AllTrackedDocuments::GetDocumentList();
  AllTrackedDocuments::RemoveClosedDocument(first);
  EXPECT_EQ(Tracked(), std::vector<std::string>{"2.psd 2"});
  EXPECT_EQ(Held(), std::vector<uint32_t>{1});
  AllTrackedDocuments::RemoveClosedDocument(second);
  EXPECT_TRUE(Held().empty());
  EXPECT_EQ(&AllTrackedDocuments::GetDocumentList(), list);
  EXPECT_TRUE(list->empty());
}

TEST_F(TrackedDocuments, AnExceptionLeavesTheRecordForALaterClose) {
  agent.Add({.id = 1, .postScriptName = "One"});
  MakeReady();
  ui->preferences["CloseFontsOnDocClose"] = 1;
  OneTrackedDocument* document = Add("id-1", "/1.psd", 1);
  platform::Dictionary font = Named("One");
  font.Set("MatchedFont", fakes::AgentAnswers::MakeRecord(agent.Font(1)));
  MarquineGlobals::GetSharedFontActivationTracker()->OpenFontsForIdentifier(ArrayOf({font}), "id-1", false,
                                                                            platform::Array(), platform::Array());
  agent.onCall = [](fakes::AgentFunction) { throw std::runtime_error("the agent's library failed"); };
  AllTrackedDocuments::RemoveClosedDocument(document);
  agent.onCall = nullptr;
  EXPECT_TRUE(Traced("Exception thrown in RemoveClosedDocument()"));
  EXPECT_EQ(Tracked(), std::vector<std::string>{"1.psd 1"});
}

}  // namespace
